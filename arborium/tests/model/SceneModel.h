#pragma once

#include "RandomScene.h"

#include <arborium/base/KbBox3f.h>
#include <arborium/nodes/KsGroup.h>
#include <arborium/nodes/KsSeparator.h>
#include <arborium/sensors/KsSensor.h>

#include <array>
#include <memory>
#include <string>
#include <vector>

/// What has to be there, kept as plain values beside the nodes: a tree with shared parts, the values
/// of fields, who takes them from whom, and who listens.
namespace SceneModel {

enum class Kind { Group, Separator, Switch, Place, Factor, Color, Cube };
enum class ValueKind { Length, Place, Factor, Color };

struct Item;

/// The value of one field.
struct Value {
    Item* owner = nullptr;
    ValueKind kind = ValueKind::Length;
    const char* field = "";
    std::array<float, 3> numbers{};
    Value* master = nullptr;
    // A sensor, how often it has to have been told, and how often it was.
    std::unique_ptr<KsFieldSensor> sensor;
    int expected = 0;
    int told = 0;
    bool isBeingSet = false;

    KsField* get() const;
    std::array<float, 3> actual() const;
};

struct Item {
    Kind kind = Kind::Group;
    KsRef<KsNode> node;
    std::string name;
    std::vector<Item*> children;
    int which = -1; ///< Of a switch.
    std::vector<std::unique_ptr<Value>> values;

    bool isGroup() const { return kind <= Kind::Switch; }
    KsGroup* group() const { return static_cast<KsGroup*>(node.get()); }
    Value* value(int index) const { return values[static_cast<std::size_t>(index)].get(); }
    bool holds(const Item* other) const;
    int depth() const; ///< Of what is below it, itself included.
    long visits() const;
};

/// A cube as it is seen.
struct Seen {
    const Item* item;
    KbVec3f low, high;
    std::array<float, 3> color;
};

/// The cubes that a walk from an item meets, in order.
std::vector<Seen> seenFrom(const Item* root);

/// A new node with its values, by its kind.
std::unique_ptr<Item> makeItem(Kind kind);

/// Gives a value to a field of the model and to all that take theirs from it.
void spread(std::vector<std::unique_ptr<Item>>& all, Value* value);

} // namespace SceneModel
