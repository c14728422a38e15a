#pragma once

#include <formweave/KsTopComponent.h>

#include <QPointer>
#include <functional>

class KsScale;
struct KsSkinFamily;
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

    KsSFInt32 width;            ///< Wanted width; 0: the default.
    KsSFInt32 height;           ///< Wanted height; 0: the default.
    KsSFBool fixedWidth;        ///< Minimum and maximum width become the width.
    KsSFBool fixedHeight;       ///< The same for the height.
    KsSFInt32 minWidth;         ///< 0: the default. The maximum wins where the two contradict.
    KsSFInt32 minHeight;
    KsSFInt32 maxWidth;
    KsSFInt32 maxHeight;
    KsSFBool labelVisibility;   ///< Whether the label zone is there. Default TRUE.
    KsSFEnum edgeStyle;         ///< An `EdgeStyle`. Default NONE.

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
    void resetSize() override;
    void changeEnable() override;
    void changeLabelAlignment() override;
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

protected:
    KsDialogComponent();
    ~KsDialogComponent() override;

    void getDefaultState(KbVec2i32& size, KbVec2i32& min, KbVec2i32& max) const;
    void setSize(int w, int h, int minW, int minH, int maxW, int maxH);
    void setDefaultState();
    void writeFields(KsWriteAction* action) override;
    void createComponentWidget(QWidget* parent);
    /// Puts a relay frame that was just made into the component's layout: in the place of an
    /// earlier one, whose visibility it takes over, else with the spacer behind it.
    void adoptFrame(QWidget* frame);
    void placeSpacer();
    /// The limits of the frame in its window.
    void limitFrame(QWidget* frame);
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

private:
    friend class KsDialogGroup;
    QPointer<QWidget> m_layoutFrame;    ///< The relay that stands in `m_frameLayout` now.
    QPointer<QBoxLayout> m_frameLayout; ///< In the parent's layout; holds frame and spacer.
    bool m_spacerPlaced = false;
    KbVec2i32 m_size2D{-1, -1};
    KbVec2i32 m_size3D{-1, -1};
};
