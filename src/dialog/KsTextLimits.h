#pragma once

#include <arborium/base/KbString.h>
#include <arborium/base/KsLimits.h>

#include <algorithm>

/// What is shown of a caption or label: longer ones are cut at the limit. The field keeps its text.
inline KbString ksShownText(const KbString& text)
{
    const int limit = static_cast<int>(KsLimits::current().captionChars);
    return static_cast<int>(text.getLength()) > limit ? text.getSubString(0, limit) : text;
}

/// How many of `count` items of a list are shown.
inline int ksShownItems(int count)
{
    return std::min(count, static_cast<int>(KsLimits::current().listItems));
}
