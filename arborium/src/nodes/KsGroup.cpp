#include <arborium/nodes/KsGroup.h>

#include <arborium/actions/KsGetBoundingBoxAction.h>
#include <arborium/actions/KsGetMatrixAction.h>
#include <arborium/actions/KsSearchAction.h>
#include <arborium/actions/KsWriteAction.h>
#include <arborium/base/KsDebugError.h>
#include <arborium/base/KsLimits.h>
#include <arborium/io/KsInput.h>
#include <arborium/io/KsOutput.h>

#include <algorithm>

KS_NODE_SOURCE(KsGroup, KsNode)

KsGroup::KsGroup() : m_children(this) { KsInstanceBuilder build(classRecord, this); }

KsGroup::~KsGroup() = default;

namespace {
bool isGiven(const KsNode* child, const char* where)
{
    if (child) return true;
    KsDebugError::post(where, "NULL child node");
    return false;
}

bool isInRange(int index, int last, const char* where)
{
    if (index >= 0 && index <= last) return true;
    KsDebugError::post(where, "Index %d is out of range %d - %d", index, 0, last);
    return false;
}
} // namespace

void KsGroup::addChild(KsNode* child)
{
    if (isGiven(child, "KsGroup::addChild")) m_children.append(child);
}

void KsGroup::insertChild(KsNode* child, int index)
{
    if (!isGiven(child, "KsGroup::insertChild")) return;
    if (isInRange(index, getNumChildren(), "KsGroup::insertChild")) m_children.insert(child, index);
}

KsNode* KsGroup::getChild(int index) const
{
    if (!isInRange(index, getNumChildren() - 1, "KsGroup::getChild")) return nullptr;
    return m_children.get(index);
}

void KsGroup::removeChild(KsNode* child)
{
    const int index = findChild(child);
    if (index >= 0)
        m_children.remove(index);
    else
        KsDebugError::post("KsGroup::removeChild", "The node is no child of this group");
}

void KsGroup::removeChild(int index)
{
    if (isInRange(index, getNumChildren() - 1, "KsGroup::removeChild")) m_children.remove(index);
}

void KsGroup::removeAllChildren() { m_children.truncate(0); }

void KsGroup::replaceChild(KsNode* oldChild, KsNode* newChild)
{
    const int index = findChild(oldChild);
    if (index >= 0)
        replaceChild(index, newChild);
    else
        KsDebugError::post("KsGroup::replaceChild", "The node is no child of this group");
}

void KsGroup::replaceChild(int index, KsNode* newChild)
{
    if (!isGiven(newChild, "KsGroup::replaceChild")) return;
    if (isInRange(index, getNumChildren() - 1, "KsGroup::replaceChild"))
        m_children.set(index, newChild);
}

bool KsGroup::affectsState() const { return getNumChildren() > 0; }

void KsGroup::doAction(KsAction* action) { m_children.traverseInPath(action); }

void KsGroup::getBoundingBox(KsGetBoundingBoxAction* action) { m_children.traverseInPath(action); }

void KsGroup::getMatrix(KsGetMatrixAction* action)
{
    // Behind a group everything in it is in force; below the end of a path nothing is asked for.
    const KsAction::PathCode code = action->getPathCode();
    if (code == KsAction::IN_PATH || code == KsAction::OFF_PATH) m_children.traverseInPath(action);
}

void KsGroup::search(KsSearchAction* action)
{
    KsNode::search(action);
    if (!action->isTerminated()) m_children.traverseInPath(action);
}

void KsGroup::write(KsWriteAction* action)
{
    KsOutput* out = action->getOutput();
    int numIndices = 0;
    const int* indices = nullptr;
    int last = getNumChildren() - 1;
    if (action->getPathCode(numIndices, indices) == KsAction::IN_PATH && numIndices > 0)
        last = std::min(last, indices[numIndices - 1]);

    if (out->getStage() == KsOutput::COUNT_REFS) {
        addWriteReference(out);
        if (!hasMultipleWriteRefs(out)) m_children.traverse(action, 0, last);
        return;
    }
    if (writeHeader(out, true)) return;
    getFieldData()->write(out, this);
    if (out->isBinary()) {
        std::int32_t count = 0;
        for (int i = 0; i <= last; ++i) count += m_children.get(i)->shouldWrite(out) ? 1 : 0;
        out->write(count);
    }
    for (int i = 0; i <= last && i < getNumChildren(); ++i)
        if (m_children.get(i)->shouldWrite(out)) action->traverse(m_children.get(i), i);
    writeFooter(out);
}

bool KsGroup::readInstance(KsInput* in, unsigned short flags)
{
    static constexpr unsigned short hasChildren = 2;
    const KsKeepAlive keep(this);
    const bool wasNotifying = enableNotify(false);
    bool isGood = KsNode::readInstance(in, flags);
    if (isGood && (!in->isBinary() || (flags & hasChildren))) isGood = readChildren(in);
    enableNotify(wasNotifying);
    return isGood;
}

bool KsGroup::readChildren(KsInput* in)
{
    const auto readChild = [this, in](bool& isMissing) {
        KsBase* child = nullptr;
        const bool isGood = KsBase::read(in, child, KsNode::getClassTypeId());
        isMissing = !child;
        if (!child) return isGood;
        const KsRef<KsBase> keep(child);
        if (isGood) addChild(static_cast<KsNode*>(child));
        return isGood;
    };
    bool isMissing = false;
    if (!in->isBinary()) {
        while (!isMissing)
            if (!readChild(isMissing)) return false;
        return true;
    }
    static constexpr std::size_t leastBytes = 8;  // of the shortest child
    static constexpr std::int32_t mostRoom = 256; // the count may promise too much
    std::int32_t count = 0;
    if (!in->readCount(count, leastBytes, KsLimits::current().nodesPerFile)) return false;
    m_children.reserve(getNumChildren() + std::min(count, mostRoom));
    for (std::int32_t i = 0; i < count; ++i) {
        if (!readChild(isMissing)) return false;
        if (!isMissing) continue;
        in->addError("a child of the group is missing");
        return false;
    }
    if (in->getVersion() != 1.0f) return true;
    std::int32_t end = 0;
    if (!in->read(end)) return false;
    if (end == -1) return true;
    in->addError("the end of the group's children is missing");
    return false;
}

void KsGroup::copyContents(const KsNode* from, Copier& copier)
{
    KsNode::copyContents(from, copier);
    const KsChildList& children = static_cast<const KsGroup*>(from)->m_children;
    for (int i = 0; i < children.getLength(); ++i)
        if (KsNode* child = copier.copyOf(children.get(i))) m_children.append(child);
}
