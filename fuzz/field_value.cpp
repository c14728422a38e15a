// Any text as the value of one field of each kind: refused and the old value kept, or taken, and
// then written to a text that gives the same value.

#include "scene_fuzz.h"

#include <arborium/fields/KsMField.h>

namespace {

/// A value as it stands in a file; a text in front of it makes sure that the file is one in UTF-8.
std::string written(const KsField& field)
{
    KsOutput out;
    out.write(KbString::fromUtf8("\xe2\x82\xac"));
    field.writeValue(&out);
    return "#Arborium V2.1 ascii utf8\n" + out.getBuffer();
}

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
    const std::string once = written(field);
    Field again;
    KsInput second;
    second.setBuffer(once.data(), once.size());
    KbString skipped;
    if (!second.read(skipped) || !again.readValue(&second))
        SceneFuzz::fail("what was written is refused", text, once);
    const std::string twice = written(again);
    if (twice != once) SceneFuzz::fail("writing it again changes it", once, twice);
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
