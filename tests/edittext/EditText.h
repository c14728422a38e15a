#pragma once

// A dialog with an edit text "edit" in it, and who hears of it.

#include <arborium/nodes/KsScale.h>
#include <arborium/nodes/KsText3.h>
#include <arborium/nodes/KsTranslation.h>
#include <dialog/Stage.h>

class EditListener : public KsDialogEditTextAuditor {
public:
    void dialogEditText(KsDialogEditText* edit) override
    {
        texts.push_back(edit->editText.getValue().toUtf8());
        if (then) then(edit);
    }
    Strings texts;
    std::function<void(KsDialogEditText*)> then;
};

inline std::string manyLines(int count)
{
    std::string text;
    for (int i = 0; i < count; ++i) text += (i ? "\nline " : "line ") + std::to_string(i);
    return text;
}

/// An editor of many lines, 300 by 100.
const std::string largeForm =
    "multiLine TRUE width 300 fixedWidth TRUE height 100 fixedHeight TRUE ";

inline std::string withText(const std::string& text)
{
    return largeForm + "editText \"" + text + "\"";
}

/// What tests look at of an element.
class EditState : public KsDialogEditText {
public:
    using KsDialogComponent::m_labelSize;
    using KsFormweave::m_lastActive;
    using KsFormweave::set3DCurrentActive;
};

class ShownEdit : public Stage {
public:
    explicit ShownEdit(const std::string& fields = "", Road road = Both, bool listen = true)
        : Stage("TopLevelDialog { label \"Form\" DialogEditText { auditorID \"edit\" " + fields +
                    " } DialogCheckBox { auditorID \"other\" } }",
                road),
          edit(find<KsDialogEditText>("edit"))
    {
        if (listen) edit->addAuditor(&listener);
    }
    std::string text() const { return edit->editText.getValue().toUtf8(); }

    // The window.
    QLineEdit* line() const { return widgetOf<QLineEdit>(edit); }
    QTextEdit* lines() const { return widgetOf<QTextEdit>(edit); }
    QLabel* labelWidget() const
    {
        return edit->getWidget()->findChild<QLabel*>("LMNKsDialogQEditTextLabelWidget");
    }

    // The scene.
    KsGroup* part(const char* name) const
    {
        return static_cast<KsGroup*>(edit->getAnyPart(name, false));
    }
    /// The last node of a type among the children of a part.
    template <class T> T* last(const char* name) const { return among<T>(name, false); }
    template <class T> T* first(const char* name) const { return among<T>(name, true); }
    KsText3* text3D() const { return last<KsText3>("textSep"); }
    Strings shownLines() const
    {
        Strings result;
        for (const KbString& s : text3D()->string.values()) result.push_back(s.toUtf8());
        return result;
    }
    KbVec3f scroll() const { return first<KsTranslation>("textSep")->translation; }
    KbVec3f textPlace() const { return last<KsTranslation>("textSep")->translation; }
    KbVec3f thumbV() const { return first<KsTranslation>("cursorVSep")->translation; }
    KbVec3f thumbH() const { return first<KsTranslation>("cursorHSep")->translation; }
    KbVec3f thumbSizeV() const { return first<KsScale>("cursorVSep")->scaleFactor; }
    KbVec3f thumbSizeH() const { return first<KsScale>("cursorHSep")->scaleFactor; }
    KbVec3f trackV() const { return first<KsScale>("scrollVBack")->scaleFactor; }
    KbVec3f trackH() const { return first<KsScale>("scrollHBack")->scaleFactor; }
    bool isEditing() { return shown(edit, "frameSwitch") == 1; }
    /// A press on the frame of the text.
    void startTyping() { clickPart(edit, "frameSep"); }
    /// Where the text is drawn, from the middle of its frame, without the scrolling.
    KbBox3f textBox()
    {
        draw();
        return boxOf(edit, "textSep");
    }
    float labelZone() const
    {
        return edit->labelVisibility ? static_cast<float>((edit->*&EditState::m_labelSize)[0] + 2)
                                     : 0;
    }
    float width() const { return static_cast<float>(edit->width); }
    float height() const { return static_cast<float>(edit->height); }

    KsDialogEditText* edit;
    EditListener listener;

private:
    template <class T> T* among(const char* name, bool firstOne) const
    {
        T* found = nullptr;
        KsGroup* group = part(name);
        for (int i = 0; group && i < group->getNumChildren(); ++i) {
            if (found && firstOne) break;
            if (auto* node = ksCast<T>(group->getChild(i))) found = node;
        }
        return found;
    }
};
