#include <arborium/actions/KsWriteAction.h>

#include "io/KsOutputImpl.h"

#include <arborium/base/KsLimits.h>
#include <arborium/nodes/KsChildList.h>
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

namespace {
/// First all is counted, then written. `apply` says whether the traversal went through.
template <class Apply> void writeInStages(KsOutput& out, const Apply& apply)
{
    KsOutput::Impl& im = out.impl();
    const KsOutput::Impl::Writing writing(im);
    ++im.scene;
    out.setStage(KsOutput::COUNT_REFS);
    im.isPartial = !apply() || im.isPartial;
    out.setStage(KsOutput::WRITE);
    im.beginFile();
    im.isPartial = !apply() || im.isPartial;
    out.newLine();
}
} // namespace

void KsWriteAction::apply(KsNode* root)
{
    if (!root) return;
    const KsKeepAlive alive(root);
    writeInStages(*m_out, [this, root] {
        KsAction::apply(root);
        return !isTerminated();
    });
}

void KsWriteAction::apply(KsPath* path)
{
    if (!path || path->getLength() == 0) return;
    const KsKeepAlive alive(path);
    writeInStages(*m_out, [this, path] {
        KsAction::apply(path);
        return !isTerminated();
    });
}

void KsWriteAction::visit(KsNode* node)
{
    KsOutput::Impl& im = m_out->impl();
    ++im.walked;
    // What stands deeper than this is not traversed.
    const KsChildList* children = node->getChildren();
    if (children && children->getLength() > 0 && im.walked >= KsLimits::current().nesting * 3)
        im.isPartial = true;
    node->write(this);
    --im.walked;
    // Along a path only a part of a node is written, for which no other place may stand.
    const PathCode code = getPathCode();
    if (!children || (code != IN_PATH && code != OFF_PATH)) return;
    if (KsOutput::Impl::Reference* known = im.find(node)) known->isDefined = false;
}

bool KsWriteAction::isMetBeside(const KsNode* node) const
{
    // Whoever writes children counts those that are to be written at all.
    return KsAction::isMetBeside(node) ||
           (m_out->getStage() == KsOutput::WRITE && node->shouldWrite(m_out));
}
