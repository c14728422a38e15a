#pragma once

#include <arborium/actions/KsAction.h>
#include <arborium/render/KsDrawList.h>

#include <cstdint>
#include <unordered_map>

class KbBox3f;
class KsSeparator;

/// Makes the draw list of a scene. The list is kept until something below the root changed; then
/// only separators with a change below them are traversed, and those in front of which the state is
/// another one.
class ARBORIUM_API KsRenderAction : public KsAction {
public:
    explicit KsRenderAction(const KbViewportRegion& viewport);
    ~KsRenderAction() override;
    KsType getTypeId() const override { return getClassTypeId(); }
    static KsType getClassTypeId();

    /// The window that is drawn for; another one makes a new list.
    void setViewportRegion(const KbViewportRegion& viewport);
    const KbViewportRegion& getViewportRegion() const { return m_viewport; }
    /// Brings the list up to date. Nothing is traversed if the root is the same and unchanged. Null
    /// empties the list.
    void apply(KsNode* root) override;
    using KsAction::apply;
    /// What the last apply made. Holds until the next one.
    const KsDrawList& getDrawList() const { return m_list; }
    /// Forces a rebuild at the next apply.
    void invalidate() { m_root = nullptr; }
    /// Counts nodes visited since the action was made: an unchanged frame adds none.
    long getNumVisits() const { return m_visits; }

    // For shapes.
    /// Adds a mesh with the present state, `local` in front of the model matrix. Null, and a mesh
    /// that is moved to nowhere, add nothing.
    void draw(const KsMeshPtr& mesh);
    void draw(const KsMeshPtr& mesh, const KbMatrix& local);

    // Plumbing for cameras and separators.
    /// A list has one view volume: that of the last camera.
    void setViewVolume(const KbViewVolume& volume);
    /// Whether something changed at the node that is visited, or below it, since a render action
    /// was last there.
    bool isNodeChanged() const { return m_nodeChanged; }
    /// Takes over what the separator added to the list last time; FALSE if it has to be traversed.
    /// `version` stands for what is below it.
    bool reuse(const KsSeparator* separator, std::uint64_t version);
    /// Whether a box in the present space is surely not in the view of the camera in front of it.
    /// What is left out for that is looked at again when the view changes.
    bool isOutOfView(const KbBox3f& box);
    bool passBy(const KbBox3f& box) override { return isOutOfView(box); }

    /// Encloses the traversal of a separator, so that its draws can be taken over next time.
    class ARBORIUM_API Recording {
    public:
        Recording(KsRenderAction* action, const KsSeparator* separator, std::uint64_t version);
        ~Recording();
        Recording(const Recording&) = delete;
        Recording& operator=(const Recording&) = delete;

    private:
        friend class KsRenderAction;
        KsRenderAction* m_action;
        const KsSeparator* m_separator;
        std::uint64_t m_version, m_state;
        const Recording* m_outer;
        std::uint64_t m_number;      // of this traversal of the separator
        std::uint64_t m_lastNumber;  // of the one before, in the former list; 0 if there is none
        std::size_t m_first;         // its first draw in the list
        std::size_t m_lastFirst = 0; // and in the former list
        long m_cameras;
        mutable bool m_leftOut = false; // something in it is out of view
    };

protected:
    void beginTraversal(KsNode* root) override;
    void visit(KsNode* node) override;

private:
    /// What a separator added to the list.
    struct Kept {
        std::uint64_t version = 0; // of what is below it; 0 if that cannot be taken over
        std::uint64_t state = 0;   // in front of it, as a number
        std::uint64_t number = 0;  // of its traversal
        std::uint64_t outer = 0;   // of the traversal of the separator around it
        std::uint64_t view = 0;    // in which something was left out; 0 if nothing was
        std::size_t first = 0;     // draw, counted from the first one of the separator around it
        std::size_t count = 0;
    };

    void add(const KsMeshPtr& mesh, const KbMatrix* local);
    bool isWhole() const;
    void leaveOut();
    std::uint64_t stateNumber() const;
    Kept* findKept(const KsSeparator* separator);
    std::size_t tableSize() const;
    std::uint32_t materialIndex();
    std::uint32_t clipIndex();
    std::uint32_t lightIndex();

    KbViewportRegion m_viewport;
    KsDrawList m_list;
    const KsNode* m_root = nullptr; // whose scene the list shows; never followed
    long m_visits = 0;
    bool m_nodeChanged = false;

    // Nodes in these are never followed.
    const KsNode* m_keptRoot = nullptr;
    std::unordered_map<const KsSeparator*, Kept> m_kept;
    std::vector<KsDraw> m_formerDraws;
    const Recording* m_recording = nullptr; // the innermost
    std::uint64_t m_lastNumber = 0;
    std::uint64_t m_rootNumber = 0,
                  m_formerRootNumber = 0; // as if a separator were around the root
    std::size_t m_fullSize = 0;           // of the tables after the last full traversal
    long m_cameras = 0;
    bool m_keeping = false;

    // What is out of view is left out, unless cameras of the scene have different views: then the
    // last one is the list's, and is not known before.
    KbViewVolume m_view;
    std::uint64_t m_viewNumber = 1; // another one for each view
    const KsNode* m_viewRoot = nullptr;
    bool m_leavesOut = true;
    bool m_leftOut = false;
    bool m_viewsDiffer = false;
};
