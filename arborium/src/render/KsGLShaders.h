#pragma once

/// The shaders of the player, in the GLSL of OpenGL 2.1. A program is a prologue of defines
/// (PALETTE, LIT, TEXTURED; PIXEL_LIGHT where light is worked out for each pixel and not for each
/// vertex), the common text, and the text of its stage.
namespace KsGLShaders {

constexpr const char* common = R"(
#ifdef LIT
uniform float u_perspective;
uniform float u_twoSided;
uniform float u_headAmbient;
uniform vec3 u_sceneAmbient;
uniform int u_numLights;
uniform vec4 u_lightVector[8];
uniform vec3 u_lightColor[8];

vec3 shade(vec3 base, vec3 emissive, vec3 ambient, vec4 specular, vec3 eye, vec3 direction)
{
    vec3 toEye = normalize(mix(vec3(0.0, 0.0, 1.0), -eye, u_perspective));
    vec3 normal = normalize(direction);
    if (u_twoSided > 0.5 && dot(normal, toEye) < 0.0) normal = -normal;
    vec3 color = emissive + u_headAmbient * base + u_sceneAmbient * ambient;
    for (int i = 0; i < u_numLights; ++i) {
        vec3 toLight = normalize(u_lightVector[i].xyz - u_lightVector[i].w * eye);
        float facing = dot(normal, toLight);
        if (facing > 0.0) {
            color += u_lightColor[i] * base * facing;
#ifdef PIXEL_LIGHT
            float shine = max(dot(normal, normalize(toLight + toEye)), 0.0);
            color += u_lightColor[i] * specular.rgb * pow(shine, specular.a * 128.0 + 1.0);
#endif
        }
    }
    return clamp(color, 0.0, 1.0);
}
#endif
)";

/// Attributes: 0 position, 1 normal (w: number of the material), 2 texture coordinates, and, where
/// the material is not looked up in the palette, 3 diffuse, 4 emissive, 5 specular, 6 ambient.
constexpr const char* vertex = R"(
uniform mat4 u_model;
uniform mat4 u_view;
uniform mat4 u_projection;
uniform mat3 u_normal;
attribute vec3 a_position;
attribute vec4 a_normal;
#ifdef TEXTURED
attribute vec2 a_texCoord;
varying vec2 v_texCoord;
#endif
varying vec4 v_diffuse;
#ifdef PIXEL_LIGHT
varying vec3 v_emissive;
varying vec4 v_specular;
varying vec3 v_ambient;
varying vec3 v_eye;
varying vec3 v_normal;
#endif
#ifdef PALETTE
uniform sampler2D u_palette;
uniform vec2 u_paletteSize;
vec4 entry(float row, float column)
{
    return texture2DLod(u_palette, vec2(column + 0.5, row + 0.5) / u_paletteSize, 0.0);
}
#else
attribute vec4 a_diffuse;
attribute vec4 a_emissive;
attribute vec4 a_specular;
attribute vec4 a_ambient;
#endif

void main()
{
    vec4 world = u_model * vec4(a_position, 1.0);
    vec4 eye = u_view * world;
    gl_Position = u_projection * eye;
    gl_ClipVertex = world;
#ifdef TEXTURED
    v_texCoord = a_texCoord;
#endif
#ifdef PALETTE
    float number = floor(a_normal.w * 32767.0 + 0.5);
    float row = floor((number + 0.5) / 64.0);
    float column = 4.0 * (number - row * 64.0);
    vec4 diffuse = entry(row, column);
#else
    vec4 diffuse = a_diffuse;
#endif
#ifdef PALETTE
    vec3 emissive = entry(row, column + 1.0).rgb;
#else
    vec3 emissive = a_emissive.rgb;
#endif
#ifdef LIT
#ifdef PALETTE
    vec4 specular = entry(row, column + 2.0);
    vec3 ambient = entry(row, column + 3.0).rgb;
#else
    vec4 specular = a_specular;
    vec3 ambient = a_ambient.rgb;
#endif
    vec3 direction = u_normal * a_normal.xyz;
#ifdef PIXEL_LIGHT
    v_emissive = emissive;
    v_specular = specular;
    v_ambient = ambient;
    v_eye = eye.xyz;
    v_normal = direction;
#else
    diffuse.rgb = shade(diffuse.rgb, emissive, ambient, specular, eye.xyz, direction);
#endif
#else
    diffuse.rgb = min(diffuse.rgb + emissive, 1.0);
#endif
    v_diffuse = diffuse;
}
)";

constexpr const char* fragment = R"(
varying vec4 v_diffuse;
#ifdef TEXTURED
uniform sampler2D u_texture;
varying vec2 v_texCoord;
#endif
#ifdef PIXEL_LIGHT
varying vec3 v_emissive;
varying vec4 v_specular;
varying vec3 v_ambient;
varying vec3 v_eye;
varying vec3 v_normal;
#endif

void main()
{
    vec4 base = v_diffuse;
#ifdef TEXTURED
    base *= texture2D(u_texture, v_texCoord);
#endif
#ifdef PIXEL_LIGHT
    base.rgb = shade(base.rgb, v_emissive, v_ambient, v_specular, v_eye, v_normal);
#endif
    gl_FragColor = base;
}
)";

} // namespace KsGLShaders
