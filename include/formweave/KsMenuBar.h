#pragma once

#include <formweave/KsElementContainer.h>
#include <formweave/KsMenuPopup.h>
#include <formweave/KsTopComponent.h>

#include <QPointer>

class KsDialogAuditor;
class QMenuBar;

/// The bar of menus at the head of a dialog. In a window it stands above the dialog's layout, in a
/// scene it is a strip with the titles of its popups. A window's bar is made anew with each build
/// of the window; without a dialog above there is none.
///
/// Popups are added and taken away as `KsElementContainer` says. One that is inserted at an index
/// stands there in a scene; in a window that is shown it stands at the end, until the window is built
/// again.
///
/// A panel with a bar leaves its children 14 less than their heights come to: a dialog whose `height`
/// is 0 lets them reach over its lower edge, so give it one that is that much larger.
class FORMWEAVE_API KsMenuBar : public KsElementContainer<KsTopComponent, KsMenuPopup> {
    KS_KIT_HEADER(KsMenuBar);

public:
    KsMenuBar();

    /// Told of the entries below that have no auditors of their own, nor a nearer menu's.
    void addAuditor(KsDialogAuditor* auditor);
    void removeAuditor(KsDialogAuditor* auditor);
    /// The first below, in depth, whose `auditorID` is `id`; null if none.
    KsFormweave* searchForAuditorId(KbString id);
    /// The `QMenuBar`; it is built first if there is none. Null without the window of a dialog.
    void* getMenu(void* parent);
    /// Opens or closes all popups in a scene.
    void show3DChildren(int show);
    /// Places all anew after popups came, in a scene.
    virtual void updateAfterSceneGraphChange();
    /// Makes room, in a scene, for titles of other sizes.
    void entriesChanged3D();

    /// Kept for programs that call it; without effect.
    void updateMenuBar() {}

    void buildWidget(QWidget* parent, KbVec2i32& size, KbVec2i32& position, int build2D) override;
    void destroyWidget() override;
    void applyAuditor(KsFormweave* node) override;
    void changeEnable() override;
    void show3D(int show) override;
    void set3DParentTranslation(KbVec3f& translation) override;
    void change3DPosition() override;
    void change3DEnable() override;
    void refresh3DSkin() override;
    void getSize(KbVec2i32& size, KbVec2i32& min, KbVec2i32& max) override;
    void getBoundingBox(KsGetBoundingBoxAction* action) override;

    /// Built-in text of MenuBar.arb.
    static char* MenuBar;
    static void change3DSkin();
    static int isSkinLoaded();
    static void setSkinLoaded(int loaded);

protected:
    ~KsMenuBar() override;
    void childrenChanged() override;
    void childrenRemoved() override {}

private:
    bool isOnlyWindow() const { return !m_elements.count() && isBuilt2D(); }
    void createMenuBar(QWidget* parent);
    void create3DBar();
    void update3DBar();
    void update3DChildren();
    void update3DChildrenSize();
    /// `place` is called for each child when its place is known. The end of the last one.
    template <class Place> float placeRow(Place&& place);
    void placeStrip(float width);

    QPointer<QMenuBar> m_menuBar;
    int m_changeSuspended = 1;
    bool m_isBuilding2D = false;
    bool m_hiddenAsEmpty = false;
    float m_3DDepth = -1;
    SceneFrame m_strip;
    KsRef<KsTransform> m_stripTransform;
};
