#include <arborium/base/KsLimits.h>

KsLimits& KsLimits::current()
{
    static KsLimits s_limits;
    return s_limits;
}
