#pragma once

// What the tests of containers share: trees that are shown in a window and in a scene, and looks
// into both.

#include <base/Elements.h>

#include <formweave/KsColumnDialog.h>
#include <formweave/KsElementContainer.h>
#include <formweave/KsRowDialog.h>
#include <formweave/KsTopLevelDialog.h>

#include <QApplication>
#include <QBoxLayout>
#include <QCheckBox>
#include <QFrame>
#include <QLabel>
#include <QPointer>

/// Opens what the tests of a container look at.
template <class Container> class Open : public Container {
public:
    using Container::m_auditorList;
    using Container::m_componentSize;
    using Container::m_groupWidget;
    using Container::m_labelSize;
    using Container::m_mainTranslation;
    using Container::m_material;
    using Container::m_pickStyle;
    using Container::m_sizeDB;
    using Container::m_spacer;
    using KsFormweave::get3DParentTranslation;
    using KsFormweave::getAuditorListLength;
    using KsFormweave::m_parentTranslationNode;
};
using Rows = Open<KsRowDialog>;
using Columns = Open<KsColumnDialog>;

inline ProbeBox* makeBox(const char* label = "", bool state = false)
{
    auto* box = new ProbeBox;
    box->label = label;
    box->state = state;
    return box;
}

/// A dialog in a window, in a scene, or both.
class Trees : public DialogBase {
protected:
    void SetUp() override
    {
        DialogBase::SetUp();
        dialog = new KsTopLevelDialog;
    }
    void TearDown() override
    {
        scene.reset();
        QPointer<QWidget> window = dialog ? dialog->getBaseWidget() : nullptr;
        dialog.reset();
        delete window;
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        DialogBase::TearDown();
    }

    void buildWindow(bool shown = false)
    {
        dialog->buildDialog();
        if (!shown) return;
        dialog->show();
        settle();
    }
    void buildScene()
    {
        if (!scene) {
            scene = new KsSeparator;
            scene->addChild(dialog.get());
        }
        measure(scene.get());
    }
    static void settle()
    {
        for (int i = 0; i < 3; ++i) {
            QApplication::processEvents();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
    }
    QWidget* window() const { return dialog->getBaseWidget(); }
    int numToggles() const { return window()->findChildren<QCheckBox*>().size(); }

    KsRef<KsTopLevelDialog> dialog;
    KsRef<KsSeparator> scene;
};

inline QBoxLayout* layoutOf(KsFormweave* container)
{
    if (auto* top = ksCast<KsTopLevelDialog>(container))
        return static_cast<QBoxLayout*>(top->getLayout());
    return static_cast<QBoxLayout*>(static_cast<KsDialogComponent*>(container)->getLayout());
}

/// The frames that stand in a container's Qt layout, in their order. Each child has a layout of its
/// own there, which holds its frame and one spacer.
inline std::vector<QWidget*> framesIn(KsFormweave* container)
{
    std::vector<QWidget*> frames;
    QBoxLayout* layout = layoutOf(container);
    for (int i = 0; layout && i < layout->count(); ++i) {
        QLayout* own = layout->itemAt(i)->layout();
        EXPECT_TRUE(own) << "a stray item in the layout, at " << i;
        if (!own) continue;
        EXPECT_EQ(own->count(), 2);
        EXPECT_TRUE(own->count() == 2 && own->itemAt(1)->spacerItem());
        frames.push_back(own->count() ? own->itemAt(0)->widget() : nullptr);
    }
    return frames;
}

inline std::vector<KsFormweave*> childrenOf(KsFormweave* container)
{
    std::vector<KsFormweave*> children;
    const KsElementList* elements = container->getElements();
    for (int i = 0; elements && i < elements->count(); ++i) children.push_back(elements->at(i));
    return children;
}

inline QWidget* frameOf(KsFormweave* element)
{
    return static_cast<KsDialogComponent*>(element)->getWidget();
}

/// What a container's Qt layout has to hold.
inline std::vector<QWidget*> expectedFrames(KsFormweave* container)
{
    std::vector<QWidget*> frames;
    for (KsFormweave* child : childrenOf(container)) frames.push_back(frameOf(child));
    return frames;
}

inline QCheckBox* toggleOf(KsFormweave* box)
{
    QWidget* frame = frameOf(box);
    return frame ? frame->findChild<QCheckBox*>() : nullptr;
}

inline QLabel* labelOf(KsFormweave* box) { return frameOf(box)->findChild<QLabel*>(); }

/// Where a widget stands in its window.
inline QRect placeOf(QWidget* widget)
{
    return QRect(widget->mapTo(widget->window(), QPoint(0, 0)), widget->size());
}

/// A rectangle of a scene, y down.
struct Extent {
    float left = 0, top = 0, right = 0, bottom = 0;
    float width() const { return right - left; }
    float height() const { return bottom - top; }
};

/// What an element that is built covers, in the space of its dialog.
inline Extent extentOf(KsFormweave* element)
{
    const KbBox3f box = measure(element);
    return {box.getMin()[0], -box.getMax()[1], box.getMax()[0], -box.getMin()[1]};
}

inline int pickStyleOf(const ProbeBox* box) { return box->m_pickStyle->style.getValue(); }
inline float greyOf(const ProbeBox* box) { return box->m_material->emissiveColor[0][0]; }
