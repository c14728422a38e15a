#pragma once

#include <epoxy/gl.h>

/// A shader program of the player with the places of its uniforms.
struct KsGLProgram {
    enum Flags { Palette = 1, Lit = 2, Textured = 4, PixelLight = 8 };
    GLuint id = 0; ///< 0 if it does not compile.
    bool tried = false;
    GLint model, view, projection, normal, palette, paletteSize, texture;
    GLint perspective, twoSided, headAmbient, sceneAmbient, numLights, lightVector, lightColor;

    /// The one program for these flags, made when it is first asked for.
    static const KsGLProgram& get(int flags);
};
