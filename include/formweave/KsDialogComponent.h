#pragma once

#include <formweave/KsAskedSizes.h>
#include <formweave/KsTopComponent.h>

#include <QPointer>
#include <functional>

class KsRelayFrame;
class QBoxLayout;
class QSpacerItem;

/// An element with a size: a label zone on the left, a control zone on the right, and a frame
/// around both. Sizes are in pixels, and in the same number of units in 3D; 0 asks for the default
/// of the class. A build writes the sizes that it found into the fields, marked as default where
/// the application had asked for nothing.
class FORMWEAVE_API KsDialogComponent : public KsTopComponent {
    KS_KIT_HEADER(KsDialogComponent);

public:
    enum EdgeStyle { NONE = 0, SHADOW_IN = 1, SHADOW_OUT = 2 };

    // A wish for `width` or `height` holds until the built tree changes (see `resetSize`); limits
    // last.
    KsSFInt32 width;      ///< Wanted width; 0: the default.
    KsSFInt32 height;     ///< Wanted height; 0: the default.
    KsSFBool fixedWidth;  ///< Minimum and maximum width become the width.
    KsSFBool fixedHeight; ///< The same for the height.
    KsSFInt32 minWidth;   ///< 0: the default. The maximum wins where the two contradict.
    KsSFInt32 minHeight;
    KsSFInt32 maxWidth;
    KsSFInt32 maxHeight;
    KsSFBool labelVisibility; ///< Whether the label zone is there. Default TRUE.
    KsSFEnum edgeStyle;       ///< An `EdgeStyle`. Default NONE.

    /// The frame of the element in its window; null before the 2D build.
    QWidget* getWidget() const;
    /// The layout in which the frame stands (a `QBoxLayout`); null before the 2D build.
    void* getLayout() const;
    /// Place and size of the control within the frame, in the window.
    void get2DComponentSize(KbVec2i32& size, KbVec2i32& position);
    /// The same in 3D, where the place is that of the centre, from the frame's centre.
    void get3DComponentSize(KbVec2i32& size, KbVec2i32& position);

    void buildWidget(QWidget* parent, KbVec2i32& size, KbVec2i32& position, int build2D) override;
    void destroyWidget() override;
    void updateFromSensor(KsSensor* sensor) override;
    /// Forgets what was measured, and sets `width` and `height` to 0, also where the application or
    /// a file had asked for them. A dialog that is built does this to all that is in it when a
    /// child comes or goes in any of its containers; the element then has the default of its class,
    /// or what the four limits ask for, and is written so.
    void resetSize() override;
    void changeEnable() override;
    void changeLabel() override;
    void changeLabelAlignment() override;
    void change3DLabel() override;
    void change3DLabelAlignment() override;
    void getSize(KbVec2i32& size, KbVec2i32& min, KbVec2i32& max) override;
    void getBoundingBox(KsGetBoundingBoxAction* action) override;
    void refresh3DSkin() override;

    virtual QWidget* getLabelWidget();
    /// A relay passes the value of its Qt signal here.
    virtual void eventNotify(unsigned int value, unsigned long long data);
    virtual void setLabelSize(KbVec2i32& size);
    virtual void setComponentSize(KbVec2i32& size);
    virtual KbVec2i32 getComponentInitSize();
    virtual KbVec2i32 getLabelInitSize();
    virtual void setFocus();
    /// Tells whether the element stands in a stack of rows (TRUE) or of columns: a rule between the
    /// children lies across.
    virtual void setAcrossStack(bool rows);
    virtual void changeWidgetEnable(int enable);
    virtual void getDefaultSize(KbVec2i32& size, KbVec2i32& min, KbVec2i32& max);
    virtual void changeLabelVisibility();
    virtual void changeEdgeStyle();
    virtual void updateComponentWidget();
    virtual void changeWidth();
    virtual void changeHeight();
    virtual void changeMinMaxSize();
    virtual void change3DLabelVisibility();
    virtual void change3DEdgeStyle();

    /// Built-in text of DialogComponent.arb.
    static char* DialogComponent;
    static void change3DSkin();
    static int isSkinLoaded();
    static void setSkinLoaded(int loaded);

    /// The frame was resized in its window: writes `width` and `height`.
    void frameResized(int newWidth, int newHeight);
    // Give the relay's label and control their places; nothing without a relay.
    virtual void updateLabelWidget();
    virtual void updateControlWidget() {}

protected:
    KsDialogComponent();
    ~KsDialogComponent() override;

    void getDefaultState(KbVec2i32& size, KbVec2i32& min, KbVec2i32& max) const;
    void setSize(int w, int h, int minW, int minH, int maxW, int maxH);
    void setDefaultState();
    void writeFields(KsWriteAction* action) override;
    void copyContents(const KsNode* from, Copier& copier) override;
    // The steps of a build that a control fills in. `buildWidget` calls them behind its own, in
    // this order; containers have none of them.
    /// Window, at each build: makes the relay, with `installRelay`.
    virtual void createLabelWidget() {}
    /// Scene, at the first build: nodes, looks, callbacks; ends with `setBuilt3D(1)`.
    virtual void create3DControl() {}
    /// Scene, at each build: places and sizes the control.
    virtual void update3DControl() {}
    /// Scene, at each build: places the label within its zone.
    virtual void update3DLabel();
    /// Arms the sensors of the class's own fields.
    virtual void armSensors() {}

    static constexpr int frameMargin = 3; ///< Around the zones.
    static constexpr int zoneGap = 2;     ///< Between label and control zone.

    // In a window.
    /// The parent of a relay that is about to be made.
    QWidget* relayParent() const;
    /// Makes `relay` the element's frame. `fill` gives it content and limits; then it joins the
    /// layout, and an earlier relay gives it its place, its focus and whether it is shown.
    void installRelay(KsRelayFrame* relay, const std::function<void()>& fill);
    /// While `fill` runs. Nothing is placed then: that is done once, behind it.
    bool isFillingRelay() const { return m_fillingRelay; }
    /// The relay as the class made it; null before the 2D build.
    template <class Relay> Relay* relayAs() const { return static_cast<Relay*>(m_relay.data()); }
    struct WindowZone {
        int x, y, width, height;
    };
    /// What the label leaves of the frame. It begins `inset` pixels behind the frame's edge, or
    /// behind the label's zone.
    WindowZone controlZone2D(int inset) const;
    /// Puts the label in its zone, centred in what `below` leaves of the frame's height.
    void placeLabelWidget(int below);

    // Sizes.
    /// `getComponentInitSize` of a control with a label zone: `measure` is asked once.
    template <class Measure> KbVec2i32 initSizeOnce(Measure&& measure)
    {
        if (m_componentInitSize[0] != -1) return m_componentInitSize;
        m_componentInitSize = measure();
        // Narrower without its label, though the label takes no room then: forms rely on it.
        if (!labelVisibility) m_componentInitSize[0] -= m_labelSize[0];
        return m_componentInitSize;
    }
    /// `getDefaultSize` of a control with a label zone: both zones, and `height` at least.
    void getZonesSize(KbVec2i32& size, KbVec2i32& min, KbVec2i32& max, int leastHeight);

    // In a scene.
    /// The scale within `frameSep`, the translation before it.
    void create3DFrame(SceneFrame& frame);
    static void place3DFrame(SceneFrame& frame, float x, float y, float w, float h);
    struct SceneZone {
        float x, width, height;
    };
    /// What the label leaves of the frame; `x` is that of its centre, from the frame's centre.
    SceneZone controlZone3D() const;
    /// The label's text, in `labelSwitch`, and whether it is shown.
    void create3DLabel();
    /// Replaces the label's text and places it.
    void show3DLabelText(const KbString& s);
    /// The box of the label's text, behind `labelProp`. Measured once for each text.
    KbBox3f labelBox3D();
    void show3DLabel();
    void createComponentWidget(QWidget* parent);
    /// Puts a relay frame that was just made into the component's layout: in the place of an
    /// earlier one, whose visibility it takes over, else with the spacer behind it.
    void adoptFrame(QWidget* frame);
    void placeSpacer();
    enum FrameMinimum { FROM_MINIMUM, FROM_SIZE };
    /// The limits of the frame in its window: the least size from the minimum or from the size
    /// fields, the greatest where the size is fixed.
    void limitFrame(QWidget* frame, FrameMinimum minimum = FROM_MINIMUM);
    void create3DDialogComponent();
    void update3DDialogComponent();
    /// The size that each presentation was given by its own layout: a resized window does not
    /// push a control out of its 3D panel.
    KbVec2i32 size2D() const;
    KbVec2i32 size3D() const;
    /// Replaces zeros by `defaults` and clamps: the common part of `getSize`.
    void resolveSize(KbVec2i32& size, KbVec2i32& min, KbVec2i32& max,
                     const std::function<void(KbVec2i32&, KbVec2i32&, KbVec2i32&)>& defaults);

    QPointer<QWidget> m_labelWidget;
    QPointer<QWidget> m_widget;
    QPointer<QBoxLayout> m_layout;
    QSpacerItem* m_spacer = nullptr; ///< Owned by the layout once it stands in it.
    KbVec2i32 m_componentSize{0, 0};
    KbVec2i32 m_labelSize{0, 0};
    KbVec2i32 m_componentInitSize{-1, -1};
    KbVec2i32 m_spareSize{0, 0};
    KbVec2i32 m_labelInitSize{0, 0};
    KbVec2i32 m_position{0, 0};
    KbVec2i32 m_defaultSize{0, 0};
    KbVec2i32 m_defaultMin{0, 0};
    KbVec2i32 m_defaultMax{0, 0};
    int m_firstBuild = 1;
    KsElementSensor m_edgeStyleSensor, m_labelVisibilitySensor, m_widthSensor, m_heightSensor,
        m_minWidthSensor, m_minHeightSensor, m_maxWidthSensor, m_maxHeightSensor;
    KsRef<KsTranslation> m_mainTranslation;
    KsRef<KsTransform> m_undoTransform;
    KsRef<KsScale> m_mainScale;
    float m_3DDepth = -1;
    QPointer<KsRelayFrame> m_relay; ///< Also in `m_widget`.
    SceneText m_label3D;            ///< Its box is the one that `isLabelCachedBBox` speaks of.

private:
    friend class KsDialogGroup;
    KsAskedSizes::Fields sizeFields();
    QPointer<QWidget> m_layoutFrame;    ///< The relay that stands in `m_frameLayout` now.
    QPointer<QBoxLayout> m_frameLayout; ///< In the parent's layout; holds frame and spacer.
    bool m_spacerPlaced = false;
    bool m_fillingRelay = false;
    KsAskedSizes m_asked;
    KbVec2i32 m_size2D{-1, -1};
    KbVec2i32 m_size3D{-1, -1};
};
