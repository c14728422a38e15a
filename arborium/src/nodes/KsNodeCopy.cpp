#include <arborium/nodes/KsNode.h>

#include <deque>
#include <unordered_map>
#include <vector>

struct KsNode::Copier::Impl {
    struct Pair {
        const KsNode* from;
        KsRef<KsNode> to;
    };
    bool copyConnections;
    int depth = 0;
    std::unordered_map<const KsNode*, KsNode*> copies;
    std::vector<Pair> pairs;   // all of them, in the order of their making
    std::deque<Pair> unfilled; // those that stood too deep to be filled at once
};

KsNode::Copier::Copier(bool copyConnections) : m_impl(std::make_unique<Impl>())
{
    m_impl->copyConnections = copyConnections;
}

KsNode::Copier::~Copier() = default;

KsNode* KsNode::Copier::find(const KsNode* node) const
{
    const auto found = m_impl->copies.find(node);
    return found == m_impl->copies.end() ? const_cast<KsNode*>(node) : found->second;
}

KsNode* KsNode::Copier::copyOf(const KsNode* node)
{
    static constexpr int maxDepth = 64;
    if (!node) return nullptr;
    const auto found = m_impl->copies.find(node);
    if (found != m_impl->copies.end()) return found->second;
    KsTypedObject* made = node->getTypeId().createInstance();
    if (!made) return nullptr;
    auto* copy = static_cast<KsNode*>(made);
    m_impl->copies.emplace(node, copy);
    m_impl->pairs.push_back({node, KsRef<KsNode>(copy)});
    if (m_impl->depth >= maxDepth) {
        m_impl->unfilled.push_back({node, KsRef<KsNode>(copy)});
        return copy;
    }
    ++m_impl->depth;
    fill(node, copy);
    --m_impl->depth;
    return copy;
}

void KsNode::Copier::keep(const KsNode* node)
{
    if (node) m_impl->copies.emplace(node, const_cast<KsNode*>(node));
}

void KsNode::Copier::fill(const KsNode* from, KsNode* to)
{
    to->setName(from->getName());
    const KsFieldData* fields = from->getFieldData();
    for (int i = 0; i < fields->getNumFields(); ++i) {
        if (fields->isPartField(i)) continue; // the kit copies its parts
        const KsField* field = fields->getField(from, i);
        KsField* copy = fields->getField(to, i);
        if (const auto* reference = ksCast<KsSFNode>(field)) {
            static_cast<KsSFNode*>(copy)->setValue(copyOf(reference->getValue()));
            copy->setDefault(field->isDefault());
        } else {
            copy->copyFrom(*field);
        }
    }
    to->copyContents(from, *this);
}

void KsNode::Copier::finish(KsNode* root)
{
    while (!m_impl->unfilled.empty()) {
        const Impl::Pair pair = m_impl->unfilled.front();
        m_impl->unfilled.pop_front();
        fill(pair.from, pair.to);
    }
    for (const Impl::Pair& pair : m_impl->pairs) {
        const KsFieldData* fields = pair.from->getFieldData();
        for (int i = 0; i < fields->getNumFields(); ++i) {
            const KsField* field = fields->getField(pair.from, i, false);
            KsField* master = field ? field->getConnectedField() : nullptr;
            // A private connection is made anew by who needs it.
            if (!master || field->isConnectionPrivate()) continue;
            KsNode* owner = master->getContainer() ? master->getContainer()->asNode() : nullptr;
            KsNode* ownerCopy = owner ? find(owner) : nullptr;
            if (owner && ownerCopy != owner) {
                const KsFieldData* ownerFields = owner->getFieldData();
                for (int k = 0; k < ownerFields->getNumFields(); ++k) {
                    if (ownerFields->getField(owner, k, false) != master) continue;
                    master = ownerFields->getField(ownerCopy, k);
                    break;
                }
            } else if (!m_impl->copyConnections) {
                continue;
            }
            if (KsField* copy = fields->getField(pair.to, i)) copy->connectFrom(master);
        }
    }
    if (root) root->ref();
    m_impl->pairs.clear();
    m_impl->copies.clear();
    if (root) root->unrefNoDelete();
}

KsNode* KsNode::copy(bool copyConnections) const
{
    Copier copier(copyConnections);
    KsNode* root = copier.copyOf(this);
    copier.finish(root);
    return root;
}

void KsNode::copyContents(const KsNode*, Copier&) {}
