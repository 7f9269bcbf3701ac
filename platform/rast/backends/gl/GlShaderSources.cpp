#include "rast/backends/gl/GlShaderSources.h"

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

}  // namespace

std::string rastGlBuiltinVertexSource() { return kVertex; }

std::string rastGlBuiltinFragmentSource(rastGlTextureKind kind) {
    return std::string("#version 330 core\n#define TEXTURE_KIND ") + std::to_string(static_cast<int>(kind)) + "\n" +
           kFragment;
}
