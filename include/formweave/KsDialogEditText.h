#pragma once

#include <formweave/KsDialogComponent.h>

class KbLineProjector;
class KsClipPlane;
class KsDialogEditTextAuditor;
class KsEventCallback;

/// A text that the user may change: a label on the left, an editor of one line or of many on the
/// right. The editor in a scene types at the end of the text, and takes characters off there.
class FORMWEAVE_API KsDialogEditText : public KsDialogComponent {
    KS_KIT_HEADER(KsDialogEditText);

public:
    KsDialogEditText();

    /// The text. It may hold line breaks; with `multiLine` also the escapes of a label. What the
    /// user types comes in as Latin-1.
    KsSFString editText;
    KsSFBool editable;    ///< FALSE: the text can be read only. Default TRUE.
    KsSFBool trigOnEnter; ///< FALSE: auditors hear each change, not only Enter. Default TRUE.
    KsSFBool isNumeric;   ///< Kept for applications; the editor takes any character all the same.
    KsSFBool multiLine;   ///< An editor of many lines with scroll bars. Default FALSE.
    /// Long lines go on in the next one, with `multiLine`. Default TRUE. In a window it takes effect
    /// when it is changed after the first build.
    KsSFBool wrapLine;

    // The auditors of this editor; with none, those of its containers are told.
    void addAuditor(KsDialogEditTextAuditor* auditor);
    void removeAuditor(KsDialogEditTextAuditor* auditor);
    /// Reports the editor, as if Enter had just been pressed.
    void applyDlgCptAuditor();

    void updateFromSensor(KsSensor* sensor) override;
    /// `value`: 1 for Enter, 2 for a change of the widget's text.
    void eventNotify(unsigned int value, unsigned long long data) override;
    KbVec2i32 getComponentInitSize() override;
    void getDefaultSize(KbVec2i32& size, KbVec2i32& min, KbVec2i32& max) override;
    void updateControlWidget() override { updateEditTextWidget(); }
    void refresh3DSkin() override;
    void set3DInactive() override;
    virtual void changeEditable();
    virtual void changeMultiLine();
    virtual void changeWrapLine();
    /// Shows the field in the widget, which reports it as a change. Nothing if it stands there.
    virtual void changeEditText();
    void updateEditTextWidget();

    // The editor in the scene.
    /// Types at the end of the text; a line feed begins a new line.
    void insertCharTo3DText(char c);
    /// Takes the last character off the text.
    void removeCharIn3DText();
    /// Splits the field into the lines that are shown.
    void change3DEditText();
    /// Moves the vertical thumb from where it stood when the button or thumb was pressed; up is
    /// positive.
    void move3DCursor(float delta);
    void draggerStartCallback3D();
    void draggerMotionCallback3D();
    void draggerFinishCallback3D();

    // These do nothing: the relay is made as a whole, and the scene's editor has no caret.
    void createEditTextWidget() {}
    void processEvent(int) {}
    void move3DCaret(int, int) {}
    void apply3DEvent(KbString) {}

    /// Built-in text of DialogEditText.arb.
    static char* DialogEditText;
    static void change3DSkin();
    static int isSkinLoaded();
    static void setSkinLoaded(int loaded);

protected:
    ~KsDialogEditText() override;
    void createLabelWidget() override;
    void create3DControl() override;
    void update3DControl() override;
    void armSensors() override;
    void abandonDrag3D() override;

private:
    struct ScrollBar {
        KsRef<KsTranslation> backTranslation, firstTranslation, lastTranslation;
        KsRef<KsScale> scale;
        KsRef<KsTransform> undo;
        KsRef<KsTranslation> position; ///< The thumb's, from its place at the top or on the left.
        KsRef<KsTranslation> rest;
        KsRef<KsScale> thumb;
        KbVec3f start{0, 0, 0}; ///< `position` when the thumb or a button was pressed.
    };
    struct ScrollBarParts;

    static void processKeyEvents(void* data, KsEventCallback* callback);
    static void startCB3D(void* data, KsDragger* dragger);
    static void motionCB3D(void* data, KsDragger* dragger);
    static void finishCB3D(void* data, KsDragger* dragger);

    void makeRelay(bool keepsText);
    void showTypedText2D();
    void showWindowText3D();
    void show3DForm();
    void change3DEditable();
    void change3DLayout();
    void createScrollBar(ScrollBar& bar, const ScrollBarParts& parts);
    void update3DScrollBars();
    void update3DCursors();
    void update3DSideCursor();
    float sideScroll3D();
    void update3DTextScrollPosition();
    void update3DTextPosition();
    void update3DTextCache(int oldLine);
    void follow3DTyping();
    void finish3DEditing();
    void applyTyping(const KbString& text, int oldLine);
    void bringCaretIntoRange();
    void putCaretAtEnd();
    void place3DThumb(float y);
    void place3DSideThumb(float x);
    float lineWidth3D(int line);
    int zoneWidth3D() const;
    float wrapWidth3D() const;
    KsGroup* textProperties();
    const KbBox3f& editBox3D();
    bool isWrapped() const { return multiLine && wrapLine; }

    KsElementSensor m_editableSensor, m_editTextSensor, m_multiLineSensor, m_wrapLineSensor;
    KbVec2i32 m_textSize{0, 0};
    bool m_wrapLineHeard = false; ///< Until then a window wraps in Qt's own way.

    SceneText m_text;
    SceneFrame m_frame;
    KsRef<KsTransform> m_frameUndo;
    KsRef<KsTranslation> m_textScroll;
    KsRef<KsClipPlane> m_clipTop, m_clipBottom, m_clipRight, m_clipLeft;
    KsRef<KsScale> m_buttonScale;
    ScrollBar m_scrollV, m_scrollH;
    std::unique_ptr<KbLineProjector> m_lineProjector;
    KsRef<KsEventCallback> m_keyCallback;
    int m_editMode = 0;     ///< 1 while the user types.
    int m_caretLine = 0;    ///< The shown line that the next character goes to.
    float m_wrappedAt = -1; ///< The width at which the lines were wrapped last.
    bool m_thumbDragged = false;
};
