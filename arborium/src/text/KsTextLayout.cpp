#include "text/KsTextLayout.h"

#include "render/KsTessellator.h"

#include <arborium/base/KsDebugError.h>
#include <arborium/base/KsLimits.h>

#include <QFontMetricsF>
#include <QGlyphRun>
#include <QGuiApplication>
#include <QPainterPath>
#include <QRawFont>
#include <QTextLayout>

#include <algorithm>
#include <cmath>
#include <unordered_map>

namespace {
// Everything is laid out at this many pixels and scaled: fine enough for Qt's 1/64 pixel, and the
// longest line that may be shown still fits its coordinates.
constexpr int s_designPixels = 256;
constexpr double s_toUnits = 1.0 / s_designPixels;
// How far a flattened curve may stray, in design pixels: a fifth of a pixel for letters 200 pixels
// high.
constexpr double s_flatness = 0.25;
constexpr int s_blanksPerTab = 8;

struct FontRecord {
    QFont font;
    KsTextMetrics metrics;
};

/// The outline of one glyph, in design pixels, y upward, from its own origin.
struct Glyph {
    std::vector<KbVec2f> points;
    std::vector<std::uint32_t> triangles;
    std::vector<std::vector<KbVec2f>> contours; // only kept once sides were asked for
};

struct GlyphKey {
    std::size_t font; // in Cache::rawFonts
    quint32 index;
    bool operator==(const GlyphKey& other) const
    {
        return font == other.font && index == other.index;
    }
};
struct GlyphHash {
    std::size_t operator()(const GlyphKey& key) const
    {
        return std::hash<std::uint64_t>()((static_cast<std::uint64_t>(key.font) << 32) | key.index);
    }
};

/// What is kept of fonts.
struct Cache {
    std::unordered_map<KbString, FontRecord> fonts;
    std::vector<QRawFont> rawFonts;
    std::unordered_map<GlyphKey, Glyph, GlyphHash> glyphs;
    std::size_t numPoints = 0;

    void clearGlyphs()
    {
        glyphs.clear();
        rawFonts.clear();
        numPoints = 0;
    }
};

bool s_applicationIsKnown = false;
std::int64_t s_numLaidOut = 0;

/// One for each application object that there was: its fonts can neither be used nor released once
/// it is gone.
std::vector<Cache*>& caches()
{
    static auto& all = *new std::vector<Cache*>;
    return all;
}
Cache& cache() { return *caches().back(); }

/// FALSE, with a message the first time, where there can be no fonts.
bool haveFonts()
{
    if (qobject_cast<QGuiApplication*>(QCoreApplication::instance())) {
        if (!s_applicationIsKnown) {
            s_applicationIsKnown = true;
            caches().push_back(new Cache);
            qAddPostRoutine([] { s_applicationIsKnown = false; });
        }
        return true;
    }
    static bool told = false;
    if (!told) {
        told = true;
        KsDebugError::post("KsText3", "There is no QGuiApplication, and so there are no fonts: "
                                      "texts are not drawn, and their sizes are estimates.");
    }
    return false;
}

const FontRecord& fontOf(const KbString& name)
{
    auto& fonts = cache().fonts;
    const auto found = fonts.find(name);
    if (found != fonts.end()) return found->second;
    constexpr std::size_t manyFonts = 64;
    if (fonts.size() >= manyFonts) fonts.clear();

    const bool isDefault = name.isEmpty() || name == "defaultFont";
    QFont font(isDefault ? QStringLiteral("Sans") : QString::fromStdU16String(name.toUtf16()));
    font.setHintingPreference(QFont::PreferNoHinting);
    font.setStyleHint(QFont::SansSerif, static_cast<QFont::StyleStrategy>(QFont::PreferOutline |
                                                                          QFont::ForceOutline));
    // Metrics are rounded to pixels; this many make that harmless.
    constexpr int metricPixels = 2048;
    font.setPixelSize(metricPixels);
    const QFontMetricsF metrics(font);
    FontRecord record;
    record.metrics.ascent = static_cast<float>(metrics.ascent() / metricPixels);
    record.metrics.descent = static_cast<float>(metrics.descent() / metricPixels);
    record.metrics.lineHeight = static_cast<float>(
        (metrics.ascent() + metrics.descent() + std::max(metrics.leading(), 0.0)) / metricPixels);
    font.setPixelSize(s_designPixels);
    record.font = font;
    return fonts.emplace(name, record).first->second;
}

/// A line as it is shown, and where each of its characters went.
struct Shown {
    QString text;
    std::vector<int> places; // of characters and the end; empty if each is where it was
};

Shown prepare(const KbString& line)
{
    const std::u16string source = line.toUtf16();
    const std::size_t length = std::min(
        source.size(), static_cast<std::size_t>(std::max(KsLimits::current().captionChars, 0)));
    // Soft hyphens are left to Qt; what controls the direction of text must stay.
    const auto isControl = [](char16_t c) {
        return c < 0x20 || (c >= 0x7f && c < 0xa0) || c == 0x2028 || c == 0x2029;
    };
    Shown shown;
    if (length == source.size() && std::none_of(source.begin(), source.end(), isControl)) {
        shown.text = QString::fromStdU16String(source);
        return shown;
    }
    shown.places.reserve(source.size() + 1);
    for (std::size_t i = 0; i < source.size(); ++i) {
        shown.places.push_back(shown.text.size());
        if (i >= length) continue;
        if (source[i] == u'\t')
            shown.text += QString(s_blanksPerTab, QLatin1Char(' '));
        else if (!isControl(source[i]))
            shown.text += QChar(source[i]);
    }
    shown.places.push_back(shown.text.size());
    return shown;
}

/// Lays a piece of text out as one line; nothing but a base line for the empty text.
class Line {
public:
    Line(const QString& text, const QFont& font) : m_layout(text, font)
    {
        QTextOption option(Qt::AlignLeft | Qt::AlignAbsolute);
        option.setTextDirection(Qt::LayoutDirectionAuto);
        option.setWrapMode(QTextOption::NoWrap);
        option.setFlags(QTextOption::IncludeTrailingSpaces);
        m_layout.setTextOption(option);
        s_numLaidOut += text.size();
        m_layout.beginLayout();
        m_line = m_layout.createLine();
        // Wider than any line; what is not wrapped need not be.
        if (m_line.isValid()) m_line.setLineWidth(1e6);
        m_layout.endLayout();
    }
    double width() const
    {
        return m_line.isValid() ? std::max(m_line.horizontalAdvance(), 0.0) : 0;
    }
    double ascent() const { return m_line.ascent(); }
    QList<QGlyphRun> glyphRuns() const { return m_layout.glyphRuns(); }

    /// The width of each part that a caret may not enter, added to all of its characters' ends.
    void addWidths(std::vector<double>& prefixes) const
    {
        const int length = m_layout.text().size();
        const bool leftToRight = isLeftToRight(m_layout.text());
        double before = 0;
        for (int i = 0; i < length;) {
            int next = i + 1;
            while (next < length && !m_layout.isValidCursorPosition(next)) ++next;
            double after;
            if (leftToRight) {
                int position = next;
                after = next == length ? width() : m_line.cursorToX(&position);
            } else {
                int position = i;
                const double leading = m_line.cursorToX(&position, QTextLine::Leading);
                position = i;
                after =
                    before + std::fabs(m_line.cursorToX(&position, QTextLine::Trailing) - leading);
            }
            after = std::max(after, before);
            for (int k = i + 1; k <= next; ++k) prefixes.push_back(k == next ? after : before);
            before = after;
            i = next;
        }
    }

    static bool isLeftToRight(const QString& text)
    {
        for (int i = 0; i < text.size(); ++i) {
            uint code = text.at(i).unicode();
            if (code < 0x300) continue;
            if (QChar::isHighSurrogate(code) && i + 1 < text.size() &&
                QChar::isLowSurrogate(text.at(i + 1).unicode())) {
                code = QChar::surrogateToUcs4(text.at(i), text.at(i + 1));
                ++i;
            }
            switch (QChar::direction(code)) {
            case QChar::DirR:
            case QChar::DirAL:
            case QChar::DirAN:
            case QChar::DirRLE:
            case QChar::DirRLO:
            case QChar::DirRLI:
            case QChar::DirFSI: return false;
            default: break;
            }
        }
        return true;
    }

private:
    QTextLayout m_layout;
    QTextLine m_line;
};

/// Widths, in design pixels, of all prefixes of a text. The position of a caret costs time in
/// proportion to the length of what was laid out: long texts are measured in pieces that overlap,
/// so that the distance of letters across a cut is right.
std::vector<double> measurePrefixes(const QString& text, const QFont& font)
{
    constexpr int piece = 192, overlap = 32;
    std::vector<double> widths{0};
    widths.reserve(static_cast<std::size_t>(text.size()) + 1);
    if (text.size() <= piece + overlap) {
        Line(text, font).addWidths(widths);
        return widths;
    }
    std::vector<double> local;
    for (int done = 0; done < text.size();) {
        const int first = std::max(done - overlap, 0);
        int last = std::min(done + piece, text.size());
        // Letters behind the cut are laid out as well, for what they do to those before it.
        const int end = std::min(last + overlap, text.size());
        const Line line(text.mid(first, end - first), font);
        local.assign(1, 0);
        line.addWidths(local);
        const double shift = widths.back() - local[static_cast<std::size_t>(done - first)];
        for (int i = done + 1; i <= last; ++i)
            widths.push_back(
                std::max(widths.back(), local[static_cast<std::size_t>(i - first)] + shift));
        done = last;
    }
    // What is drawn decides.
    const double total = Line(text, font).width();
    for (double& width : widths) width = std::min(width, total);
    widths.back() = total;
    return widths;
}

std::size_t numberOf(const QRawFont& font)
{
    auto& fonts = cache().rawFonts;
    for (std::size_t i = 0; i < fonts.size(); ++i)
        if (fonts[i] == font) return i;
    fonts.push_back(font);
    return fonts.size() - 1;
}

/// The outline's contours as polygons, without the closing point, y upward.
std::vector<std::vector<KbVec3f>> flatten(const QPainterPath& path)
{
    std::vector<std::vector<KbVec3f>> contours;
    const auto add = [&](double x, double y) {
        const KbVec3f point(static_cast<float>(x), static_cast<float>(-y), 0);
        if (point.isFinite() && (contours.back().empty() || contours.back().back() != point))
            contours.back().push_back(point);
    };
    QPointF from;
    for (int i = 0; i < path.elementCount(); ++i) {
        const QPainterPath::Element& e = path.elementAt(i);
        if (e.type == QPainterPath::MoveToElement || contours.empty()) contours.emplace_back();
        if (e.type == QPainterPath::CurveToElement && i + 2 < path.elementCount()) {
            const QPointF c1 = e, c2 = path.elementAt(i + 1), to = path.elementAt(i + 2);
            // The second differences of the control points bound the distance from the chords.
            const QPointF d1 = from - 2 * c1 + c2, d2 = c1 - 2 * c2 + to;
            const double bend = std::max(std::hypot(d1.x(), d1.y()), std::hypot(d2.x(), d2.y()));
            const double steps = std::ceil(std::sqrt(0.75 * bend / s_flatness));
            const int count = static_cast<int>(std::min(std::max(steps, 1.0), 32.0));
            for (int k = 1; k <= count; ++k) {
                const double t = static_cast<double>(k) / count, s = 1 - t;
                const QPointF p =
                    s * s * s * from + 3 * s * s * t * c1 + 3 * s * t * t * c2 + t * t * t * to;
                add(p.x(), p.y());
            }
            from = to;
            i += 2;
        } else {
            add(e.x, e.y);
            from = e;
        }
    }
    for (auto& contour : contours)
        while (contour.size() > 1 && contour.front() == contour.back()) contour.pop_back();
    contours.erase(std::remove_if(contours.begin(), contours.end(),
                                  [](const auto& contour) { return contour.size() < 3; }),
                   contours.end());
    return contours;
}

const Glyph& glyphOf(std::size_t font, quint32 index, bool withContours)
{
    Cache& kept = cache();
    const auto found = kept.glyphs.find({font, index});
    if (found != kept.glyphs.end() &&
        (!withContours || !found->second.contours.empty() || found->second.points.empty()))
        return found->second;

    Glyph& glyph = kept.glyphs[{font, index}];
    const auto contours = flatten(kept.rawFonts[font].pathForGlyph(index));
    if (withContours) {
        for (const auto& contour : contours) {
            glyph.contours.emplace_back();
            for (const KbVec3f& p : contour) glyph.contours.back().emplace_back(p[0], p[1]);
        }
    }
    if (!glyph.points.empty() || contours.empty()) return glyph;

    KsTessellation cut;
    // A glyph that cannot be cut stays blank.
    if (!ksTessellate(contours, KbVec3f(0, 0, 1), KsWinding::NonZero, cut)) return glyph;
    for (const auto& contour : contours)
        for (const KbVec3f& p : contour) glyph.points.emplace_back(p[0], p[1]);
    for (const auto& added : cut.added)
        glyph.points.emplace_back(added.position[0], added.position[1]);
    glyph.triangles = std::move(cut.triangles);
    kept.numPoints += glyph.points.size();
    return glyph;
}

/// Copies the outlines of glyphs into a mesh.
class Painter {
public:
    explicit Painter(int parts) : m_parts(parts), m_frontsOnly(parts == KsTextLayout::Front) {}

    void add(const Glyph& glyph, float x, float y)
    {
        if (m_parts & KsTextLayout::Front) addFace(glyph, x, y, 0, false);
        if (m_parts & KsTextLayout::Back) addFace(glyph, x, y, -1, true);
        if (m_parts & KsTextLayout::Sides)
            for (const auto& contour : glyph.contours) addSides(contour, x, y);
    }

    KsMeshPtr finish()
    {
        if (m_mesh->indices.empty()) return nullptr;
        m_mesh->positions.shrink_to_fit();
        m_mesh->normals.shrink_to_fit();
        m_mesh->indices.shrink_to_fit();
        m_mesh->computeBox();
        return std::move(m_mesh);
    }

private:
    static KbVec3f place(const KbVec2f& p, float x, float y, float z)
    {
        constexpr auto scale = static_cast<float>(s_toUnits);
        return KbVec3f(x + p[0] * scale, y + p[1] * scale, z);
    }

    void addFace(const Glyph& glyph, float x, float y, float z, bool back)
    {
        const auto first = static_cast<std::uint32_t>(m_mesh->positions.size());
        for (const KbVec2f& p : glyph.points) {
            m_mesh->positions.push_back(place(p, x, y, z));
            if (!m_frontsOnly) m_mesh->normals.emplace_back(0.0f, 0.0f, back ? -1.0f : 1.0f);
        }
        for (std::size_t i = 0; i + 2 < glyph.triangles.size(); i += 3) {
            const std::uint32_t a = first + glyph.triangles[i];
            const std::uint32_t b = first + glyph.triangles[i + (back ? 2 : 1)];
            const std::uint32_t c = first + glyph.triangles[i + (back ? 1 : 2)];
            m_mesh->indices.insert(m_mesh->indices.end(), {a, b, c});
        }
    }

    /// Outer contours run clockwise and holes the other way round (or both reversed, in another
    /// kind of font): the ink lies on one side of all of them, told by the area of the glyph.
    void addSides(const std::vector<KbVec2f>& contour, float x, float y)
    {
        for (std::size_t i = 0; i < contour.size(); ++i) {
            const KbVec2f& p = contour[i];
            const KbVec2f& q = contour[(i + 1) % contour.size()];
            KbVec3f normal(p[1] - q[1], q[0] - p[0], 0);
            if (!m_inkOnRight) normal *= -1;
            if (!(normal.normalize() > 0)) continue;
            const auto first = static_cast<std::uint32_t>(m_mesh->positions.size());
            const bool turned = m_inkOnRight;
            const KbVec2f& left = turned ? q : p;
            const KbVec2f& right = turned ? p : q;
            m_mesh->positions.push_back(place(left, x, y, -1));
            m_mesh->positions.push_back(place(right, x, y, -1));
            m_mesh->positions.push_back(place(right, x, y, 0));
            m_mesh->positions.push_back(place(left, x, y, 0));
            m_mesh->normals.insert(m_mesh->normals.end(), 4, normal);
            m_mesh->indices.insert(m_mesh->indices.end(),
                                   {first, first + 1, first + 2, first, first + 2, first + 3});
        }
    }

public:
    void setOrientation(const Glyph& glyph)
    {
        double area = 0;
        for (const auto& contour : glyph.contours)
            for (std::size_t i = 0; i < contour.size(); ++i) {
                const KbVec2f& p = contour[i];
                const KbVec2f& q = contour[(i + 1) % contour.size()];
                area += static_cast<double>(p[0]) * static_cast<double>(q[1]) -
                        static_cast<double>(q[0]) * static_cast<double>(p[1]);
            }
        m_inkOnRight = area < 0;
    }

private:
    int m_parts;
    bool m_frontsOnly;
    bool m_inkOnRight = true;
    std::shared_ptr<KsMesh> m_mesh = std::make_shared<KsMesh>();
};
} // namespace

KsTextMetrics KsTextLayout::getMetrics(const KbString& fontName)
{
    if (!haveFonts()) return {0.93f, 0.24f, 1.17f};
    return fontOf(fontName).metrics;
}

float KsTextLayout::getWidth(const KbString& fontName, const KbString& line)
{
    if (line.isEmpty()) return 0;
    if (!haveFonts()) return getPrefixWidths(fontName, line).back();
    const Shown shown = prepare(line);
    return static_cast<float>(Line(shown.text, fontOf(fontName).font).width() * s_toUnits);
}

std::vector<float> KsTextLayout::getPrefixWidths(const KbString& fontName, const KbString& line)
{
    const auto length = static_cast<std::size_t>(line.getLength());
    std::vector<float> result(length + 1, 0.0f);
    if (!length) return result;
    const Shown shown = prepare(line);
    const auto placeOf = [&](std::size_t i) {
        return static_cast<std::size_t>(shown.places.empty() ? static_cast<int>(i)
                                                             : shown.places[i]);
    };
    if (!haveFonts()) {
        constexpr float estimate = 0.6f;
        for (std::size_t i = 0; i <= length; ++i)
            result[i] = estimate * static_cast<float>(placeOf(i));
        return result;
    }
    const std::vector<double> widths = measurePrefixes(shown.text, fontOf(fontName).font);
    for (std::size_t i = 0; i <= length; ++i)
        result[i] = static_cast<float>(widths[std::min(placeOf(i), widths.size() - 1)] * s_toUnits);
    return result;
}

std::int64_t KsTextLayout::getNumLaidOut() { return s_numLaidOut; }

KsMeshPtr KsTextLayout::makeMesh(const KbString& fontName, const std::vector<KsTextLine>& lines,
                                 int parts)
{
    parts &= Front | Sides | Back;
    if (!parts || !haveFonts()) return nullptr;
    // Meshes hold copies, so that the outlines may be dropped at any time but while one is made.
    constexpr std::size_t manyPoints = 2000000;
    if (cache().numPoints > manyPoints) cache().clearGlyphs();

    const QFont font = fontOf(fontName).font;
    const bool sides = parts & Sides;
    Painter painter(parts);
    for (const KsTextLine& line : lines) {
        const Shown shown = prepare(line.text);
        if (shown.text.isEmpty()) continue;
        const Line layout(shown.text, font);
        const double baseLine = layout.ascent();
        for (const QGlyphRun& run : layout.glyphRuns()) {
            const std::size_t number = numberOf(run.rawFont());
            const QVector<quint32> indices = run.glyphIndexes();
            const QVector<QPointF> positions = run.positions();
            const int count = std::min(indices.size(), positions.size());
            for (int i = 0; i < count; ++i) {
                const Glyph& glyph = glyphOf(number, indices[i], sides);
                if (glyph.points.empty()) continue;
                if (sides) painter.setOrientation(glyph);
                painter.add(glyph, line.x + static_cast<float>(positions[i].x() * s_toUnits),
                            line.y + static_cast<float>((baseLine - positions[i].y()) * s_toUnits));
            }
        }
    }
    return painter.finish();
}
