#include <formweave/KsElementContainer.h>

#include <arborium/actions/KsRayPickAction.h>
#include <arborium/actions/KsSearchAction.h>
#include <arborium/actions/KsWriteAction.h>
#include <arborium/base/KsDBImpl.h>
#include <arborium/base/KsDebugError.h>
#include <arborium/base/KsLimits.h>
#include <arborium/io/KsInput.h>
#include <arborium/io/KsOutput.h>
#include <formweave/KsTopLevelDialog.h>

#include <algorithm>
#include <string>
#include <vector>

bool ksIsBinary(KsInput* in) { return in->isBinary(); }

namespace {

// Not by the types of the library: a tree may outlive them.
KsTopLevelDialog* asDialog(KsFormweave* child) { return dynamic_cast<KsTopLevelDialog*>(child); }

} // namespace

KsElementList::KsElementList(KsFormweave* owner, const KsElementListTraits& traits)
    : m_owner(owner), m_traits(traits)
{}

KsElementList::~KsElementList() = default;

KsElementList::Walk::Walk(const KsElementList& walked) : list(walked), outer(walked.m_walk)
{
    list.m_walk = this;
}

KsElementList::Walk::~Walk() { list.m_walk = outer; }

void KsElementList::orphanChildren()
{
    for (int i = 0; i < m_count; ++i) {
        KsFormweave* child = at(i);
        if (child->getParentElement() != m_owner) continue;
        child->setParent(nullptr);
        if (KsTopLevelDialog* dialog = asDialog(child)) dialog->hide();
    }
}

KsFormweave* KsElementList::at(int index) const
{
    return static_cast<KsFormweave*>((*m_owner->getChildren())[index]);
}

int KsElementList::find(const KsNode* child) const
{
    const KsChildList& list = *m_owner->getChildren();
    for (int i = 0; child && i < m_count; ++i) {
        if (list[i] == child) return i;
    }
    return -1;
}

void KsElementList::post(const char* operation, int index, int last) const
{
    postAt(m_traits.className, operation, index, last);
}

void KsElementList::postAt(const char* className, const char* operation, int index, int last,
                           const char* end) const
{
    const std::string where = std::string(className) + "::" + operation;
    KsDebugError::post(where.c_str(), "Index %d is out of range %d - %d%s", index, 0, last, end);
}

bool KsElementList::mayTake(KsFormweave* child, const char* operation) const
{
    const std::string where = std::string(m_traits.className) + "::" + operation;
    if (!child) {
        KsDebugError::post(where.c_str(), "NULL child node");
        return false;
    }
    const KsFormweave* parent = child->getParentElement();
    const KsElementList* siblings = parent ? parent->getElements() : nullptr;
    if (siblings && siblings->find(child) >= 0) {
        KsDebugError::post(where.c_str(),
                           "The child node stands in a %s already; remove it there "
                           "first",
                           parent->getTypeId().getName().getString());
        return false;
    }
    if (m_owner->isBelow(child)) {
        KsDebugError::post(where.c_str(), "A node cannot stand below itself");
        return false;
    }
    return true;
}

void KsElementList::shiftWalks(int index, int by)
{
    for (Walk* walk = m_walk; walk; walk = walk->outer) {
        if (walk->index >= index) walk->index += by;
    }
}

void KsElementList::place(KsFormweave* child, int index)
{
    m_owner->restoreTopSeparator();
    m_owner->getChildren()->insert(child, index);
    ++m_count;
    shiftWalks(index, 1);
    join(child);
}

void KsElementList::join(KsFormweave* child)
{
    const bool hasOwnWindow = asDialog(child);
    // What the child has of another place is built anew in this one.
    if (child->isBuilt2D() && !hasOwnWindow) child->destroyWidget();
    child->setParent(m_owner);
    if (!child->isBuilt3D() && !hasOwnWindow) return;
    child->change3DEnable();
    if (m_owner->isBuilt3D()) child->show3D(m_owner->showsChildren3D());
}

int KsElementList::retire(int index)
{
    const KsRef<KsFormweave> child(at(index));
    child->destroyWidget();
    if (KsTopLevelDialog* dialog = asDialog(child)) dialog->hide();
    // Widgets that go may tell the application, which may change the list.
    return index < m_count && at(index) == child ? index : find(child);
}

void KsElementList::letGo(KsFormweave* child)
{
    child->setParent(nullptr);
    // What hid it in a scene is no longer above it.
    if (!asDialog(child) && !child->isShown3D()) child->show3D(1);
}

bool KsElementList::add(KsFormweave* child)
{
    if (!mayTake(child, "addChild")) return false;
    place(child, m_count);
    return true;
}

bool KsElementList::insert(KsFormweave* child, int index)
{
    if (!mayTake(child, "insertChild")) return false;
    if (index < 0 || index > m_count) {
        postAt(indexClassName(), "insertChild", index, m_count);
        return false;
    }
    place(child, index);
    return true;
}

KsFormweave* KsElementList::get(int index) const
{
    if (index >= m_count) {
        postAt(indexClassName(), "getChild", index, m_count, m_traits.getChildWarning);
        return nullptr;
    }
    return index < 0 ? nullptr : at(index);
}

bool KsElementList::remove(int index)
{
    if (index < 0 || index >= m_count) {
        post("removeChild", index, m_count - 1);
        return false;
    }
    const KsRef<KsFormweave> child(at(index));
    index = retire(index);
    if (index < 0) return false;
    --m_count;
    m_owner->getChildren()->remove(index);
    // A walk that stands at the child finds the next one in its place.
    shiftWalks(index, -1);
    letGo(child);
    return true;
}

bool KsElementList::removeAll()
{
    for (int i = m_count - 1; i >= 0; --i) {
        if (i < m_count) retire(i);
    }
    std::vector<KsRef<KsFormweave>> children;
    for (int i = 0; i < m_count; ++i) children.emplace_back(at(i));
    m_count = 0;
    m_owner->getChildren()->truncate(0);
    for (const auto& child : children) {
        if (child->getParentElement() == m_owner) letGo(child);
    }
    return true;
}

bool KsElementList::replace(int index, KsFormweave* child)
{
    if (!mayTake(child, "replaceChild")) return false;
    if (index < 0 || index >= m_count) {
        post("replaceChild", index, m_count - 1);
        return false;
    }
    const KsRef<KsFormweave> old(at(index));
    index = retire(index);
    if (index < 0) return false;
    m_owner->getChildren()->set(index, child);
    letGo(old);
    join(child);
    return true;
}

void KsElementList::adoptCopies()
{
    const KsChildList& list = *m_owner->getChildren();
    for (m_count = 0; m_count < list.getLength(); ++m_count) {
        auto* child = ksCast<KsFormweave>(list[m_count]);
        if (!child || !child->isOfType(m_traits.childType())) return;
        child->setParent(m_owner);
    }
}

bool KsElementList::read(KsInput* in, const std::function<void(KsFormweave*)>& add)
{
    const auto readOne = [&](KsBase*& node) {
        node = nullptr;
        if (!KsBase::read(in, node, m_traits.childType())) return false;
        const KsRef<KsBase> hold(node);
        auto* child = static_cast<KsFormweave*>(node);
        if (child && child->getParentElement()) {
            in->addError("an element stands in one container only, and this one is used a second "
                         "time");
            return false;
        }
        if (child) add(child);
        return true;
    };
    KsBase* node = nullptr;
    if (!in->isBinary()) {
        bool ok = true;
        // The reader goes on behind an error: all errors of a file are found in one run.
        do {
            if (!readOne(node)) ok = false;
        } while (node);
        return ok;
    }
    static constexpr std::size_t leastBytes = 8; // of the shortest child
    std::int32_t count = 0;
    if (!in->readCount(count, leastBytes, KsLimits::current().nodesPerFile)) return false;
    for (; count > 0; --count) {
        if (!readOne(node) || !node) return false;
    }
    if (in->getVersion() == 1.0f) {
        std::int32_t end = 0;
        if (!in->read(end) || end != -1) return false;
    }
    return true;
}

void KsElementList::write(KsWriteAction* action)
{
    KsOutput* out = action->getOutput();
    KsChildList* list = m_owner->getChildren();
    if (out->getStage() == KsOutput::COUNT_REFS) {
        m_owner->addWriteReference(out);
        if (m_owner->hasMultipleWriteRefs(out)) return;
        m_owner->writeFields(action);
        list->traverse(action, 0, m_count - 1);
        return;
    }
    if (m_owner->writeHeader(out, true)) return;
    m_owner->writeFields(action);
    int numIndices = 0;
    const int* indices = nullptr;
    int last = m_count - 1;
    if (action->getPathCode(numIndices, indices) == KsAction::IN_PATH && numIndices > 0)
        last = std::min(last, indices[numIndices - 1]);
    const bool alone = m_traits.hidesChildrenOnSync &&
                       ((KsOutputImpl::isSynchronizing(out) && KsDBImpl::isRunningCluster()) ||
                        KsDBImpl::isRunningToolMode());
    std::int32_t count = 0;
    for (int i = 0; i <= last && !alone; ++i) count += at(i)->shouldWrite(out) ? 1 : 0;
    if (out->isBinary()) out->write(count);
    for (int i = 0; i <= last && !alone; ++i) {
        if (at(i)->shouldWrite(out)) action->traverse(at(i), i);
    }
    m_owner->endWrite(action);
}

void KsElementList::search(KsSearchAction* action)
{
    m_owner->KsNode::search(action);
    if (!KsBaseKit::isSearchingChildren() || action->isFound()) return;
    KsChildList* list = m_owner->getChildren();
    list->traverse(action, 0, m_count - 1);
    KsFormweave::cutToLastKit(action, KsFormweave::getClassTypeId());
    if (action->getInterest() != KsSearchAction::ALL && action->isFound()) return;
    list->traverse(action, m_count, list->getLength() - 1);
}

void KsElementList::rayPick(KsRayPickAction* action)
{
    KsChildList* list = m_owner->getChildren();
    const int before = KsFormweave::countPickedPoints(action);
    // Each once: a second look at the last one, where nothing was met, would double the visits with
    // each level.
    list->traverse(action, 0, m_count);
    KsFormweave::addKitDetails(action, KsFormweave::getClassTypeId(), before);
}
