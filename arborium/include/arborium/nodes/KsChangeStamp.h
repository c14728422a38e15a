#pragma once

#include <arborium/base/KsApi.h>

#include <cstdint>

/// A number that no other stamp of the process ever had: what is kept under the stamp of a node is
/// good as long as the node still has it. 0 is nobody's.
class ARBORIUM_API KsChangeStamp {
public:
    /// A number of its own from the start.
    KsChangeStamp() { renew(); }
    KsChangeStamp(const KsChangeStamp&) = delete;
    KsChangeStamp& operator=(const KsChangeStamp&) = delete;
    /// Another number from now on.
    void renew();
    /// Never 0.
    std::uint64_t get() const { return m_value; }

private:
    std::uint64_t m_value;
};
