#pragma once

#include <arborium/fields/KsMField.h>
#include <formweave/KsDialogComponent.h>

class KbLineProjector;
class KsDialogCustomSlider;
class KsDialogQSlider;
class KsEvent;
class KsEventCallback;

/// Base of the sliders: a label, a toggle for `continuousTrigger`, a bar with a cursor, and the value
/// as a text that the user may type.
///
/// Bar, text and `value` follow one position: 0 at `min`, 1 at `max`. The text shows the position;
/// `value` may lag behind it, until a drag ends. Bad texts in `format` are kept, and the default
/// format of the class is used in their place.
class FORMWEAVE_API KsDialogSlider : public KsDialogComponent {
    KS_KIT_HEADER(KsDialogSlider);

public:
    KsSFBool valueVisible; ///< Whether the text is shown. Default TRUE.
    /// How the value is printed, as for printf: one conversion of a number, with text around it. At
    /// most 95 characters are shown.
    KsSFString format;
    /// TRUE: `value` and the auditors follow a drag; FALSE, the default: only its end.
    KsSFBool continuousTrigger;
    KsSFBool toggleVisible; ///< Whether the toggle for `continuousTrigger` is shown. Default TRUE.
    /// TRUE: a typed value is brought between `min` and `max`; FALSE, the default: it moves them.
    KsSFBool fixedLimits;
    KsMFColor colors; ///< Of the bar in a window, from left to right. Default: one grey.
    /// Several colours are a gradient, not bands. Default TRUE.
    KsSFBool shadedColors;

    /// The position as the bar in the window holds it; the node's own without a window.
    float getValue() const;
    /// Not 0 when built in a window.
    int getActive2d() const { return isBuilt2D(); }
    /// The text of the value in the window; "0" without one.
    KbString getValueFromEdit() const;

    void destroyWidget() override;
    void updateFromSensor(KsSensor* sensor) override;
    /// `value` 1: the toggle in the window changed.
    void eventNotify(unsigned int value, unsigned long long data) override;
    void changeEnable() override;
    KbVec2i32 getComponentInitSize() override;
    void getDefaultSize(KbVec2i32& size, KbVec2i32& min, KbVec2i32& max) override;
    void updateControlWidget() override;
    void change3DEnable() override;
    void set3DInactive() override;
    void refresh3DSkin() override;

    /// Takes a position; it is not brought between 0 and 1.
    virtual void setValueFromSlider(float position);
    /// Puts the bar in the window to the position.
    virtual void changeSliderValue();
    virtual void changeValueVisible();
    virtual void changeToggleVisible();
    virtual void changeContinuousTrigger();
    /// Nothing: a new format counts from the next printing on.
    virtual void changeFormat();

    // What the kinds of sliders fill in; next to nothing here.
    /// Reads the text, in the window if `in2D` is not 0, else in the scene; applies the limits and
    /// takes the position from it.
    virtual void setValueFromEdit(int in2D);
    /// Takes `value` from the position, and reports it if it is another one.
    virtual void setValue();
    /// Prints the position's value in the window.
    virtual void changeEditValue();
    /// Pixels for the widest value; 0 here.
    virtual int computeEditZoneWidth();
    /// Prints the position's value in the scene.
    virtual void change3DEditValue();
    /// A key while the user types in the scene.
    virtual void computeNewSliderEditValue(const KsEvent* event);
    /// Ends typing in the scene, and reports the slider.
    virtual void finish3DEditing();

    // The roads of the user's actions.
    static void valueChangeCallback(void* slider, float position);
    static void finishCallback(void* slider, float position);
    /// The bar was moved.
    void changeValueFromSlider(float position);
    /// A movement of the bar ended.
    void changeValueAfterFinish(float position);
    /// Return in the window's text.
    void changeSliderFromEdit();
    /// Moves the bar's position by `delta`, without limits; `value` stays.
    void changeSliderFromSlider(float delta);

    // Places in the window; nothing without one.
    void updateToggleWidget();
    void updateSliderWidget();
    void updateEditWidget();

    // The scene.
    void change3DSliderValue();
    void change3DCursor();
    void change3DContinuousTrigger();
    void change3DValueVisible();
    void change3DToggleVisible();
    virtual void draggerStartCallback3D();
    virtual void draggerMotionCallback3D();
    virtual void draggerFinishCallback3D();

    // These do nothing: the relay is made as a whole.
    void createToggleWidget() {}
    void createSliderWidget() {}
    void createEditWidget() {}

    /// Built-in text of DialogSlider.arb.
    static char* DialogSlider;
    static void change3DSkin();
    static int isSkinLoaded();
    static void setSkinLoaded(int loaded);

protected:
    KsDialogSlider();
    ~KsDialogSlider() override;
    void createLabelWidget() override;
    void create3DControl() override;
    void update3DControl() override;
    void armSensors() override;
    bool validateNewFieldValue(KsField* field, const void* newValue) override;
    bool readInstance(KsInput* in, unsigned short flags) override;

    void create3DDialogSlider() { create3DControl(); }
    void update3DSlider() { update3DControl(); }
    /// The limits changed: the text needs another width.
    void updateWidget();
    /// Shows the position as text and on the bar, in both presentations.
    void refreshViews();
    KbString get3DValueFromEdit() const;
    void set3DText(const KbString& text);
    void showEditText(const KbString& text);
    void end3DEditing();

    float m_position = 0;
    int m_barWidth = 0;      ///< In the window.
    int m_editZoneWidth = 0; ///< In both presentations.
    int m_editMode = 0;      ///< 1 while the user types in the scene.

private:
    struct WindowPlaces {
        WindowZone zone;
        int toggle; ///< What toggle and text take of the zone, with their gaps.
        int edit;
    };
    WindowPlaces places2D() const;
    bool isBare() const;
    void fillRelay();
    void releaseBar();
    void updateFinishCallback();
    void changeColors();
    void show3DToggle();
    void show3DValue();
    void jumpToPicked();
    float travel3D() const;
    static void startCB3D(void* data, KsDragger* dragger);
    static void motionCB3D(void* data, KsDragger* dragger);
    static void finishCB3D(void* data, KsDragger* dragger);
    static void processKeyEvents(void* data, KsEventCallback* callback);

    KsElementSensor m_colorsSensor, m_shadedColorsSensor, m_valueVisibleSensor,
        m_continuousTriggerSensor, m_toggleVisibleSensor, m_fixedLimitsSensor, m_formatSensor;
    QPointer<KsDialogCustomSlider> m_bar; ///< Owned by the relay.

    const KsInput* m_input = nullptr; ///< While the node is being read.

    int m_barWidth3D = 0;
    KbVec3f m_cursorStart{0, 0, 0};
    std::unique_ptr<KbLineProjector> m_lineProjector;
    KsRef<KsTranslation> m_checkTranslation;
    SceneFrame m_frame; ///< `m_sliderTranslation` and `frameScale`.
    KsRef<KsTransform> m_sliderUndo;
    KsRef<KsTranslation> m_cursorPosition, m_cursorRest;
    KsRef<KsEventCallback> m_keyCallback;
    KsRef<KsTranslation> m_editTranslation;
    KsRef<KsScale> m_valueFrameScale;
    KsRef<KsTransform> m_editUndo;
    SceneText m_valueText;
};
