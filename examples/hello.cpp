// The smallest program: a dialog from a file, and who listens to it.

#include <formweave/formweave.h>

#include <QApplication>
#include <iostream>

class Listener : public KsDialogAuditor {
    void dialogCheckBox(KsDialogCheckBox* box) override
    {
        std::cout << box->label.getValue() << (box->state ? ": on" : ": off") << std::endl;
    }
};

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    KsFormweave::init();
    KsFormweave* element = KsFormweave::loadFromFile("examples/render-settings.arb");
    auto* dialog = ksCast<KsTopLevelDialog>(element);
    if (!dialog) return 1;
    Listener listener;
    dialog->addAuditor(&listener);
    dialog->buildDialog();
    dialog->show();
    const int status = app.exec();
    dialog->unref();
    KsFormweave::finish();
    return status;
}
