#pragma once

#include <arborium/base/KbVec.h>
#include <arborium/fields/KsSField.h>
#include <formweave/KsFormweaveApi.h>

#include <array>
#include <cstdint>

/// What a file or the application asked for in the six size fields of an element, told from what a
/// layout wrote into them.
class FORMWEAVE_API KsAskedSizes {
public:
    /// `width`, `height`, `minWidth`, `minHeight`, `maxWidth`, `maxHeight`.
    using Fields = std::array<KsSFInt32*, 6>;

    /// `openLimit`: the value of the maxima of which nobody asked anything.
    explicit KsAskedSizes(std::int32_t openLimit = 0) : m_openLimit(openLimit) {}

    /// Takes over what the fields ask for. The first call counts: a layout writes behind it.
    void record(const Fields& fields);
    /// The application wrote into some of the fields `first` to `last`.
    void update(const Fields& fields, int first, int last);
    /// Gives the fields of a copy what was asked for; nobody is told. Nothing before `record`.
    void restore(const Fields& fields) const;

    /// For its life the fields hold what goes to a file: what was asked for. Those of an element in
    /// a window stay, since its sizes are the user's. Nobody is told.
    class FORMWEAVE_API Written {
    public:
        Written(const KsAskedSizes& asked, const Fields& fields, bool isInWindow);
        ~Written();
        Written(const Written&) = delete;
        Written& operator=(const Written&) = delete;

    private:
        Fields m_fields;
        std::array<std::int32_t, 6> m_values;
        std::array<bool, 6> m_isDefault;
    };

    /// Writes six sizes into the fields one after the other. By value: those who listen change what
    /// an element remembers.
    static void assign(const Fields& fields, KbVec2i32 size, KbVec2i32 min, KbVec2i32 max);

private:
    std::int32_t unasked(int index) const { return index < 4 ? 0 : m_openLimit; }

    std::int32_t m_openLimit;
    bool m_isRecorded = false;
    std::array<bool, 6> m_isAsked{};
    std::array<std::int32_t, 6> m_values{};
};
