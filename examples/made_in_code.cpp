// A dialog made in code, shown as a window and as a panel in a scene at once. One control has a
// listener of its own; another listener hears of all the others. The window holds a widget of the
// program.

#include <arborium/nodes/KsSeparator.h>
#include <arborium/qt/KsQtViewer.h>
#include <formweave/formweave.h>

#include <QApplication>
#include <QLabel>
#include <QLayout>
#include <iostream>
#include <memory>

namespace {

class Quality : public KsDialogIntegerSliderAuditor {
    void dialogIntegerSlider(KsDialogIntegerSlider* slider) override
    {
        std::cout << "quality " << slider->value.getValue() << std::endl;
    }
};

class Others : public KsDialogAuditor {
    void dialogComboBox(KsDialogComboBox* box) override
    {
        std::cout << "format " << box->items[box->selectedItem] << std::endl;
    }
    void dialogPushButton(KsDialogPushButton* button) override
    {
        std::cout << button->auditorID.getValue() << std::endl;
        button->buttonLabel = "Once more"; // in both presentations
    }
};

KsTopLevelDialog* makeDialog(KsDialogIntegerSliderAuditor* quality)
{
    auto* format = new KsDialogComboBox;
    format->label = "Format";
    for (const char* each : {"PNG", "JPEG", "TIFF"}) format->addItem(each);

    auto* slider = new KsDialogIntegerSlider;
    slider->label = "Quality";
    slider->min = 1;
    slider->max = 100;
    slider->value = 85;
    slider->addAuditor(quality);

    auto* button = new KsDialogPushButton;
    button->buttonLabel = "Export";
    button->auditorID = "export";

    auto* preview = new KsDialogCustom;
    preview->auditorID = "preview";
    preview->minHeight = 80;

    auto* dialog = new KsTopLevelDialog;
    dialog->label = "Export";
    dialog->addChild(format);
    dialog->addChild(slider);
    dialog->addChild(preview);
    dialog->addChild(button);
    return dialog;
}

} // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    KsFormweave::init();
    KsFormweave::setSkinsDirectories("data/Formweave/skins");
    int status = 0;
    {
        Quality quality;
        Others others;
        const KsRef<KsTopLevelDialog> dialog(makeDialog(&quality));
        dialog->addAuditor(&others);

        dialog->buildDialog();
        const std::unique_ptr<QWidget> window(dialog->getBaseWidget());
        dialog->show();

        const KsRef<KsSeparator> scene(new KsSeparator);
        scene->addChild(dialog);

        auto* preview = ksCast<KsDialogCustom>(dialog->searchForAuditorId("preview"));
        preview->getWidget()->layout()->addWidget(new QLabel("a widget of one's own"));

        KsQtViewer viewer;
        viewer.setSceneGraph(scene);
        viewer.show();
        status = app.exec();
    }
    KsFormweave::finish();
    return status;
}
