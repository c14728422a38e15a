// Any text as the value of one field of each kind: refused and the old value kept, or taken, and
// then written to a text that gives the same value.

#include "scene_fuzz.h"

#include <arborium/fields/KsMField.h>

namespace {

template <class Field> void tryValue(const std::string& text)
{
    Field field;
    KsInput in;
    in.setBuffer(text.data(), text.size());
    if (!field.readValue(&in)) {
        if (!in.hasErrors()) SceneFuzz::fail("refused without an error", text);
        Field untouched;
        if (!field.isSame(untouched)) SceneFuzz::fail("refused, but the value changed", text);
        return;
    }
    KsOutput out;
    field.writeValue(&out);
    const std::string once = out.getBuffer();
    Field again;
    KsInput second;
    const std::string header = once.size() > 0 ? "#Arborium V2.1 ascii\n" + once : once;
    second.setBuffer(header.data(), header.size());
    if (!again.readValue(&second)) SceneFuzz::fail("what was written is refused", text, once);
    KsOutput outAgain;
    again.writeValue(&outAgain);
    if (outAgain.getBuffer() != once)
        SceneFuzz::fail("writing it again changes it", once, outAgain.getBuffer());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    SceneFuzz::start();
    if (size == 0) return 0;
    const std::string text(reinterpret_cast<const char*>(data + 1), size - 1);
    using Try = void (*)(const std::string&);
    static const Try tries[] = {
        &tryValue<KsSFBool>,    &tryValue<KsSFFloat>,          &tryValue<KsSFInt32>,
        &tryValue<KsSFString>,  &tryValue<KsSFFilePathString>, &tryValue<KsSFName>,
        &tryValue<KsSFVec2i32>, &tryValue<KsSFVec2f>,          &tryValue<KsSFVec3f>,
        &tryValue<KsSFColor>,   &tryValue<KsSFRotation>,       &tryValue<KsSFMatrix>,
        &tryValue<KsSFPlane>,   &tryValue<KsSFEnum>,           &tryValue<KsSFBitMask>,
        &tryValue<KsMFString>,  &tryValue<KsMFFloat>,          &tryValue<KsMFInt32>,
        &tryValue<KsMFColor>,   &tryValue<KsMFVec2f>,          &tryValue<KsMFVec3f>};
    tries[data[0] % (sizeof tries / sizeof *tries)](text);
    return 0;
}
