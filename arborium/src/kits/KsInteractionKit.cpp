#include <arborium/kits/KsInteractionKit.h>

#include <arborium/actions/KsPath.h>
#include <arborium/base/KsDebugError.h>
#include <arborium/io/KsDB.h>
#include <arborium/nodes/KsSwitch.h>

#include <algorithm>

KS_KIT_SOURCE(KsInteractionKit, KsBaseKit)

KsInteractionKit::KsInteractionKit() { KsInstanceBuilder build(classRecord, this); }

KsInteractionKit::~KsInteractionKit() = default;

void KsInteractionKit::setSwitchValue(KsNode* node, int value)
{
    auto* choice = ksCast<KsSwitch>(node);
    if (choice && choice->whichChild.getValue() != value) choice->whichChild = value;
}

bool KsInteractionKit::setPartAsDefault(const KbName& part, const KbName& defaultNodeName,
                                        bool onlyIfDefault)
{
    const KsNodekitCatalog* catalog = getNodekitCatalog();
    const KsType type = catalog ? catalog->getType(catalog->getPartNumber(part)) : KsType();
    auto* named = static_cast<KsNode*>(KsBase::getFirstNamed(defaultNodeName, type));
    return setPartAsDefault(part, named, onlyIfDefault);
}

bool KsInteractionKit::setPartAsDefault(const KbName& part, KsNode* node, bool onlyIfDefault)
{
    const KsNodekitCatalog* catalog = getNodekitCatalog();
    const int row = catalog ? catalog->getPartNumber(part) : -1;
    if (row <= 0) {
        KsDebugError::post("KsInteractionKit::setPartAsDefault", "\"%s\" is no part of a %s",
                           part.getString(), getTypeId().getName().getString());
        return false;
    }
    if (onlyIfDefault && !isPartDefault(row)) return false;
    if (node) return setPartAt(row, node, true, true);
    // An empty node of this kit's own, unless it has one already.
    if (isPartShared(row) || !isPartDefault(row)) setPartAt(row, nullptr, true);
    return makePart(row) != nullptr;
}

bool KsInteractionKit::setPartAsPath(const KbName& part, KsPath* path)
{
    const char* where = "KsInteractionKit::setPartAsPath";
    const KsNodekitCatalog* catalog = getNodekitCatalog();
    if (!catalog || catalog->getPartNumber(part) <= 0) {
        KsDebugError::post(where, "\"%s\" is no part of a %s", part.getString(),
                           getTypeId().getName().getString());
        return false;
    }
    PartPath made;
    made.part = part;
    for (int i = 0; path && path->getNode(i); ++i) {
        made.nodes.push_back(path->getNode(i));
        made.tail = path->getNode(i);
    }
    if (made.tail && isBelow(made.tail)) {
        KsDebugError::post(where, "the path does not lead out of the kit");
        return false;
    }
    m_partPaths.erase(std::remove_if(m_partPaths.begin(), m_partPaths.end(),
                                     [&](const PartPath& p) { return p.part == part; }),
                      m_partPaths.end());
    if (made.tail) m_partPaths.push_back(std::move(made));
    return true;
}

int KsInteractionKit::findPartAsPath(const KsPath& pickPath) const
{
    for (const PartPath& p : m_partPaths) {
        const int last = pickPath.findNode(p.tail);
        const int first = last + 1 - static_cast<int>(p.nodes.size());
        if (last < 0 || first < 0) continue;
        bool passes = true;
        for (int i = first; i <= last && passes; ++i)
            passes = pickPath.getNode(i) == p.nodes[static_cast<std::size_t>(i - first)];
        if (passes) return last;
    }
    return -1;
}

// Start and stop. The classes are those of the layer, registered as one; each of the counts holds
// it, in whatever order they end.

namespace {

class InitCount {
public:
    void init()
    {
        if (m_count++ == 0) KsDB::init();
    }
    void finish()
    {
        if (m_count > 0 && --m_count == 0) KsDB::finish();
    }
    int get() const { return m_count; }

private:
    int m_count = 0;
};

InitCount s_nodeKit;
InitCount s_interaction;

} // namespace

void KsInteraction::init() { s_interaction.init(); }
void KsInteraction::finish() { s_interaction.finish(); }
int KsInteraction::getInitCount() { return s_interaction.get(); }

void KsNodeKit::init() { s_nodeKit.init(); }
void KsNodeKit::finish() { s_nodeKit.finish(); }
int KsNodeKit::getInitCount() { return s_nodeKit.get(); }
