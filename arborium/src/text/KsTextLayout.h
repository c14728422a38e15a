#pragma once

#include <arborium/base/KbString.h>
#include <arborium/render/KsMesh.h>

#include <cstdint>
#include <vector>

/// Extents of a font, for size 1.
struct KsTextMetrics {
    float ascent;     ///< Above the base line.
    float descent;    ///< Below it, as a positive number.
    float lineHeight; ///< From one base line to the next.
};

/// One line of text to be drawn, its left end and base line at `x`, `y`.
struct KsTextLine {
    KbString text;
    float x = 0;
    float y = 0;
};

/// The layout of single lines of text, for fonts of size 1. Widths are advance widths: blanks at the
/// ends count, overhanging ink does not. A font that is not installed is replaced by a similar one,
/// and so is each character that a font lacks. A tab is as wide as eight blanks; other control
/// characters have no width and no ink. Of a line only as much is shown as `KsLimits::captionChars`
/// allows.
///
/// Without a QGuiApplication there are no fonts: then the widths are estimates, nothing is drawn, and
/// a message says so once.
class KsTextLayout {
public:
    static KsTextMetrics getMetrics(const KbString& fontName);
    static float getWidth(const KbString& fontName, const KbString& line);
    /// The width of the first i characters of the line for each i from 0 to its length. In time
    /// proportional to the length.
    static std::vector<float> getPrefixWidths(const KbString& fontName, const KbString& line);

    /// Characters that were laid out so far.
    static std::int64_t getNumLaidOut();

    enum Part { Front = 1, Sides = 2, Back = 4 };
    /// The lines as one mesh: fronts at z 0, backs at z -1. Texts of nothing but fronts have no
    /// normals: each would be (0, 0, 1). Null if there is nothing to draw.
    static KsMeshPtr makeMesh(const KbString& fontName, const std::vector<KsTextLine>& lines,
                              int parts);
};
