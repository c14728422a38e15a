#pragma once

#include <arborium/actions/KsAction.h>
#include <arborium/render/KsDrawList.h>

/// Makes the draw list of a scene. The list is kept until something below the root changed.
class ARBORIUM_API KsRenderAction : public KsAction {
public:
    explicit KsRenderAction(const KbViewportRegion& viewport);
    ~KsRenderAction() override;
    KsType getTypeId() const override { return getClassTypeId(); }
    static KsType getClassTypeId();

    void setViewportRegion(const KbViewportRegion& viewport);
    const KbViewportRegion& getViewportRegion() const { return m_viewport; }
    /// Brings the list up to date. Nothing is traversed if the root is the same and unchanged. Null
    /// empties the list.
    void apply(KsNode* root) override;
    using KsAction::apply;
    const KsDrawList& getDrawList() const { return m_list; }
    /// Forces a rebuild at the next apply.
    void invalidate() { m_root = nullptr; }
    /// Counts nodes visited since the action was made: an unchanged frame adds none.
    long getNumVisits() const { return m_visits; }

    // For shapes.
    /// Adds a mesh with the present state, `local` in front of the model matrix.
    void draw(const KsMeshPtr& mesh);
    void draw(const KsMeshPtr& mesh, const KbMatrix& local);
    /// For cameras. A list has one view volume: that of the last camera.
    void setViewVolume(const KbViewVolume& volume);

protected:
    void beginTraversal(KsNode* root) override;
    void visit(KsNode* node) override;

private:
    void add(const KsMeshPtr& mesh, const KbMatrix* local);
    std::uint32_t materialIndex();
    std::uint32_t clipIndex();
    std::uint32_t lightIndex();

    KbViewportRegion m_viewport;
    KsDrawList m_list;
    const KsNode* m_root = nullptr; // whose scene the list shows; never followed
    long m_visits = 0;
};
