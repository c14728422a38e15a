#pragma once

#include <arborium/base/KbString.h>

#include <string_view>
#include <vector>

class KsNode;

/// The looks of one family of elements: a file of the skin directory, the built-in text that stands
/// in for it, and the named parts in it.
struct KsSkinFamily {
    const char* file;
    char* const* builtIn;
    std::vector<const char*> parts;
    int loaded = 0;
    int firstUse = 1;

    /// At the first 3D build of the family: reads the parts unless a skin was loaded before.
    void loadOnce();
    /// Swaps the content of the parts; the nodes that hold them stay.
    void change();

    /// Families by the functions that give them, which run once somebody asks.
    using Get = KsSkinFamily& (*)();
    static bool enrol(Get family);

private:
    void read();
    /// In a file, only the first group of each part of the family keeps a name of a part: others
    /// would stand in for parts when the next skin is loaded.
    void unnameStrangers(KsNode* root) const;
    static bool isPart(std::string_view name);
};

/// The family of `Class`: its built-in text is the member `text`; then the file and the parts.
/// Defines `skinFamily()` for the file that it stands in, and the class's three skin operations.
#define KS_SKIN_SOURCE(Class, text, file, ...)                                                     \
    namespace {                                                                                    \
    KsSkinFamily& skinFamily()                                                                     \
    {                                                                                              \
        static auto& family = *new KsSkinFamily{file, &Class::text, {__VA_ARGS__}};                \
        return family;                                                                             \
    }                                                                                              \
    const bool skinIsEnrolled = KsSkinFamily::enrol(&skinFamily);                                  \
    }                                                                                              \
    int Class::isSkinLoaded() { return skinFamily().loaded; }                                      \
    void Class::setSkinLoaded(int loaded) { skinFamily().loaded = loaded; }                        \
    void Class::change3DSkin() { skinFamily().change(); }

// Shapes that most built-in looks are made of, one unit wide and high around the z axis.
#define KS_SKIN_COLORED_BOX(color, depth, half)                                                    \
    color " Translation { translation 0 0 " half " }\n"                                            \
          "  Cube { width 1 height 1 depth " depth " }\n"
/// A box on whose top the next thing stands.
#define KS_SKIN_CLOSED_BOX(rgb)                                                                    \
    "  " KS_SKIN_COLORED_BOX("Material { diffuseColor " rgb " }", "1",                             \
                             "0.5") "  Translation { translation 0 0 0.5 }\n"
/// The same at half the height: what is pressed.
#define KS_SKIN_LOW_BOX(rgb)                                                                       \
    "  " KS_SKIN_COLORED_BOX("Material { diffuseColor " rgb " }", "0.5",                           \
                             "0.25") "  Translation { translation 0 0 0.25 }\n"
/// A closed box of a plain colour.
#define KS_SKIN_BASE_BOX(rgb)                                                                      \
    "  " KS_SKIN_COLORED_BOX("BaseColor { rgb " rgb " }", "1",                                     \
                             "0.5") "  Translation { translation 0 0 0.5 }\n"
#define KS_SKIN_OPEN_BOX(rgb)                                                                      \
    "  " KS_SKIN_COLORED_BOX("Material { diffuseColor " rgb " }", "1", "0.5")

#define KS_SKIN_COLOR(rgb) "  Material { diffuseColor " rgb " }\n"
#define KS_SKIN_QUAD(points)                                                                       \
    "  KsCoordinate3 { point [ " points " ] } KsFaceSet { numVertices [ 4 ] }\n"
/// A button with bevelled edges: two rims, each light on the left and top and dark on the right and
/// bottom (or the other way round), about a face.
#define KS_SKIN_BEVEL(outerLight, outerDark, innerLight, innerDark, face)                          \
    "  Translation { translation 0 0 0.1 }\n"                                                      \
    "  KsScale { scaleFactor 0.07142857 0.07142857 1.0 }\n" KS_SKIN_COLOR(outerLight)              \
        KS_SKIN_QUAD("-7 -6 0, -6 -6 0, -6 7 0, -7 7 0")                                           \
            KS_SKIN_QUAD("-6 6 0, 6 6 0, 6 7 0, -6 7 0") KS_SKIN_COLOR(outerDark)                  \
                KS_SKIN_QUAD("-7 -7 0, 7 -7 0, 7 -6 0, -7 -6 0")                                   \
                    KS_SKIN_QUAD("7 -6 0, 7 7 0, 6 7 0, 6 -6 0") KS_SKIN_COLOR(innerLight)         \
                        KS_SKIN_QUAD("-6 -5 0, -5 -5 0, -5 6 0, -6 6 0")                           \
                            KS_SKIN_QUAD("-5 5 0, 5 5 0, 5 6 0, -5 6 0") KS_SKIN_COLOR(innerDark)  \
                                KS_SKIN_QUAD("-6 -6 0, 6 -6 0, 6 -5 0, -6 -5 0")                   \
                                    KS_SKIN_QUAD("5 -5 0, 6 -5 0, 6 6 0, 5 6 0")                   \
                                        KS_SKIN_COLOR(face)                                        \
                                            KS_SKIN_QUAD("-5 -5 0, 5 -5 0, 5 5 0, -5 5 0")
#define KS_SKIN_PART(name, content) "DEF " name " Group {\n" content "}\n"
