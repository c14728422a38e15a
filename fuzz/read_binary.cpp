// Any bytes behind the first line of a binary scene, of either version.

#include "scene_fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    SceneFuzz::start();
    const SceneFuzz::LeakCheck leaks;
    if (size == 0) return 0;
    std::string text = data[0] & 1 ? "#Arborium V1.0 binary\n" : "#Arborium V2.1 binary\n";
    text.append(reinterpret_cast<const char*>(data + 1), size - 1);
    const KsRef<KsSeparator> root = SceneFuzz::read(text.data(), text.size());
    if (!root) return 0;
    // What could be read is written in the newer form, and that changes no more.
    const std::string once = SceneFuzz::write(root, true);
    const KsRef<KsSeparator> again = SceneFuzz::read(once.data(), once.size());
    if (!again) SceneFuzz::fail("what was written cannot be read");
    if (SceneFuzz::write(again, true) != once) SceneFuzz::fail("writing it again changes it");
    return 0;
}
