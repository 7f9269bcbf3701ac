// The picture cut into cells that grow out of their centres ("valueX" and
// "valueY" pull the corners in by that much of clip space, at most half a
// cell) while each fades in with its own alpha ("quadsAlpha").
-- vertex
#version 330 core
layout(location = 0) in vec3 aPosition;
layout(location = 1) in vec2 aTexCoord;
layout(location = 2) in vec4 aColor;

uniform mat4 uProjection;
uniform mat4 uModelView;
uniform float uFlipY = 1.0;
// Cell q (from z) of a grid "columns" wide; all cells arrive at the origin.
// Offsets are in clip space ("quadSizeX", "quadSizeY"), texture coordinates
// in pixels of the picture ("quadSize", "texSizeX", "texSizeY"). A grid of more
// than 100 cells repeats the alphas.
uniform float quadSize = 32.0;
uniform float quadSizeX = 0.0;
uniform float quadSizeY = 0.0;
uniform float columns = 1.0;
uniform float rows = 1.0;
uniform float texSizeX = 1.0;
uniform float texSizeY = 1.0;
uniform float quadsAlpha[100];

out vec2 vTexCoord;
out vec4 vColor;
out float vQuadAlpha;

int cellNumber() { return max(int(aPosition.z + 0.5), 0); }

vec2 cellOf(int q) {
    int perRow = max(int(columns + 0.5), 1);
    return vec2(float(q % perRow), float(q / perRow));
}

vec4 placeInCell(vec2 cell) {
    vec4 p = uProjection * uModelView * vec4(aPosition.xy, 0.0, 1.0);
    p.xy += vec2(cell.x * quadSizeX, -cell.y * quadSizeY) * p.w;
    return p;
}

void passCell(int q, vec2 cell) {
    vTexCoord = (cell * quadSize + aPosition.xy) / vec2(max(texSizeX, 1.0), max(texSizeY, 1.0));
    vColor = aColor;
    vQuadAlpha = quadsAlpha[q % 100];
}

uniform float valueX = 0.0;
uniform float valueY = 0.0;

void main() {
    int q = cellNumber();
    vec2 cell = cellOf(q);
    vec4 p = placeInCell(cell);
    // Cells come as top left, top right, bottom right, bottom left.
    int corner = gl_VertexID % 4;
    float inX = (corner == 0 || corner == 3) ? 1.0 : -1.0;
    float inY = corner < 2 ? -1.0 : 1.0;
    vec2 pull = min(vec2(valueX, valueY), vec2(quadSizeX, quadSizeY) * 0.5);
    p.xy += vec2(inX, inY) * max(pull, vec2(0.0)) * p.w;
    p.y *= uFlipY;
    gl_Position = p;
    passCell(q, cell);
}

-- fragment
#version 330 core
uniform sampler2D uTexture;
uniform int uHasTexture = 0;
uniform int uPremultiplied = 0;
uniform vec4 uColor = vec4(1.0);
uniform float uOpacity = 1.0;

in vec2 vTexCoord;
in vec4 vColor;
in float vQuadAlpha;
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
    c.a *= uOpacity * clamp(vQuadAlpha, 0.0, 1.0);
    fragColor = c;
}
