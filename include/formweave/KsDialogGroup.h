#pragma once

#include <formweave/KsDialogComponent.h>
#include <formweave/KsElementContainer.h>
#include <formweave/KsSizeDB.h>

class KsDialogAuditor;
class QFrame;

/// Base of the containers inside a window. A group is itself a component of its parent's layout;
/// subclasses decide where its children stand. They are added and taken away as
/// `KsElementContainer` says. `enable` FALSE disables all that is below the group and leaves the
/// children's own `enable` as it is; a child whose `enable` is set to TRUE meanwhile can be used in a
/// scene, while in a window the group's frame keeps it disabled.
class FORMWEAVE_API KsDialogGroup
    : public KsElementContainer<KsDialogComponent, KsDialogComponent> {
    KS_KIT_HEADER(KsDialogGroup);

public:
    enum ScrollVisibility { NEVER = 0, ALWAYS = 1, AUTO = 2 };

    /// TRUE: a change in the tree drops the group's size back to what the application had asked
    /// for. Default TRUE.
    KsSFBool windowResizedByChildren;
    KsSFInt32 margin; ///< Around the children, in sizes and in 3D; no Qt layout has it. Default 0.
    KsSFEnum vScrollVisibility; ///< Kept in files; nothing scrolls.
    KsSFEnum hScrollVisibility; ///< Kept in files; nothing scrolls.

    // The auditors of this group hear every element below it that has none of its own.
    void addAuditor(KsDialogAuditor* auditor);
    void removeAuditor(KsDialogAuditor* auditor);
    /// Reports every element below the group, as if each had just been used.
    void applyAuditors();
    /// The first element below the group, in depth, whose `auditorID` is `id`; null if none.
    KsFormweave* searchForAuditorId(KbString id);
    int isVScrollVisible() const { return m_vScrollVisible; }
    /// Forgets the sizes of this group and of what is above it; the window then lays out anew.
    void updateAfterSceneGraphChange();

    void buildWidget(QWidget* parent, KbVec2i32& size, KbVec2i32& position, int build2D) override;
    void destroyWidget() override;
    void updateFromSensor(KsSensor* sensor) override;
    void applyAuditor(KsFormweave* node) override;
    void resetSize() override;
    void changeEnable() override;
    void show3D(int show) override;
    void change3DPosition() override;
    void change3DWidgetEnable(int enable) override;
    void change3DEnable() override;
    void getSize(KbVec2i32& size, KbVec2i32& min, KbVec2i32& max) override;
    void setLabelSize(KbVec2i32& size) override;
    void setComponentSize(KbVec2i32& size) override;
    KbVec2i32 getComponentInitSize() override;
    KbVec2i32 getLabelInitSize() override;
    void changeWidgetEnable(int enable) override;
    void getBoundingBox(KsGetBoundingBoxAction* action) override;
    void refresh3DSkin() override;

    /// Adds (`factor` 1) or takes away (-1) the room of the border. Nothing here.
    virtual void fixSizeWithBorder(KbVec2i32& size, int factor);
    /// Gives each child the width of its control zone.
    virtual void setChildrenComponentSize();
    /// Gives each child the width of its label zone.
    virtual void setChildrenLabelSize();

protected:
    KsDialogGroup();
    /// For a class that tells of its children in its own name.
    explicit KsDialogGroup(const KsElementListTraits& traits);
    ~KsDialogGroup() override;

    void childrenChanged() override;
    void updateChildrenSizeDB() { m_sizeDB.setCount(m_elements.count()); }
    void setScrollProperties() {}
    void updateGroupWidgetScrollPosition() {}
    /// Window, at the first build: makes the frame in which the children stand.
    virtual void createGroupWidget();
    /// Gives the group's frame the limits that the last layout found.
    void limitGroupWidget();
    /// Where the children's origin stands in 3D: on top of the group's frame.
    KbVec3f place3DChildren();
    /// FALSE if this group or one that it stands in is disabled.
    bool isEnabledInTree() const;
    bool isChangeSuspended() const { return m_changeSuspended != 0; }

    QPointer<QFrame> m_groupWidget;
    KsSizeDB m_sizeDB;

private:
    int m_changeSuspended = 1;
    int m_vScrollVisible = 0;
    std::unique_ptr<KsDialogAuditor> m_defaultAuditor;
};
