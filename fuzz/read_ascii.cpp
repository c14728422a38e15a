// Any bytes as an ASCII scene: read or refused with a message, nothing left behind.

#include "scene_fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    SceneFuzz::start();
    const SceneFuzz::LeakCheck leaks;
    SceneFuzz::read(data, size);
    return 0;
}
