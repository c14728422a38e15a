#include <arborium/actions/KsWriteAction.h>

#include "io/KsOutputImpl.h"

#include <arborium/nodes/KsNode.h>

KsWriteAction::KsWriteAction() : KsWriteAction(nullptr) {}

KsWriteAction::KsWriteAction(KsOutput* out)
    : m_out(out), m_own(out ? nullptr : std::make_unique<KsOutput>())
{
    if (!m_out) m_out = m_own.get();
}

KsWriteAction::~KsWriteAction() = default;

KsType KsWriteAction::getClassTypeId()
{
    static const KsType type = KsType::createType(KsAction::getClassTypeId(), "WriteAction");
    return type;
}

void KsWriteAction::apply(KsNode* root)
{
    if (!root) return;
    const KsKeepAlive alive(root);
    m_out->setStage(KsOutput::COUNT_REFS);
    KsAction::apply(root);
    m_out->setStage(KsOutput::WRITE);
    m_out->impl().beginFile();
    KsAction::apply(root);
    m_out->newLine();
}

void KsWriteAction::apply(KsPath* path)
{
    if (!path || path->getLength() == 0) return;
    const KsKeepAlive alive(path);
    m_out->setStage(KsOutput::COUNT_REFS);
    KsAction::apply(path);
    m_out->setStage(KsOutput::WRITE);
    m_out->impl().beginFile();
    KsAction::apply(path);
    m_out->newLine();
}

void KsWriteAction::visit(KsNode* node) { node->write(this); }
