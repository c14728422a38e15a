// A scene that can be read is written to a text that, read and written again, stays as it is; the
// binary form holds the same scene.

#include "scene_fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    SceneFuzz::start();
    const SceneFuzz::LeakCheck leaks;
    const KsRef<KsSeparator> root = SceneFuzz::read(data, size);
    if (!root) return 0;
    const std::string text = SceneFuzz::write(root, false);
    const KsRef<KsSeparator> again = SceneFuzz::read(text.data(), text.size());
    if (!again) SceneFuzz::fail("what was written cannot be read", text);
    const std::string second = SceneFuzz::write(again, false);
    if (second != text) SceneFuzz::fail("writing it again changes it", text, second);

    const std::string binary = SceneFuzz::write(again, true);
    const KsRef<KsSeparator> third = SceneFuzz::read(binary.data(), binary.size());
    if (!third) SceneFuzz::fail("the binary form cannot be read", text);
    const std::string last = SceneFuzz::write(third, false);
    if (last != text) SceneFuzz::fail("the binary form holds another scene", text, last);
    return 0;
}
