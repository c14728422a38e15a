#include "KsGLProgram.h"

#include "KsGLShaders.h"

#include <arborium/base/KsDebugError.h>
#include <arborium/render/KsGLContext.h>

#include <array>
#include <string>

namespace {

/// Whether the driver took it; what it has against it is told.
bool isGood(GLuint id, GLenum state, decltype(glGetShaderiv)& ask,
            decltype(glGetShaderInfoLog)& tell, const char* problem)
{
    GLint good = 0;
    ask(id, state, &good);
    if (good) return true;
    char log[1024] = "";
    tell(id, sizeof log, nullptr, log);
    KsDebugError::post("KsGLPlayer", "%s: %s", problem, log);
    return false;
}

GLuint compileShader(GLenum kind, const std::string& prologue, const char* text)
{
    const GLuint shader = glCreateShader(kind);
    const char* parts[] = {prologue.c_str(), KsGLShaders::common, text};
    glShaderSource(shader, 3, parts, nullptr);
    glCompileShader(shader);
    isGood(shader, GL_COMPILE_STATUS, glGetShaderiv, glGetShaderInfoLog,
           "A shader does not compile");
    return shader;
}

} // namespace

const KsGLProgram& KsGLProgram::get(int flags)
{
    static std::array<KsGLProgram, 16>& programs = *new std::array<KsGLProgram, 16>;
    static std::uint64_t context = 0;
    if (context != KsGLContext::getNumber()) { // the others are gone
        programs.fill({});
        context = KsGLContext::getNumber();
    }
    KsGLProgram& p = programs[static_cast<std::size_t>(flags)];
    if (p.tried) return p;
    p.tried = true;
    std::string prologue = "#version 120\n";
    if (flags & Palette) prologue += "#define PALETTE\n";
    if (flags & Lit) prologue += "#define LIT\n";
    if (flags & PixelLight) prologue += "#define PIXEL_LIGHT\n";
    if (flags & Textured) prologue += "#define TEXTURED\n";
    const GLuint vertex = compileShader(GL_VERTEX_SHADER, prologue, KsGLShaders::vertex);
    const GLuint fragment = compileShader(GL_FRAGMENT_SHADER, prologue, KsGLShaders::fragment);
    const GLuint id = glCreateProgram();
    glAttachShader(id, vertex);
    glAttachShader(id, fragment);
    const char* attributes[] = {"a_position", "a_normal",   "a_texCoord", "a_diffuse",
                                "a_emissive", "a_specular", "a_ambient"};
    for (GLuint i = 0; i < 7; ++i) glBindAttribLocation(id, i, attributes[i]);
    glLinkProgram(id);
    glDeleteShader(vertex);
    glDeleteShader(fragment);
    if (!isGood(id, GL_LINK_STATUS, glGetProgramiv, glGetProgramInfoLog,
                "A shader program does not link")) {
        glDeleteProgram(id);
        return p;
    }
    p.id = id;
    const auto find = [id](const char* name) { return glGetUniformLocation(id, name); };
    p.model = find("u_model");
    p.view = find("u_view");
    p.projection = find("u_projection");
    p.normal = find("u_normal");
    p.palette = find("u_palette");
    p.paletteSize = find("u_paletteSize");
    p.texture = find("u_texture");
    p.perspective = find("u_perspective");
    p.twoSided = find("u_twoSided");
    p.headAmbient = find("u_headAmbient");
    p.sceneAmbient = find("u_sceneAmbient");
    p.numLights = find("u_numLights");
    p.lightVector = find("u_lightVector");
    p.lightColor = find("u_lightColor");
    return p;
}
