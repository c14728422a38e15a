#pragma once

#include <formweave/KsDialogGroup.h>

#include <vector>

class KsClipPlane;
class KsNodeSensor;
class KsSwitch;
class KsTabDialogAuditor;

/// Shows one of its children at a time. Each child is a page, and its `label` the title of its tab,
/// without escapes; in a window a "&" in it makes the next letter a shortcut. In a scene the tabs
/// stand along the top edge; two buttons beside them scroll the row, and nothing else brings a tab
/// into view but a click on the one that is cut off. Pages are added and taken away as
/// `KsElementContainer` says.
class FORMWEAVE_API KsTabDialog : public KsDialogGroup {
    KS_KIT_HEADER(KsTabDialog);

public:
    enum TabsLocation { TOP = 0, BOTTOM = 1, LEFT = 2, RIGHT = 3 };

    /// Index of the page on show. A build and a change of the pages bring it into range: in a window
    /// to the nearest page, in a scene to the page before. A page that is inserted before the one on
    /// show moves it on by one; where one before it is removed the index stays, and the next page is
    /// shown. Default 0.
    KsSFInt32 selectedPage;
    /// A `TabsLocation`. It tells only on which side the size reserves the room of the tabs; they
    /// stand at the top. Default TOP.
    KsSFEnum tabsLocation;

    KsTabDialog();

    // Told when the user selects a page in the window; a click in a scene tells nobody. The other
    // elements' actions are not told to these, but to the containers above.
    void addAuditor(KsTabDialogAuditor* auditor);
    void removeAuditor(KsTabDialogAuditor* auditor);
    void applyDlgCptAuditor();

    using KsDialogComponent::getLayout;
    /// The layout in which a page's element stands (a `QBoxLayout`); null if there is no such page
    /// or no window.
    void* getLayout(int page);
    /// Lays the tabs out in the window's frame. Nothing without a window.
    void updateTabWidget();
    /// Shows the element of the selected page and hides those of the others, whatever `page` is.
    void updateTabPageWidget(int page);
    // Do nothing.
    void changeEnableChild(int page);
    void changePageLabel(int page);
    void changeFirstPageLeft();
    void changeFirstPageRight();

    virtual void updateAfterSceneGraphChange();
    /// Brings `selectedPage` into range, and that page into view in the window.
    virtual void changeSelectedPage();

    // Each keeps tabs and pages in step with the children, in what is built.
    void addChild(KsDialogComponent* child) override;
    void insertChild(KsDialogComponent* child, int index) override;
    void removeChild(KsDialogComponent* child) override;
    void removeChild(int index) override;
    void removeAllChildren() override;
    void replaceChild(KsDialogComponent* oldChild, KsDialogComponent* newChild) override;
    void replaceChild(int index, KsDialogComponent* newChild) override;

    void buildWidget(QWidget* parent, KbVec2i32& size, KbVec2i32& position, int build2D) override;
    void destroyWidget() override;
    void updateFromSensor(KsSensor* sensor) override;
    void changeWidgetEnable(int enable) override;
    void change3DWidgetEnable(int enable) override;
    void eventNotify(unsigned int page, unsigned long long data) override;
    void updateLabelWidget() override {}
    void updateControlWidget() override { updateTabWidget(); }
    void getDefaultSize(KbVec2i32& size, KbVec2i32& min, KbVec2i32& max) override;
    KbVec2i32 getComponentInitSize() override;
    /// The room of the tabs at the top, and of the frame, whatever `tabsLocation` is.
    void fixSizeWithBorder(KbVec2i32& size, int factor) override;
    void setChildrenComponentSize() override;
    void setChildrenLabelSize() override;
    void show3D(int show) override;
    void change3DPosition() override;
    void refresh3DSkin() override;

    /// Built-in text of TabDialog.arb.
    static char* TabDialog;
    static void change3DSkin();
    static int isSkinLoaded();
    static void setSkinLoaded(int loaded);

protected:
    ~KsTabDialog() override;
    void createGroupWidget() override;
    void create3DControl() override;
    void update3DControl() override;
    void armSensors() override;
    void abandonDrag3D() override;

private:
    struct WindowPage {
        const KsDialogComponent* element;
        QPointer<QWidget> widget;
    };
    /// What draws one tab. The first one's nodes are parts, and stay.
    struct ScenePage {
        KsRef<KsSwitch> pageSwitch, labelSwitch;
        KsRef<KsTranslation> translation; ///< From the tab before, or to the first visible one.
        KsRef<KsNode> labelSep;
        KsRef<KsScale> labelScale;
        KsRef<KsTransform> labelTransform;
        SceneText title;
        KbString shownTitle;
        float width = 0;
    };

    static void childrenSensor(void* data, KsSensor* sensor);
    void changeTitle(KsDialogComponent* child);
    /// Ends an edit of the list of children.
    void pagesChanged(bool gone);
    void rebuildPages();
    void syncWindowPages();
    void addWindowPage(KsDialogComponent* child, int index);
    void repairSelection();
    bool isPage(int index) const { return index >= 0 && index < m_elements.count(); }

    static void startCB3D(void* data, KsDragger* dragger);
    static void finishCB3D(void* data, KsDragger* dragger);
    void draggerStartCallback3D();
    void draggerFinishCallback3D();
    KbVec3f pagesOrigin();
    ScenePage makeScenePage();
    void dropScenePages();
    void change3DPages();
    void update3DTabDialogPage(int index);
    void show3DTitle(ScenePage& page, const KsDialogComponent* child);
    void place3DTab(int index);
    void select3DTab(ScenePage& page, bool selected);
    void show3DPages();
    void change3DSelectedPage();
    void change3DFirstPageRight();
    void change3DFirstPageLeft();

    KsElementSensor m_selectedPageSensor;
    std::unique_ptr<KsNodeSensor> m_childrenSensor;
    int m_previousSelectedPage = -1;

    std::vector<WindowPage> m_windowPages;
    bool m_syncing = false, m_syncAgain = false;

    std::vector<ScenePage> m_scenePages;
    KsRef<KsClipPlane> m_rightEdge, m_topEdge;
    SceneFrame m_frame;
    KsRef<KsTranslation> m_buttonsTranslation;
    int m_firstPage = 0;
    bool m_tabClicked = false;
    int m_scenePagesBuilt = 0; ///< Counts: an edit sees whether the layout came by.
};
