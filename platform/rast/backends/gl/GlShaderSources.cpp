#include "rast/backends/gl/GlShaderSources.h"

#include <algorithm>

namespace {

char const* const kVertex = R"(#version 330 core
layout(location = 0) in vec3 aPosition;
layout(location = 1) in vec2 aTexCoord;
layout(location = 2) in vec4 aColor;

uniform mat4 uProjection;
uniform mat4 uModelView;
uniform float uFlipY = 1.0;

out vec2 vTexCoord;
out vec4 vColor;

void main() {
    // Drawing is flat: z is not a depth here (effects use it as a quad number).
    gl_Position = uProjection * uModelView * vec4(aPosition.xy, 0.0, 1.0);
    gl_Position.y *= uFlipY;
    vTexCoord = aTexCoord;
    vColor = aColor;
}
)";

char const* const kFragment = R"(
in vec2 vTexCoord;
in vec4 vColor;

uniform vec4 uColor = vec4(1.0);
uniform float uOpacity = 1.0;
uniform float uGamma = 1.0;
uniform float uIntensity = 1.0;
#if TEXTURE_KIND == 1
uniform sampler2D uTexture;
uniform int uPremultiplied = 0;
#elif TEXTURE_KIND == 2
uniform sampler2DArray uTexture;
uniform float uLayer = 0.0;
#endif

out vec4 fragColor;

void main() {
    vec4 c = vColor * uColor;
#if TEXTURE_KIND == 1
    vec4 t = texture(uTexture, vTexCoord);
    // Render targets hold premultiplied colour; blending wants it straight.
    if (uPremultiplied != 0 && t.a > 0.0)
        t.rgb /= t.a;
    c *= t;
#elif TEXTURE_KIND == 2
    c *= texture(uTexture, vec3(vTexCoord, uLayer));
#endif
    c.a *= uOpacity;
    if (uGamma != 1.0 && uGamma > 0.0)
        c.rgb = pow(max(c.rgb, vec3(0.0)), vec3(1.0 / uGamma));
    c.rgb *= uIntensity;
    fragColor = c;
}
)";

char const* const kMergedVertex = R"(#version 330 core
layout(location = 0) in vec3 aPosition;
layout(location = 1) in vec2 aTexCoord;
layout(location = 2) in vec4 aColor;
layout(location = 3) in vec4 aClip;
layout(location = 4) in int aSlot;

uniform mat4 uProjection;
uniform float uFlipY = 1.0;

out vec2 vTexCoord;
flat out vec4 vColor;
flat out vec4 vClip;
flat out int vSlot;

void main() {
    // The model-view is already applied; z is where it put the flat picture.
    gl_Position = uProjection * vec4(aPosition, 1.0);
    gl_Position.y *= uFlipY;
    vTexCoord = aTexCoord;
    vColor = aColor;
    vClip = aClip;
    vSlot = aSlot;
}
)";

// The merged fragment program in two parts, with the sampler selection for
// the number of units in use between them (see rastGlMergedFragmentSource).
char const* const kMergedFragmentHead = R"(
in vec2 vTexCoord;
flat in vec4 vColor;
flat in vec4 vClip;
flat in int vSlot;

uniform float uGamma = 1.0;
uniform float uIntensity = 1.0;
#if UNITS > 0
uniform sampler2D uTextures[UNITS];
uniform int uSlotPremultiplied[UNITS];
#endif

out vec4 fragColor;
)";

char const* const kMergedFragmentMain = R"(
void main() {
    vec4 c = vColor;
#if UNITS > 0
    if (vSlot >= 0) {
        vec4 t = sampleSlot(vSlot);
        // Render targets hold premultiplied colour; blending wants it straight.
        if (uSlotPremultiplied[vSlot] != 0 && t.a > 0.0)
            t.rgb /= t.a;
        c *= t;
    }
#endif
    if (uGamma != 1.0 && uGamma > 0.0)
        c.rgb = pow(max(c.rgb, vec3(0.0)), vec3(1.0 / uGamma));
    c.rgb *= uIntensity;
    // The clip as the scissor test would cut it, on pixel centres. Last, so
    // that texturing above runs in uniform control flow.
    if (gl_FragCoord.x < vClip.x || gl_FragCoord.x >= vClip.x + vClip.z || gl_FragCoord.y < vClip.y ||
        gl_FragCoord.y >= vClip.y + vClip.w)
        discard;
    fragColor = c;
}
)";

}  // namespace

std::string rastGlBuiltinVertexSource() { return kVertex; }

std::string rastGlBuiltinFragmentSource(rastGlTextureKind kind) {
    return std::string("#version 330 core\n#define TEXTURE_KIND ") + std::to_string(static_cast<int>(kind)) + "\n" +
           kFragment;
}

std::string rastGlMergedVertexSource() { return kMergedVertex; }

std::string rastGlMergedFragmentSource(int units) {
    units = std::clamp(units, 0, rastGlMergedTextureUnits);
    std::string source = "#version 330 core\n#define UNITS " + std::to_string(units) + "\n" + kMergedFragmentHead;
    if (units == 0)
        return source + kMergedFragmentMain;
    // GLSL 3.30 indexes sampler arrays with constants only. Each unit more
    // costs a software rasteriser a branch on every fragment, hence a
    // program for each count.
    source += "\nvec4 sampleSlot(int slot) {\n";
    for (int i = 0; i + 1 < units; ++i)
        source += "    if (slot == " + std::to_string(i) + ") return texture(uTextures[" + std::to_string(i) +
                  "], vTexCoord);\n";
    source += "    return texture(uTextures[" + std::to_string(units - 1) + "], vTexCoord);\n}\n";
    return source + kMergedFragmentMain;
}
