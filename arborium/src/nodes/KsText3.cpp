#include <arborium/nodes/KsText3.h>

#include "text/KsTextLayout.h"

#include <arborium/actions/KsGetBoundingBoxAction.h>
#include <arborium/actions/KsRayPickAction.h>
#include <arborium/actions/KsState.h>
#include <arborium/base/KsLimits.h>

#include <algorithm>
#include <cmath>
#include <unordered_map>

KS_NODE_SOURCE(KsText3, KsShape)

struct KsText3::Measured {
    KbString fontName;
    KsTextMetrics metrics;
    float step;                  // from one base line to the next
    std::vector<KbString> lines; // as they were measured; of a single line nothing is kept
    std::vector<float> widths;
    float widest = 0;
    KsMeshPtr mesh; // of the lines from `meshFirst` up to `meshEnd`
    std::size_t meshFirst = 0, meshEnd = 0;
    bool hasMesh = false;
    bool isStale = false;
};

namespace {
/// What the size of a font counts as: a positive number.
float usableSize(float size)
{
    if (!std::isfinite(size)) return KsFontState().size;
    return std::min(std::fabs(size), static_cast<float>(KsLimits::current().maxSize));
}

float startOf(float width, int justification)
{
    switch (justification) {
    case KsText3::RIGHT: return -width;
    case KsText3::CENTER: return -width / 2;
    default: return 0;
    }
}

/// The meshes of short texts, as long as somebody has them: captions repeat.
KsMeshPtr sharedMesh(const KbString& fontName, const std::vector<KsTextLine>& lines, int parts)
{
    constexpr std::size_t longText = 256;
    std::u16string key = fontName.toUtf16();
    key += u'\0';
    key += static_cast<char16_t>(parts);
    const auto addFloat = [&key](float value) {
        const auto* bytes = reinterpret_cast<const unsigned char*>(&value);
        for (std::size_t i = 0; i + 1 < sizeof value; i += 2)
            key += static_cast<char16_t>(bytes[i] | (bytes[i + 1] << 8));
    };
    for (const KsTextLine& line : lines) {
        if (key.size() + static_cast<std::size_t>(line.text.getLength()) > longText)
            return KsTextLayout::makeMesh(fontName, lines, parts);
        addFloat(line.x);
        addFloat(line.y);
        key += static_cast<char16_t>(line.text.getLength());
        key += line.text.toUtf16();
    }
    static auto& meshes = *new std::unordered_map<std::u16string, std::weak_ptr<const KsMesh>>;
    static std::size_t many = 256;
    if (meshes.size() >= many) {
        for (auto it = meshes.begin(); it != meshes.end();)
            it = it->second.expired() ? meshes.erase(it) : std::next(it);
        many = std::max<std::size_t>(256, 2 * meshes.size());
    }
    std::weak_ptr<const KsMesh>& known = meshes[key];
    KsMeshPtr mesh = known.lock();
    if (!mesh) known = mesh = KsTextLayout::makeMesh(fontName, lines, parts);
    return mesh;
}
} // namespace

KsText3::KsText3()
{
    KsInstanceBuilder build(classRecord, this);
    build.enums("Justification", {{"LEFT", LEFT}, {"RIGHT", RIGHT}, {"CENTER", CENTER}});
    build.enums("Part", {{"FRONT", FRONT}, {"SIDES", SIDES}, {"BACK", BACK}, {"ALL", ALL}});
    build.field("string", string, KbString());
    build.field("spacing", spacing, 1.0f);
    build.enumField("justification", justification, "Justification", LEFT);
    build.enumField("parts", parts, "Part", FRONT);
}

KsText3::~KsText3() = default;

KsText3::Extents KsText3::getExtents(const KsFontState& font)
{
    const KsTextMetrics metrics = KsTextLayout::getMetrics(font.name);
    const float size = usableSize(font.size);
    return {metrics.ascent * size, metrics.descent * size, metrics.lineHeight * size};
}

float KsText3::getLineWidth(const KbString& line, const KsFontState& font)
{
    return KsTextLayout::getWidth(font.name, line) * usableSize(font.size);
}

std::vector<float> KsText3::getPrefixWidths(const KbString& line, const KsFontState& font)
{
    std::vector<float> widths = KsTextLayout::getPrefixWidths(font.name, line);
    const float size = usableSize(font.size);
    for (float& width : widths) width *= size;
    return widths;
}

std::int64_t KsText3::getNumLaidOut() { return KsTextLayout::getNumLaidOut(); }

const KsText3::Measured& KsText3::measure(const KbString& fontName)
{
    const bool sameFont = m_measured && m_measured->fontName == fontName;
    if (sameFont && !m_measured->isStale) return *m_measured;
    auto measured = std::make_unique<Measured>();
    measured->fontName = fontName;
    measured->metrics = KsTextLayout::getMetrics(fontName);
    const float factor = std::isfinite(spacing.getValue()) ? spacing.getValue() : 1;
    const auto largest = static_cast<float>(KsLimits::current().maxSize);
    measured->step = std::min(std::max(factor, -largest), largest) * measured->metrics.lineHeight;
    // A text that is typed in changes in one line: the others are not laid out again.
    std::vector<KbString> formerLines;
    std::vector<float> formerWidths;
    if (sameFont) {
        formerLines.swap(m_measured->lines);
        formerWidths.swap(m_measured->widths);
    }
    const std::vector<KbString>& lines = string.values();
    measured->widths.reserve(lines.size());
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const bool same = i < formerLines.size() && formerLines[i] == lines[i];
        measured->widths.push_back(same ? formerWidths[i]
                                        : KsTextLayout::getWidth(fontName, lines[i]));
        measured->widest = std::max(measured->widest, measured->widths.back());
        if (lines.size() < 2) continue;
        if (same)
            measured->lines.push_back(std::move(formerLines[i]));
        else
            measured->lines.push_back(lines[i]);
    }
    if (measured->widths.empty()) measured->widths.push_back(0);
    m_measured = std::move(measured);
    return *m_measured;
}

KbBox3f KsText3::lineBox(const Measured& measured, std::size_t line, float size) const
{
    const float width = measured.widths[line];
    const float x = startOf(width, justification.getValue());
    const float y = -measured.step * static_cast<float>(line);
    return KbBox3f(x * size, (y - measured.metrics.descent) * size, 0, (x + width) * size,
                   (y + measured.metrics.ascent) * size, 0);
}

KbBox3f KsText3::getLineBox(int line, const KsState* state)
{
    const KsFontState& font = state->font.get();
    const Measured& measured = measure(font.name);
    if (line < 0 || static_cast<std::size_t>(line) >= measured.widths.size()) return KbBox3f();
    return lineBox(measured, static_cast<std::size_t>(line), usableSize(font.size));
}

KbBox3f KsText3::getBox(const KsState* state)
{
    const KsFontState& font = state->font.get();
    const Measured& measured = measure(font.name);
    const float size = usableSize(font.size);
    // The first and the last line are the outermost ones in height, any line in width.
    KbBox3f box = lineBox(measured, 0, size);
    box.extendBy(lineBox(measured, measured.widths.size() - 1, size));
    const float x = startOf(measured.widest, justification.getValue());
    box.extendBy(KbVec3f(x * size, box.getMin()[1], 0));
    box.extendBy(KbVec3f((x + measured.widest) * size, box.getMax()[1], 0));
    if (parts.getValue() & (SIDES | BACK)) {
        const KbVec3f& low = box.getMin();
        box.extendBy(KbVec3f(low[0], low[1], -1));
    }
    return box;
}

std::pair<std::size_t, std::size_t> KsText3::findSeenLines(const Measured& measured,
                                                           const KsState* state) const
{
    const std::size_t count = measured.widths.size();
    const std::vector<KbPlane>& planes = state->clipPlanes.get();
    constexpr std::size_t few = 64; // are drawn as a whole
    if (count <= few || planes.empty() || parts.getValue() != FRONT) return {0, count};
    std::size_t first = 0, end = count;
    const KbMatrix& matrix = state->modelMatrix.get();
    const float size = usableSize(state->font.get().size);
    const float left = startOf(measured.widest, justification.getValue()) * size;
    const float right = left + measured.widest * size;
    for (const KbPlane& plane : planes) {
        // The distance from the plane is linear in the text's x and y.
        const auto distance = [&](float x, float y) {
            KbVec3f point;
            matrix.multVecMatrix(KbVec3f(x, y, 0), point);
            return plane.getDistance(point);
        };
        const float origin = distance(0, 0);
        const float perY = distance(0, 1) - origin;
        const float most = std::max(distance(left, 0), distance(right, 0));
        const auto isSeen = [&](std::size_t line) {
            const KbBox3f box = lineBox(measured, line, size);
            return !(most + std::max(perY * box.getMin()[1], perY * box.getMax()[1]) < 0);
        };
        while (first < end && !isSeen(first)) ++first;
        while (end > first && !isSeen(end - 1)) --end;
    }
    return {first, end};
}

KsShape::Form KsText3::getForm(const KsState* state)
{
    const KsFontState& font = state->font.get();
    measure(font.name);
    Measured& measured = *m_measured;
    auto [first, end] = findSeenLines(measured, state);
    const bool isThere = measured.hasMesh && first >= measured.meshFirst && end <= measured.meshEnd;
    if (!isThere && (first < end || !measured.hasMesh)) {
        measured.hasMesh = true;
        measured.mesh.reset();
        // As much again on either side, so that a text that is scrolled is not made at each step.
        const std::size_t more = end - first;
        measured.meshFirst = first - std::min(first, more);
        measured.meshEnd = std::min(end + more, measured.widths.size());
        std::vector<KsTextLine> lines;
        for (std::size_t i = measured.meshFirst; i < measured.meshEnd; ++i) {
            if (measured.widths[i] > 0)
                lines.push_back({string[static_cast<int>(i)],
                                 startOf(measured.widths[i], justification.getValue()),
                                 -measured.step * static_cast<float>(i)});
        }
        if (!lines.empty()) measured.mesh = sharedMesh(font.name, lines, parts.getValue());
    }
    const float size = usableSize(font.size);
    return {measured.mesh, KbVec3f(size, size, 1)};
}

void KsText3::markChanged()
{
    if (m_measured) {
        m_measured->isStale = true;
        m_measured->hasMesh = false;
        m_measured->mesh.reset();
    }
    KsShape::markChanged();
}

void KsText3::reportUse(KsGetBoundingBoxAction* action)
{
    action->usesStateOf(action->getState()->font.setAt());
}

void KsText3::pickShape(KsRayPickAction* action)
{
    const KsFontState& font = action->getState()->font.get();
    const Measured& measured = measure(font.name);
    const float size = usableSize(font.size);
    // A text with depth is hit in the bodies of its lines, a flat one in its plane: seen from the
    // side it has no area.
    const bool hasDepth = parts.getValue() & (SIDES | BACK);
    const KbLine line = action->getObjectLine();
    const float down = line.getDirection()[2];
    if (!hasDepth && down == 0) return;
    const KbVec3f point = line.getPosition() - line.getDirection() * (line.getPosition()[2] / down);
    for (std::size_t i = 0; i < measured.widths.size(); ++i) {
        if (!(measured.widths[i] > 0)) continue;
        KbBox3f box = lineBox(measured, i, size);
        if (hasDepth) {
            box.extendBy(box.getMin() - KbVec3f(0, 0, 1));
            if (action->addBoxIntersection(box) && !action->isPickAll()) return;
        } else if (point[0] >= box.getMin()[0] && point[0] <= box.getMax()[0] &&
                   point[1] >= box.getMin()[1] && point[1] <= box.getMax()[1]) {
            action->addIntersection(KbVec3f(point[0], point[1], 0), KbVec3f(0, 0, 1));
            return;
        }
    }
}
