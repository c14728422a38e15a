// A dialog in a scene: the viewer draws it, and hands it the mouse and the keyboard.

#include <arborium/nodes/KsSeparator.h>
#include <arborium/qt/KsQtViewer.h>
#include <formweave/formweave.h>

#include <QApplication>

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    KsFormweave::init();
    KsFormweave::setSkinsDirectories("data/Formweave/skins");
    KsRef<KsSeparator> scene(new KsSeparator);
    scene->addChild(KsFormweave::loadFromFile("examples/render-settings.arb"));
    KsQtViewer viewer;
    viewer.setSceneGraph(scene);
    viewer.show();
    return app.exec();
}
