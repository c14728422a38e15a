#include "SceneModel.h"

#include <arborium/nodes/KsBaseColor.h>
#include <arborium/nodes/KsCube.h>
#include <arborium/nodes/KsScale.h>
#include <arborium/nodes/KsSwitch.h>
#include <arborium/nodes/KsTranslation.h>

#include <algorithm>
#include <cmath>

namespace SceneModel {

KsField* Value::get() const { return owner->node->getField(KbName(field)); }

std::array<float, 3> Value::actual() const
{
    const KsField* f = get();
    if (const auto* length = ksCast<KsSFFloat>(f)) return {length->getValue(), 0, 0};
    if (const auto* vector = ksCast<KsSFVec3f>(f)) {
        const KbVec3f& v = vector->getValue();
        return {v[0], v[1], v[2]};
    }
    const auto* colors = ksCast<KsMFColor>(f);
    if (!colors || colors->getNum() != 1) return {-1, -1, -1};
    return {(*colors)[0][0], (*colors)[0][1], (*colors)[0][2]};
}

bool Item::holds(const Item* other) const
{
    if (this == other) return true;
    return std::any_of(children.begin(), children.end(),
                       [other](const Item* child) { return child->holds(other); });
}

int Item::depth() const
{
    int most = 0;
    for (const Item* child : children) most = std::max(most, child->depth());
    return most + 1;
}

long Item::visits() const
{
    long sum = 1;
    for (const Item* child : children) sum += child->visits();
    return sum;
}

namespace {

struct State {
    std::array<double, 3> scale{1, 1, 1};
    std::array<double, 3> origin{};
    std::array<float, 3> color{0.8f, 0.8f, 0.8f};
};

void walk(const Item* item, State& state, std::vector<Seen>& seen)
{
    switch (item->kind) {
    case Kind::Group:
        for (const Item* child : item->children) walk(child, state, seen);
        break;
    case Kind::Separator: {
        State inner = state;
        for (const Item* child : item->children) walk(child, inner, seen);
        break;
    }
    case Kind::Switch:
        for (std::size_t i = 0; i < item->children.size(); ++i)
            if (item->which == -3 || item->which == static_cast<int>(i))
                walk(item->children[i], state, seen);
        break;
    case Kind::Place:
        for (std::size_t i = 0; i < 3; ++i)
            state.origin[i] += state.scale[i] * static_cast<double>(item->value(0)->numbers[i]);
        break;
    case Kind::Factor:
        for (std::size_t i = 0; i < 3; ++i)
            state.scale[i] *= static_cast<double>(item->value(0)->numbers[i]);
        break;
    case Kind::Color: state.color = item->value(0)->numbers; break;
    case Kind::Cube: {
        Seen cube{item, {}, {}, state.color};
        for (std::size_t i = 0; i < 3; ++i) {
            const double half =
                std::fabs(state.scale[i]) * static_cast<double>(item->values[i]->numbers[0]) / 2;
            cube.low[static_cast<int>(i)] = static_cast<float>(state.origin[i] - half);
            cube.high[static_cast<int>(i)] = static_cast<float>(state.origin[i] + half);
        }
        seen.push_back(cube);
        break;
    }
    }
}

template <class Node> KsNode* make() { return new Node; }

} // namespace

std::vector<Seen> seenFrom(const Item* root)
{
    State state;
    std::vector<Seen> seen;
    walk(root, state, seen);
    return seen;
}

std::unique_ptr<Item> makeItem(Kind kind)
{
    auto item = std::make_unique<Item>();
    item->kind = kind;
    const auto add = [&](ValueKind valueKind, const char* field, std::array<float, 3> numbers) {
        auto value = std::make_unique<Value>();
        value->owner = item.get();
        value->kind = valueKind;
        value->field = field;
        value->numbers = numbers;
        item->values.push_back(std::move(value));
    };
    switch (kind) {
    case Kind::Group: item->node = make<KsGroup>(); break;
    case Kind::Separator: item->node = make<KsSeparator>(); break;
    case Kind::Switch: item->node = make<KsSwitch>(); break;
    case Kind::Place:
        item->node = make<KsTranslation>();
        add(ValueKind::Place, "translation", {0, 0, 0});
        break;
    case Kind::Factor:
        item->node = make<KsScale>();
        add(ValueKind::Factor, "scaleFactor", {1, 1, 1});
        break;
    case Kind::Color:
        item->node = make<KsBaseColor>();
        add(ValueKind::Color, "rgb", {0.8f, 0.8f, 0.8f});
        break;
    case Kind::Cube:
        item->node = make<KsCube>();
        for (const char* field : {"width", "height", "depth"})
            add(ValueKind::Length, field, {2, 0, 0});
        break;
    }
    return item;
}

void spread(std::vector<std::unique_ptr<Item>>& all, Value* value)
{
    ++value->expected;
    value->isBeingSet = true;
    for (const auto& item : all) {
        for (const auto& other : item->values) {
            if (other->master != value || other->isBeingSet) continue;
            other->numbers = value->numbers;
            spread(all, other.get());
        }
    }
    value->isBeingSet = false;
}

} // namespace SceneModel
