#include <arborium/nodes/KsChangeStamp.h>

void KsChangeStamp::renew()
{
    static std::uint64_t last = 0;
    m_value = ++last;
}
