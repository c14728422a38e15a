#pragma once

#include <arborium/actions/KsAction.h>

#include <memory>

class KsOutput;

/// Writes a scene: once through to count references, once to write. Scenes that are written one after
/// the other into the same output share those nodes that have a name.
class ARBORIUM_API KsWriteAction : public KsAction {
public:
    /// With an output of its own, which gathers the text in memory.
    KsWriteAction();
    /// The output is not owned and must live as long; null is as above.
    explicit KsWriteAction(KsOutput* out);
    ~KsWriteAction() override;
    KsType getTypeId() const override { return getClassTypeId(); }
    static KsType getClassTypeId();

    /// Never null.
    KsOutput* getOutput() const { return m_out; }
    /// Writes the node as a scene of the file; several applications follow each other in it. Null
    /// writes nothing.
    void apply(KsNode* root) override;
    /// Writes the nodes of the path, what affects their state, and all below the last one. Null and
    /// the empty path write nothing.
    void apply(KsPath* path) override;
    using KsAction::apply;
    /// For fields that hold nodes: goes on with the node in the present stage of the output.
    void continueTo(KsNode* node) { KsAction::apply(node); }

protected:
    void visit(KsNode* node) override;
    bool isMetBeside(const KsNode* node) const override;

private:
    KsOutput* m_out;
    std::unique_ptr<KsOutput> m_own;
};
