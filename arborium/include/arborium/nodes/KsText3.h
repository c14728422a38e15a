#pragma once

#include <arborium/fields/KsMField.h>
#include <arborium/nodes/KsShape.h>

#include <cstdint>
#include <utility>
#include <vector>

struct KsFontState;

/// Lines of text in the font in force. The base line of the first one runs through the origin, the
/// others follow below.
///
/// A line's box is as wide as the line advances, blanks at its ends included, and reaches from the
/// font's descent to its ascent, whatever letters it holds: an empty line has no width and the same
/// height. No value at all counts as one empty line. A ray hits the boxes of the lines, not the
/// letters. A tab is as wide as eight blanks, other control characters show nothing, and of a line
/// no more is shown than `KsLimits::captionChars`.
///
/// Without a QGuiApplication there are no fonts: then nothing is drawn and sizes are estimates.
class ARBORIUM_API KsText3 : public KsShape {
    KS_NODE_HEADER(KsText3);

public:
    /// Whether a line begins, ends or has its middle at x 0.
    enum Justification { LEFT = 1, RIGHT = 2, CENTER = 3 };
    /// The letters, the walls from their outlines backward, and the letters again behind.
    enum Part { FRONT = 1, SIDES = 2, BACK = 4, ALL = 7 };

    KsMFString string; ///< One value per line. Default: one empty line.
    /// Between base lines, 1 being the font's own distance. Below 0 the lines go upward, what is no
    /// number counts as 1. Default 1.
    KsSFFloat spacing;
    KsSFEnum justification; ///< What of each line stands at x 0. Default LEFT.
    KsSFBitMask parts;      ///< FRONT lies at z 0, BACK one unit behind. Default FRONT.

    KsText3();

    /// What a font gives to each line, in scene units.
    struct Extents {
        float ascent;     ///< Above the base line.
        float descent;    ///< Below it, as a positive number.
        float lineHeight; ///< From one base line to the next.
    };
    /// Of a font by its name and size, without a node.
    static Extents getExtents(const KsFontState& font);
    /// How far a line advances, blanks at its ends included.
    static float getLineWidth(const KbString& line, const KsFontState& font);
    /// The widths of the first i characters of a line, for i from 0 to its length: where a caret
    /// stands, and where to wrap. Never falling; in time proportional to the length.
    static std::vector<float> getPrefixWidths(const KbString& line, const KsFontState& font);

    /// How many characters were laid out since the program started, each time that they were: what
    /// measuring and drawing of texts costs.
    static std::int64_t getNumLaidOut();
    /// The box of line number `line` in the node's own space, under the font in force in the state;
    /// empty if there is no such line.
    KbBox3f getLineBox(int line, const KsState* state);

    Form getForm(const KsState* state) override;
    KbBox3f getBox(const KsState* state) override;
    void markChanged() override;

protected:
    ~KsText3() override;
    void reportUse(KsGetBoundingBoxAction* action) override;
    void pickShape(KsRayPickAction* action) override;

private:
    struct Measured;
    const Measured& measure(const KbString& fontName);
    KbBox3f lineBox(const Measured& measured, std::size_t line, float size) const;
    /// The lines that clip planes leave, as first and end: of a long text only these are made.
    std::pair<std::size_t, std::size_t> findSeenLines(const Measured& measured,
                                                      const KsState* state) const;

    // For size 1, so that texts of all sizes share what was made of them.
    std::unique_ptr<Measured> m_measured;
};
