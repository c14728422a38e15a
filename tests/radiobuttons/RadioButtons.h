#pragma once

// A dialog with radio buttons in it, in one presentation or both, and who listens to them.

#include <arborium/nodes/KsScale.h>
#include <arborium/nodes/KsText3.h>
#include <arborium/nodes/KsTransform.h>
#include <arborium/nodes/KsTranslation.h>
#include <dialog/Listeners.h>
#include <dialog/Stage.h>
#include <formweave/KsDialogChoiceAuditor.h>

inline const std::string three = "items [ \"Draft\", \"Preview\", \"Final\" ]";

/// One dialog with radio buttons "radio" in it.
class Shown : public Stage {
public:
    explicit Shown(const std::string& fields = "label \"Quality\" " + three, Road road = Both)
        : Stage("TopLevelDialog { label \"Form\" DialogRadioButtons { auditorID \"radio\" " +
                    fields +
                    " } DialogRadioButtons { auditorID \"other\" label \"Other\" items [ \"x\", "
                    "\"y\" ] } }",
                road),
          radio(find<KsDialogRadioButtons>("radio")), other(find<KsDialogRadioButtons>("other"))
    {
        radio->addAuditor(&listener);
    }

    // The window.
    QGroupBox* group() const { return widgetOf<QGroupBox>(radio); }
    QList<QRadioButton*> buttons() const
    {
        return radio->getWidget()->findChildren<QRadioButton*>();
    }
    Strings texts2D() const
    {
        Strings texts;
        for (const QRadioButton* button : buttons()) texts.push_back(button->text().toStdString());
        return texts;
    }
    /// Index of the one that is checked; -1 if none is, -2 if several are.
    int checked2D() const
    {
        int checked = -1;
        for (int i = 0; i < buttons().size(); ++i)
            if (buttons()[i]->isChecked()) checked = checked == -1 ? i : -2;
        return checked;
    }
    void clickButton(int i)
    {
        QWidget* button = buttons().value(i);
        clickWidget(button, QPoint(8, button ? button->height() / 2 : 0));
    }

    // The scene.
    KsGroup* rows() const { return static_cast<KsGroup*>(radio->getAnyPart("itemsSep", false)); }
    int numRows() const
    {
        int separators = 0;
        for (int i = 0; i < rows()->getNumChildren(); ++i)
            separators += ksCast<KsSeparator>(rows()->getChild(i)) ? 1 : 0;
        return separators;
    }
    KsGroup* row(int i) const { return static_cast<KsGroup*>(rows()->getChild(2 * i + 1)); }
    /// The first node of a type below a row.
    template <class T> static T* below(const KsGroup* group)
    {
        for (int i = 0; i < group->getNumChildren(); ++i) {
            KsNode* child = group->getChild(i);
            if (T* found = ksCast<T>(child)) return found;
            const auto* inner = ksCast<KsGroup>(child);
            if (T* found = inner ? below<T>(inner) : nullptr) return found;
        }
        return nullptr;
    }
    Strings texts3D() const
    {
        Strings texts;
        for (int i = 0; i < numRows(); ++i)
            texts.push_back(below<KsText3>(row(i))->string[0].toUtf8());
        return texts;
    }
    int checked3D() const
    {
        int checked = -1;
        for (int i = 0; i < numRows(); ++i)
            if (below<KsSwitch>(row(i))->whichChild == 1) checked = checked == -1 ? i : -2;
        return checked;
    }
    float rowHeight() const { return -below<KsTranslation>(rows())->translation.getValue()[1]; }
    /// Where the middle of a row is drawn.
    KbVec2f placeOfRow(int i)
    {
        draw();
        const KbBox3f box = boxOf(radio, "itemsSep");
        EXPECT_FALSE(box.isEmpty());
        if (box.isEmpty()) return KbVec2f(1, 1);
        return KbVec2f(box.getCenter()[0],
                       box.getMax()[1] - (static_cast<float>(i) + 0.5f) * rowHeight() + viewHeight);
    }
    bool clickRow(int i) { return click(placeOfRow(i)); }
    /// The node of a type that stands just before a part.
    template <class T> T* before(const char* part, const char* parent = "geomSwitch") const
    {
        return ksCast<T>(nodeBefore(radio, part, parent));
    }

    KsDialogRadioButtons* radio;
    KsDialogRadioButtons* other;
    ChoiceListener listener;
};
