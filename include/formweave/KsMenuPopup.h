#pragma once

#include <formweave/KsElementContainer.h>
#include <formweave/KsMenuItem.h>

class KsDialogAuditor;
class QMenu;

/// A menu: on a menu bar, within another menu, or alone in a scene. In a scene a press on its title
/// opens its entries as a column, below the title or at the right of the entry, in front of the
/// panel; a press elsewhere closes it with all that is open in it.
///
/// Entries are added and taken away as `KsElementContainer` says. One that is inserted at an index
/// stands there in a scene, but at the end of a menu that is shown in a window; building the window
/// again does not move it.
class FORMWEAVE_API KsMenuPopup : public KsElementContainer<KsMenuItem, KsMenuItem> {
    KS_KIT_HEADER(KsMenuPopup);

public:
    KsMenuPopup();

    /// Told of the entries below that have no auditors of their own, nor a nearer menu's.
    void addAuditor(KsDialogAuditor* auditor);
    void removeAuditor(KsDialogAuditor* auditor);
    /// The first below, in depth, whose `auditorID` is `id`; null if none.
    KsFormweave* searchForAuditorId(KbString id);
    /// Opens (1) or closes (0) the column in a scene; closing closes the menus in it first.
    void show3DChildren(int show);
    /// Whether the column in a scene is open.
    int showsChildren3D() const override { return m_childrenShown; }
    /// The size that the title takes in a scene.
    virtual void get3DDefaultSize(KbVec3f& size);
    /// Places all anew after children came, in a scene; the column is closed then.
    virtual void updateAfterSceneGraphChange();
    /// Makes room, in a scene, for entries of other sizes.
    void entriesChanged3D();
    /// The 3D form was pressed.
    virtual void draggerStartCallback3D();

    void buildMenu(void* parentMenu, int build2D, int position) override;
    void destroyWidget() override;
    void applyAuditor(KsFormweave* node) override;
    void changeEnable() override;
    void changeLabel() override;
    void show3D(int show) override;
    void change3DPosition() override;
    void change3DEnable() override;
    void set3DInactive() override;
    void refresh3DSkin() override;
    void getBoundingBox(KsGetBoundingBoxAction* action) override;
    KbVec2i32 getItemInitSize() override;

    /// Built-in text of MenuPopup.arb.
    static char* MenuPopup;
    static void change3DSkin();
    static int isSkinLoaded();
    static void setSkinLoaded(int loaded);

protected:
    ~KsMenuPopup() override;
    void childrenChanged() override;
    void childrenRemoved() override {}
    void insertMenuItem() override;
    bool takesInput() const override;
    void create3DEntry() override;
    void update3DEntry() override;

private:
    static void startCB3D(void* data, KsDragger* dragger);
    bool isNested() const;
    /// A menu that was moved looks as its new place asks for: in a bar, in a column, or alone.
    void renew3DForm();
    void joinParentMenu();
    void removeMenu();
    void update3DChildren();
    void update3DChildrenSize();
    /// `place` is called for each child when the place of the column's next entry is known.
    template <class Place> void placeColumn(Place&& place);
    void setColumnVisible(bool visible);
    void closeSiblings3D();

    QPointer<QMenu> m_menu; ///< Owned; it stands in the bar or menu above.
    int m_changeSuspended = 1;
    int m_childrenShown = 0;
    float m_3DDepth = -1;
    float m_columnZ = 0; ///< Of an open column: that of the panel's foremost point.
    SceneFrame m_title;  ///< In a column the arrow.
    KsRef<KsTransform> m_titleTransform;
};
