// A widget's picture faded as a whole: "timeCoeff" runs from 0 (gone) to 1 (fully shown).
-- vertex
#version 330 core
layout(location = 0) in vec3 aPosition;
layout(location = 1) in vec2 aTexCoord;
layout(location = 2) in vec4 aColor;

uniform mat4 uProjection;
uniform mat4 uModelView;
uniform float uFlipY = 1.0;

out vec2 vTexCoord;
out vec4 vColor;

void main() {
    gl_Position = uProjection * uModelView * vec4(aPosition.xy, 0.0, 1.0);
    gl_Position.y *= uFlipY;
    vTexCoord = aTexCoord;
    vColor = aColor;
}

-- fragment
#version 330 core
uniform sampler2D uTexture;
uniform int uHasTexture = 0;
uniform int uPremultiplied = 0;
uniform vec4 uColor = vec4(1.0);
uniform float uOpacity = 1.0;
uniform float timeCoeff = 1.0;

in vec2 vTexCoord;
in vec4 vColor;
out vec4 fragColor;

// Render targets hold premultiplied colour; blending wants it straight.
vec4 samplePicture(vec2 uv) {
    if (uHasTexture == 0)
        return vec4(1.0);
    vec4 t = texture(uTexture, uv);
    if (uPremultiplied != 0 && t.a > 0.0)
        t.rgb /= t.a;
    return t;
}

void main() {
    vec4 c = samplePicture(vTexCoord) * vColor * uColor;
    c.a *= uOpacity * clamp(timeCoeff, 0.0, 1.0);
    fragColor = c;
}
