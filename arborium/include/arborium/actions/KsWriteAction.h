#pragma once

#include <arborium/actions/KsAction.h>

#include <memory>

class KsOutput;

/// Writes a scene: once through to count references, once to write. Scenes that are written one after
/// the other into the same output share those nodes that have a name.
class ARBORIUM_API KsWriteAction : public KsAction {
public:
    /// With an output of its own.
    KsWriteAction();
    explicit KsWriteAction(KsOutput* out);
    ~KsWriteAction() override;
    KsType getTypeId() const override { return getClassTypeId(); }
    static KsType getClassTypeId();

    KsOutput* getOutput() const { return m_out; }
    void apply(KsNode* root) override;
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
