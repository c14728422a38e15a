#pragma once

#include <arborium/actions/KsAction.h>

#include <memory>

class KsOutput;

/// Writes a scene: once through to count references, once to write.
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

private:
    KsOutput* m_out;
    std::unique_ptr<KsOutput> m_own;
};
