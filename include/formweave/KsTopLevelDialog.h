#pragma once

#include <formweave/KsAskedSizes.h>
#include <formweave/KsElementContainer.h>
#include <formweave/KsSizeDB.h>
#include <formweave/KsTopComponent.h>

#include <QPointer>

class KbPlaneProjector;
class KsClipPlane;
class KsDialogAuditor;
class KsMenuBar;
class KsScale;
class KsText3;
class QVBoxLayout;

/// The root of a dialog: a window in Qt, a panel in a scene. It stacks its children vertically.
/// Sizes are in pixels, and in the same number of units in 3D. A panel at `position3D` (x, y, z)
/// has its upper left corner at (x, -y, z) in the scene. Children are added and taken away as
/// `KsElementContainer` says. `enable` FALSE disables the window with all that is in it, and nothing
/// of the panel.
class FORMWEAVE_API KsTopLevelDialog : public KsElementContainer<KsFormweave, KsTopComponent> {
    KS_KIT_HEADER(KsTopLevelDialog);

public:
    enum ScrollVisibility { NEVER = 0, ALWAYS = 1, AUTO = 2 };

    KsTopLevelDialog();

    KsSFInt32 width;  ///< 0: what the children need.
    KsSFInt32 height; ///< 0: what the children need.
    /// Of the window on the desktop; 20 pixels, the room of a title bar, are added to y.
    KsSFVec2i32 position;
    KsSFVec3f position3D;  ///< Of the panel; y counts downward.
    KsSFBool resizable;    ///< FALSE pins minimum and maximum to the size. Default TRUE.
    KsSFInt32 minWidth;    ///< 0: from the children.
    KsSFInt32 minHeight;   ///< 0: from the children.
    KsSFInt32 maxWidth;    ///< Default 16777215.
    KsSFInt32 maxHeight;   ///< Default 16777215.
    KsSFInt32 margin;      ///< Around the children, in sizes and in 3D. Default 0.
    KsSFInt32 rowSpacing;  ///< Between the children. Default 0.
    KsSFBool modalFrame;   ///< Kept in files; no window flag depends on it.
    KsSFBool hideChildren; ///< The panel is dragged as an empty frame.
    /// The panel shows its title strip only. One that is TRUE before the panel is built leaves it
    /// open until the field is next set.
    KsSFBool minimized;
    KsSFVec3f minimized3DPosition; ///< Of the strip.
    /// FALSE: strip and panel share one position. Default TRUE.
    KsSFBool independentMinimizedPosition;
    /// TRUE: a rebuild forgets the present size. Default FALSE.
    KsSFBool windowResizedByChildren;
    KsSFEnum vScrollVisibility; ///< Kept in files; nothing scrolls.
    KsSFEnum hScrollVisibility; ///< Kept in files; nothing scrolls.

    // The window.
    /// Builds the dialog: as a window of its own, or, with `buildInsideParent`, in `parent`, whose
    /// layout it replaces. `parent` may be null otherwise. While no local widgets are wanted the 3D
    /// panel is built instead.
    void buildDialog(QWidget* parent = nullptr, int buildInsideParent = 0);
    /// Shows the window; nothing for a dialog that is built inside a parent, or not built.
    virtual void show();
    virtual void hide();
    /// Hides the window and drops one reference: a dialog usually dies with it.
    void close();
    /// Hides the window. A dialog that is built inside a parent ends the process. Returns 0.
    int destroyDialog();
    /// The window; null before the build. It outlives the dialog unless the application deletes it.
    QWidget* getBaseWidget() const;
    /// Always null: a dialog's own widget is `getBaseWidget`.
    QWidget* getWidget() const { return nullptr; }
    /// The `QVBoxLayout` of the window; null before the build.
    void* getLayout() const;
    // For an application's own use; the dialog deletes what they hold when it dies.
    QWidget* getCurrentFocusedWidget() const;
    void setCurrentFocusedWidget(QWidget* widget);
    QWidget* getCurrentScrolledWidget() const;
    void setCurrentScrolledWidget(QWidget* widget);

    // Auditors: those of the dialog hear every element below it that has none of its own nearer.
    void addAuditor(KsDialogAuditor* auditor);
    void removeAuditor(KsDialogAuditor* auditor);
    /// Reports every element below the dialog, as if each had just been used.
    void applyAuditors();
    /// The first element below the dialog, in depth, whose `auditorID` is `id`; null if none.
    KsFormweave* searchForAuditorId(KbString id);

    /// Writes `position` without moving the window (setting the field does move it); (0, 0) counts
    /// as default.
    void setPosition(KbVec2i32& newPosition);
    /// Writes the six size fields; no change operation runs.
    void setSize(int w, int h, int minW, int minH, int maxW, int maxH);
    /// Marks the size fields for which the application had asked nothing as default: no file holds
    /// them.
    void setDefaultState();
    /// The sizes that were asked for: 0 where they are left to the children.
    void getDefaultState(KbVec2i32& size, KbVec2i32& min, KbVec2i32& max) const;
    /// The first child that is a menu bar, or null.
    KsMenuBar* widgetHasMenuBar() const;
    /// Width and height of the panel's frame, and 1.
    KbVec3f getTopLevelSize() const;

    /// Lays the whole tree out anew in one presentation. A window goes back to the place and size
    /// of the fields, whatever a person did to it. A dialog that was built inside a parent which is
    /// gone stays as it is.
    void updateDialogBuild(int use2D);
    /// A child came or went somewhere below: `updateDialogBuild` for each presentation that is
    /// built. The elements forget the `width` and `height` that they were asked for.
    void updateAfterSceneGraphChange();
    /// Builds or refreshes the children; nothing while there is no window for their widgets.
    void updateChildren();
    /// Shows the panel open or as a strip, as `minimized` says.
    void updateMinimizedState();

    void buildWidget(QWidget* parent, KbVec2i32& size, KbVec2i32& position, int build2D) override;
    void updateFromSensor(KsSensor* sensor) override;
    void applyAuditor(KsFormweave* node) override;
    void resetSize() override;
    void changeEnable() override;
    void changeLabel() override;
    void show3D(int show) override;
    int showsChildren3D() const override { return m_showsChildren3D; }
    void change3DPosition() override;
    void change3DLabel() override;
    void refresh3DSkin() override;
    void getBoundingBox(KsGetBoundingBoxAction* action) override;
    virtual void changeWidth();
    virtual void changeHeight();

    /// Built-in text of TopLevelDialog.arb.
    static char* TopLevelDialog;
    static void change3DSkin();
    static int isSkinLoaded();
    static void setSkinLoaded(int loaded);

protected:
    ~KsTopLevelDialog() override;
    void childrenChanged() override;
    void writeFields(KsWriteAction* action) override;
    void copyContents(const KsNode* from, Copier& copier) override;
    void abandonDrag3D() override;

private:
    friend class KsDialogComponent;
    void getSize(KbVec2i32& size, KbVec2i32& min, KbVec2i32& max);
    void getDefaultSize(KbVec2i32& size, KbVec2i32& min, KbVec2i32& max);
    void fixSizeWithBorder(KbVec2i32&, int) {}
    void setChildrenLabelSize();
    void setChildrenComponentSize();
    void computeNewChildrenHeight(const KbVec2i32& target);

    KsAskedSizes::Fields sizeFields();
    void createBaseWidget(QWidget* parent);
    void updateBaseWidget();
    void changePosition();
    void changeRowSpacing();
    void changeMinMaxSize();
    // Hooks that do nothing.
    void createTopLevelWidget() {}
    void initWidgetConstant() {}
    void updateTopLevelWidget() {}
    void updateTopLevelWidgetScrollPosition() {}
    void setScrollProperties() {}
    void changeResizable() {}
    void changeModalFrame() {}

    // The panel.
    static void startCB3D(void* data, KsDragger* dragger);
    static void motionCB3D(void* data, KsDragger* dragger);
    static void finishCB3D(void* data, KsDragger* dragger);
    void draggerStartCallback3D();
    void draggerMotionCallback3D();
    void draggerFinishCallback3D();
    void bringBackHiddenChildren();
    void create3DTopLevelDialog();
    void update3DTopLevelDialog();
    void update3DLabel();
    void update3DChildren();
    void update3DChildrenPosition();
    KbVec3f childrenOrigin();
    void placeStrip();
    void minimize3DDialog();
    void restore3DDialog();
    void show3DChildren(int show);
    void connectPositions();
    /// FALSE for a panel that was built minimized: it stands open until `minimized` changes.
    bool isStrip() const { return minimized && !m_firstMinimize; }
    KbVec2f panelSize() const;

    QPointer<QWidget> m_baseWidget;
    int m_buildInsideParent = 0;
    QPointer<QVBoxLayout> m_layout;
    QPointer<QWidget> m_focusedWidget;
    QPointer<QWidget> m_scrolledWidget;
    int m_changeSuspended = 1;
    int m_firstBuild = 1;
    KsSizeDB m_sizeDB;
    KbVec2i32 m_defaultSize{0, 0};
    KbVec2i32 m_defaultMin{0, 0};
    KbVec2i32 m_defaultMax{0, 0};
    KsAskedSizes m_asked;
    KbVec2i32 m_size3D{-1, -1};
    std::unique_ptr<KsDialogAuditor> m_defaultAuditor;
    KsElementSensor m_marginSensor, m_modalFrameSensor, m_rowSpacingSensor, m_resizableSensor,
        m_positionSensor, m_position3DSensor, m_minimizedSensor,
        m_independentMinimizedPositionSensor, m_minimized3DPositionSensor, m_minWidthSensor,
        m_minHeightSensor, m_maxWidthSensor, m_maxHeightSensor, m_widthSensor, m_heightSensor;

    KsRef<KsScale> m_frameScale;
    KsRef<KsTranslation> m_panelTranslation;
    KsRef<KsTransform> m_undoTransform;
    KsRef<KsTranslation> m_labelTranslation;
    KsRef<KsText3> m_titleText;
    KsRef<KsClipPlane> m_titleEdges[3]; // right, upper, lower
    KsRef<KsTranslation> m_buttonTranslation;
    std::unique_ptr<KbPlaneProjector> m_projector;
    KbVec3f m_dragWorldPoint{0, 0, 0};
    KbVec3f m_dragStart{0, 0, 0};
    bool m_childrenHiddenByDrag = false;
    bool m_draggedAsStrip = false;
    int m_showsChildren3D = 1;
    float m_3DDepth = -1;
    int m_firstMinimize = 0; // 1 from the 3D build to the first change of `minimized`
};
