// Any text as that of a label: its escapes, its size in pixels, and its lines in a scene. The first
// byte chooses the element, and whether the text is Unicode.

#include "scene_fuzz.h"

#include <arborium/nodes/KsGroup.h>
#include <arborium/nodes/KsText3.h>
#include <formweave/formweave.h>

#include <QApplication>

namespace {

struct Services : KsFormweave {
    using KsFormweave::convertToCString;
    using KsFormweave::setStringToText3;
    using KsFormweave::wrap3DTextLine;
};

void start()
{
    static const bool started = [] {
        static int argc = 1;
        static char name[] = "fuzz";
        static char* argv[] = {name, nullptr};
        setenv("QT_QPA_PLATFORM", "offscreen", 0);
        new QApplication(argc, argv);
        SceneFuzz::start();
        KsFormweave::init();
        return true;
    }();
    (void)started;
}

/// What the escapes mean, one character at a time.
std::u16string expected(const std::u16string& text, bool withReturns)
{
    std::u16string result;
    bool escaped = false;
    for (const char16_t c : text) {
        const bool lineFeed = escaped ? c == u'n' : c == u'\n';
        if (!escaped && c == u'\\') {
            escaped = true;
            continue;
        }
        if (lineFeed)
            result += withReturns ? u"\r\n" : u"\n";
        else if (escaped && c == u't')
            result += u'\t';
        else if (escaped || c != u'\r')
            result += c;
        escaped = false;
    }
    if (escaped) result += u'\\';
    return result;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    start();
    const SceneFuzz::LeakCheck leaks;
    if (size == 0) return 0;
    const unsigned choice = data[0];
    std::u16string units;
    const bool unicode = choice & 4;
    for (std::size_t i = 1; i + (unicode ? 1 : 0) < size; i += unicode ? 2 : 1)
        units += static_cast<char16_t>(unicode ? data[i] << 8 | data[i + 1] : data[i]);
    std::string bytes;
    for (const char16_t unit : units) bytes += static_cast<char>(unit);
    const KbString text = unicode ? KbString::fromUtf16(units) : KbString(bytes);

    KsRef<KsFormweave> node;
    bool multiLine = true;
    switch (choice & 3) {
    case 1: {
        const KsRef<KsDialogEditText> edit(new KsDialogEditText);
        multiLine = choice & 8;
        edit->multiLine = multiLine;
        node = edit.get();
        break;
    }
    case 2: node = new KsDialogComboBox; break;
    case 3: node = new KsDialogLabel; break;
    default: break;
    }
    const bool isEdit = (choice & 3) == 1;
    const KbString converted = Services::convertToCString(text, node.get());
    const std::u16string wanted = (choice & 3) == 2 ? units : expected(units, isEdit);
    if (converted.toUtf16() != wanted)
        SceneFuzz::fail("another text", text.toUtf8(), converted.toUtf8());

    const KbVec2i32 pixels = KsFormweave::getLabelPixelSize(text, node.get());
    if (pixels[0] < 0 || pixels[1] < 0 || (pixels[1] == 0) != text.isEmpty())
        SceneFuzz::fail("a strange size", text.toUtf8());
    if (isEdit && !multiLine && !text.isEmpty() &&
        pixels[1] != KsFormweave::getLabelPixelSize("x", nullptr)[1])
        SceneFuzz::fail("one line has not the height of one", text.toUtf8());

    // The lines of a scene's text, wrapped, are the text again.
    const KsRef<KsText3> lines(new KsText3);
    const KbString line = converted.getSubString(0, 200);
    if (line.find("\n") != KbString::npos) return 0;
    Services::setStringToText3(lines.get(), line);
    const KsRef<KsGroup> properties(new KsGroup);
    Services::wrap3DTextLine(lines.get(), 0, static_cast<float>(choice), properties.get(), nullptr);
    KbString together;
    for (const KbString& each : lines->string.values()) together += each;
    if (together != line) SceneFuzz::fail("a line broken is another", line.toUtf8());
    return 0;
}
