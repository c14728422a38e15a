#include "io/KsInputImpl.h"

#include <arborium/base/KsLimits.h>
#include <arborium/nodes/KsNode.h>

KsInput::Impl::Reference* KsInput::Impl::find(const Key& key)
{
    const auto found = references.find(key.toString());
    return found == references.end() || !found->second.get() ? nullptr : &found->second;
}

KsBase* KsInput::Impl::Reference::get() const
{
    return watch ? watch->getAttachedNode() : object.get();
}

void KsInput::Impl::Reference::handOver()
{
    auto* node = ksCast<KsNode>(object.get());
    if (!node || !isHandedOut) return;
    watch = std::make_unique<KsNodeSensor>([](void*, KsSensor*) {}, nullptr);
    watch->attach(node);
    node->ref();
    object.reset();
    node->unrefNoDelete();
}

std::string KsInput::Impl::nearestReference(const std::string& name) const
{
    constexpr std::size_t most = 5000; // beyond it, looking for one would take too long
    KsNearestName nearest(*this, name);
    if (references.size() <= most)
        for (const auto& each : references) nearest.offer(each.first);
    return nearest.hint();
}

void KsInput::Impl::addVisits(std::int64_t visits)
{
    const std::int64_t limit = KsLimits::current().visits;
    std::int64_t& sum = open.empty() ? topVisits : open.back().visits;
    sum += visits;
    if (sum > limit)
        stop("the nodes of the file, shared ones counted each time that they are used, are more "
             "than " +
             limitText(limit, "visits"));
}

bool KsInput::Impl::mayBegin(const char* at)
{
    const KsLimits& limits = KsLimits::current();
    token = at;
    if (static_cast<std::int64_t>(open.size()) + outerDepth >= limits.nesting) {
        stop("nodes stand inside each other deeper than " +
             limitText(limits.nesting, "levels of nesting"));
        return false;
    }
    if (++numObjects > limits.nodesPerFile) {
        stop("the file has more than " + limitText(limits.nodesPerFile, "nodes"));
        return false;
    }
    return true;
}

void KsInput::Impl::connect()
{
    for (Connection& each : connections) {
        token = each.at;
        const auto found = references.find(each.master);
        KsFieldContainer* master =
            found == references.end() ? nullptr : ksCast<KsFieldContainer>(found->second.get());
        const std::string name = each.master.substr(0, each.master.find('\0'));
        if (!master) {
            error("no node is called " + quote(name) + nearestReference(name));
            continue;
        }
        KsField* field = master->getField(KbName::findExisting(each.masterField));
        if (!field) {
            error(std::string(master->getTypeId().getName().getString()) + " has no field " +
                  quote(each.masterField));
        } else if (field->getTypeId() != each.field->getTypeId() || field == each.field) {
            error("the field " + quote(each.masterField) + " of " + quote(name) +
                  " cannot be the source of this one: expected a field of the same kind");
        } else {
            each.field->connectFrom(field);
        }
    }
    connections.clear();
}

void KsInput::Impl::forgetObjects()
{
    connections.clear();
    waiting.clear();
    for (auto& each : references) {
        KsRef<KsBase>& held = each.second.object;
        KsBase* const object = held.get();
        if (!object || !each.second.isHandedOut || object->getRefCount() != 1) continue;
        object->ref();
        held.reset();
        object->unrefNoDelete();
    }
    references.clear();
}
