#pragma once

// What elements with sizes and layouts share.

#include <arborium/base/KbVec.h>
#include <arborium/fields/KsSField.h>
#include <formweave/KsElementSensor.h>

#include <cstdint>
#include <functional>

class KsFormweave;
class QBoxLayout;
class QSize;
class QWidget;

/// Where in a Qt layout an element takes its place.
struct KsRoomForLayout {
    QBoxLayout* layout = nullptr;
    int index = -1;
};

/// The layout of `container` for its child `element`; that of `widget` if there is no container.
KsRoomForLayout ksFindLayout(KsFormweave* container, KsFormweave* element, QWidget* widget);

/// What of a size Qt can paint: a window is one image, and painting fails beyond 2 GB of it.
QSize ksPaintableSize(const KbVec2i32& size);

/// Layouts that stand in each other while a window is built. Showing a window costs Qt time in the
/// square of their depth. A scene has no limit of its own.
class KsLayoutDepth {
public:
    /// `added`: by the container that is being built; 0 in a scene.
    explicit KsLayoutDepth(int added) : m_added(added) { s_depth += added; }
    ~KsLayoutDepth() { s_depth -= m_added; }
    KsLayoutDepth(const KsLayoutDepth&) = delete;
    KsLayoutDepth& operator=(const KsLayoutDepth&) = delete;
    /// Posts a message in the name of `operation` if so.
    bool isTooDeep(const char* operation) const;

private:
    inline static int s_depth = 0;
    const int m_added;
};

/// Limits of a widget; a maximum of 0 or less is none.
void ksLimitWidget(QWidget* widget, const KbVec2i32& min, const KbVec2i32& max);

/// A `KsFormweave::LabelAlignment` as a `Qt::Alignment`.
int ksQtAlignment(int labelAlignment);

/// Writes a field with its sensor detached.
template <class Field, class Value>
void ksWriteSilently(KsElementSensor& sensor, Field& field, const Value& value)
{
    KsSensorSilencer silencer(sensor.get());
    field.setValue(value);
}

inline void ksMarkDefault(KsField& field, bool isDefault)
{
    if (isDefault) field.setDefault(true);
}

/// A size or position that came from a file or a program, brought into the range that layouts bear.
int ksBounded(std::int64_t value);

/// Gives the three default sizes of an element.
using KsSizeDefaults = std::function<void(KbVec2i32&, KbVec2i32&, KbVec2i32&)>;

/// Replaces what is 0 by the default. The defaults are not asked for if nothing is 0.
void ksFillSizes(KbVec2i32& size, KbVec2i32& min, KbVec2i32& max, const KsSizeDefaults& defaults);

/// Two passes over the children of a container align what stands in its rows: the label column
/// (`ksAlignLabels`) and the control column (`ksAlignControls`). With `shared` all get the width of
/// the widest; otherwise each keeps its own. Elements that are no components do not take part.
class KsElementList;
void ksAlignLabels(const KsElementList& children, bool shared, bool hiddenHaveHeight = true);
void ksAlignControls(const KsElementList& children, bool shared);
