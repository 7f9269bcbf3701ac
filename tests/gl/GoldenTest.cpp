#include <cmath>

#include "GlFixture.h"
#include "rast/Font.h"
#include "rast/FrameBuffer.h"
#include "rast/Geometry.h"
#include "rast/Shader.h"
#include "rast/ShaderQuads.h"
#include "rast/TextString.h"
#include "rast/Texture.h"

// Small scenes drawn through the renderer objects and compared with pictures
// under tests/golden. Run with VUREL_UPDATE_GOLDEN=1 to write the references
// again after a deliberate change, and look at them before committing.

namespace vurel_test {
namespace {

// A 4x4 checker of two colours, with a red top-left texel to show orientation.
std::vector<uint8_t> checker() {
    std::vector<uint8_t> out;
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 4; ++x) {
            bool const light = (x + y) % 2 == 0;
            std::array<uint8_t, 4> c = light ? std::array<uint8_t, 4>{230, 230, 200, 255}
                                             : std::array<uint8_t, 4>{40, 60, 90, 255};
            if (x == 0 && y == 0)
                c = {220, 30, 30, 255};
            out.insert(out.end(), c.begin(), c.end());
        }
    return out;
}

rastShader& shader() { return *rastRenderer::get()->getShader(); }

void addQuad(rastShaderQuads& list, float x, float y, float w, float h, osg::Vec4f const& uv = {0, 0, 1, 1}) {
    list.addBatchQuad(x, y, w, h);
    list.addBatchTexCoords(uv.x, uv.y, uv.z, uv.w);
}

class GoldenTest : public GlFixture {
protected:
    rastTexture* loadChecker() {
        rastTextureManager& textures = *renderer().getTextureManager();
        auto const pixels = checker();
        textures.addImage("checker", {4, 4}, pixels.data());
        return textures.getTexture("checker");
    }
};

TEST_F(GoldenTest, TexturedBatchesAndColouredCells) {
    rastTexture* texture = loadChecker();
    ASSERT_NE(texture, nullptr);
    beginFrame({0.12f, 0.12f, 0.14f, 1});
    shader().setUserTextureFiltering(rastRenderer::SamplerNearest);

    rastShaderQuads list;
    list.beginBatch(texture, -1);
    addQuad(list, 4, 4, 24, 24);
    // The lower right quarter of the texture, stretched.
    list.beginBatch(texture, -1);
    addQuad(list, 30, 4, 12, 12, {0.5f, 0.5f, 1, 1});
    list.beginBatch(nullptr, -1);
    addQuad(list, 46, 4, 14, 10);
    addQuad(list, 46, 18, 14, 10);
    list.drawBatch(shader(), 0);
    list.drawBatch(shader(), 1);
    shader().setColor({1.0f, 0.6f, 0.1f, 1});
    list.drawBatch(shader(), 2);
    shader().setColor({1, 1, 1, 1});
    shader().resetTextureSampler();

    // Nine cells with their own colours, moved by the model-view matrix.
    rastShaderBkgQuads cells;
    float const edge[4] = {0, 4, 20, 24};
    for (int row = 0; row < 3; ++row)
        for (int col = 0; col < 3; ++col)
            cells.addQuad(rastQuad{edge[col], edge[row], edge[col + 1] - edge[col], edge[row + 1] - edge[row], 0, 0,
                                   1, 1});
    float colors[9 * 4];
    for (int i = 0; i < 9; ++i) {
        colors[i * 4 + 0] = float(i % 3) / 2.0f;
        colors[i * 4 + 1] = float(i / 3) / 2.0f;
        colors[i * 4 + 2] = i == 4 ? 1.0f : 0.3f;
        colors[i * 4 + 3] = i == 4 ? 0.5f : 1.0f;
    }
    {
        rastRenderer::ModelViewMatrixGuard modelView;
        modelView.setTranslate(6, 34, 0);
        shader().setColors(colors, 9);
        cells.draw(shader());
        shader().setColors(nullptr, 0);
    }
    renderer().getTextureManager()->releaseTexture(texture);
    endFrame();
    expectGolden("quads_and_cells");
}

TEST_F(GoldenTest, TextAndNestedClips) {
    rastFontManager& fonts = *renderer().getFontManager();
    fonts.registerFixedWidthFont("fixed", 5, 10, 8, -2);
    std::shared_ptr<rastFont> font = fonts.getFont("fixed", 10, 0);
    ASSERT_NE(font, nullptr);
    beginFrame({0.9f, 0.9f, 0.85f, 1});

    rastTextString title;
    title.setFont(font);
    title.setText(L"VUREL 1");
    title.setPosition({4, 12});
    title.setColor({0.1f, 0.2f, 0.6f, 1});
    title.setBkgColor({1, 1, 0.6f, 1});
    title.setShadowColor({0, 0, 0, 0.5f});
    title.setShadowOffset({1, 1});
    title.redraw();

    rastTextString clipped = title;
    clipped.setText(L"CLIPPED TEXT");
    clipped.setPosition({2, 46});
    clipped.setBkgColor({0, 0, 0, 0});
    clipped.setShadowColor({0, 0, 0, 0});
    clipped.setLineThroughColor({1, 0, 0, 1});
    clipped.redraw();
    renderer().endRedraw();

    title.draw(shader());
    {
        rastRenderer::ClipRectGuard outer(osg::Recti(0, 20, 56, 64));
        rastShaderQuads backdrop;
        backdrop.beginBatch(nullptr, -1);
        addQuad(backdrop, 0, 16, 64, 48);
        shader().setColor({0.8f, 0.3f, 0.3f, 1});
        backdrop.draw(shader());
        {
            rastRenderer::ClipRectGuard inner(osg::Recti(8, 24, 40, 60));
            shader().setColor({0.3f, 0.8f, 0.4f, 1});
            backdrop.draw(shader());
            shader().setColor({1, 1, 1, 1});
            clipped.draw(shader());
        }
        // Back in the outer clip only.
        clipped.setPosition({2, 58});
        clipped.redraw();
        clipped.draw(shader(), osg::Vec4f(1, 1, 1, 1));
    }
    endFrame();
    expectGolden("text_and_clips");
}

TEST_F(GoldenTest, TargetsDrawnAsPicturesWithOpacity) {
    rastTexture* texture = loadChecker();
    auto target = renderer().createFrameBuffer({32, 32}, 0, false);
    auto smooth = renderer().createFrameBuffer({32, 32}, 4, false);
    auto draw = [&](rastFrameBuffer& fb, bool rotate) {
        fb.renderTo([&] {
            rastRenderer::ProjectionMatrixGuard projection;
            projection.makeOrtho2D(0, 32, 32, 0);
            rastRenderer::ModelViewMatrixGuard modelView;
            if (rotate)
                modelView.makeIdentity().makeTranslate(-10, -10, 0).makeRotate(0.5f, 0, 0, 1).setTranslate(16, 16, 0);
            else
                modelView.setIdentity();
            rastShaderQuads list;
            list.beginBatch(nullptr, -1);
            addQuad(list, 0, 0, rotate ? 20.0f : 32.0f, rotate ? 20.0f : 32.0f);
            shader().setColor({0.9f, 0.1f, 0.1f, rotate ? 1.0f : 0.5f});
            list.draw(shader());
            if (!rotate) {
                rastShaderQuads inner;
                inner.beginBatch(texture, -1);
                addQuad(inner, 8, 8, 16, 16);
                shader().setColor({1, 1, 1, 1});
                shader().setUserTextureFiltering(rastRenderer::SamplerNearest);
                inner.draw(shader());
                shader().resetTextureSampler();
            }
            shader().setColor({1, 1, 1, 1});
        });
    };
    draw(*target, false);
    draw(*smooth, true);

    beginFrame({0.2f, 0.5f, 0.3f, 1});
    rastShaderQuads pictures;
    pictures.beginBatch(target->getTexture(), -1);
    addQuad(pictures, 0, 0, 32, 32);
    pictures.beginBatch(smooth->getTexture(), -1);
    addQuad(pictures, 16, 32, 32, 32);
    pictures.drawBatch(shader(), 0);
    {
        rastRenderer::OpacityGuard half(0.5f);
        rastRenderer::ShiftPositionGuard shift(32, 0);
        pictures.drawBatch(shader(), 0);
    }
    pictures.drawBatch(shader(), 1);
    renderer().getTextureManager()->releaseTexture(texture);
    endFrame();
    expectGolden("render_target");
}

TEST_F(GoldenTest, TrianglesAndLines) {
    beginFrame({1, 1, 1, 1});
    orm::vector<rastVertex> triangle = {
        {4, 4, 0, 0, 0, {1, 0, 0, 1}}, {40, 8, 0, 0, 0, {0, 1, 0, 1}}, {12, 40, 0, 0, 0, {0, 0, 1, 1}}};
    orm::vector<int> triangleIndices = {0, 1, 2};
    auto solid = renderer().createGeometry(triangle, triangleIndices);

    // A box outline as a line list on pixel centres, and a zigzag strip without indices.
    osg::Vec4f const ink(0.1f, 0.1f, 0.1f, 1);
    orm::vector<rastVertex> box = {{44.5f, 4.5f, 0, 0, 0, ink},
                                   {59.5f, 4.5f, 0, 0, 0, ink},
                                   {59.5f, 19.5f, 0, 0, 0, ink},
                                   {44.5f, 19.5f, 0, 0, 0, ink}};
    orm::vector<int> boxIndices = {0, 1, 1, 2, 2, 3, 3, 0};
    auto outline = renderer().createGeometry(box, boxIndices);
    orm::vector<rastVertex> zigzag;
    for (int i = 0; i < 6; ++i)
        zigzag.push_back(rastVertex{6.5f + float(i) * 10, i % 2 ? 48.5f : 60.5f, 0, 0, 0, {0.8f, 0.2f, 0.6f, 1}});
    auto strip = renderer().createGeometry(zigzag, {});

    renderer().setGeometry(solid.get());
    renderer().drawGeometry(rastGeometry::Triangles, 1, 0);
    renderer().setGeometry(outline.get());
    renderer().drawGeometry(rastGeometry::Lines, 4, 0);
    renderer().setGeometry(strip.get());
    renderer().drawGeometry(rastGeometry::LineStrip, 5, 0);
    renderer().setGeometry(nullptr);
    endFrame();
    expectGolden("geometry");
}

// Real glyphs: FreeType coverage in A8 atlas pages, drawn as white with
// the coverage as alpha and tinted, plus the blurred halo of a blur-1 font.
class FontGoldenTest : public GoldenTest {
protected:
    FontGoldenTest() { size = {96, 40}; }
};

TEST_F(FontGoldenTest, DefaultFontWithAndWithoutHalo) {
    std::shared_ptr<rastFont> plain = renderer().getFontManager()->getFont("default", 14, 0);
    std::shared_ptr<rastFont> blurred = renderer().getFontManager()->getFont("default", 14, 1);
    if (!plain || !blurred)
        GTEST_SKIP() << "the default font file is not installed";
    beginFrame({0.95f, 0.95f, 0.95f, 1});
    rastTextString first;
    first.setFont(plain);
    first.setText(L"VUREL Ag\u00e9");
    first.setPosition({4, 15});
    first.setColor({0.1f, 0.1f, 0.3f, 1});
    first.redraw();
    rastTextString second;
    second.setFont(blurred);
    second.setText(L"Halo 42");
    second.setPosition({4, 34});
    second.setColor({1, 1, 1, 1});
    second.setBlurColor({0.1f, 0.3f, 0.8f, 1});
    second.redraw();
    renderer().endRedraw();
    first.draw(shader());
    second.draw(shader());
    endFrame();
    expectGolden("default_font");
}

// The appear-quads effect over a 40x40 picture cut into 16-pixel cells, the
// way the toolkit builds its grid: all cells at the origin, z numbering them.
class EffectGoldenTest : public GoldenTest {
protected:
    EffectGoldenTest() { size = {96, 64}; }

    std::unique_ptr<rastGeometry> makeGrid(int width, int height, int quadSize, int& columns, int& rows) {
        columns = (width + quadSize - 1) / quadSize;
        rows = (height + quadSize - 1) / quadSize;
        orm::vector<rastVertex> vertices;
        orm::vector<int> indices;
        int q = 0;
        for (int r = 0; r < rows; ++r)
            for (int c = 0; c < columns; ++c, ++q) {
                float const w = float(c == columns - 1 ? width - (columns - 1) * quadSize : quadSize);
                float const h = float(r == rows - 1 ? height - (rows - 1) * quadSize : quadSize);
                float const z = float(q);
                for (auto [x, y] : {std::pair{0.0f, 0.0f}, {w, 0.0f}, {w, h}, {0.0f, h}})
                    vertices.push_back(rastVertex{x, y, z, 0, 0, {1, 1, 1, 1}});
                for (int i : {0, 1, 2, 0, 2, 3})
                    indices.push_back(4 * q + i);
            }
        return renderer().createGeometry(vertices, indices);
    }

    void set(rastProgramId program, char const* name, float value) {
        gl().setProgramParameter(program, name, &value, 1);
    }
};

TEST_F(EffectGoldenTest, AppearQuadsPlaceCellsAndFadeThemOneByOne) {
    rastTexture* texture = loadChecker();
    auto picture = renderer().createFrameBuffer({40, 40}, 0, false);
    picture->renderTo([&] {
        rastRenderer::ProjectionMatrixGuard projection;
        projection.makeOrtho2D(0, 40, 40, 0);
        rastShaderQuads list;
        list.beginBatch(texture, -1);
        addQuad(list, 0, 0, 40, 40);
        shader().setUserTextureFiltering(rastRenderer::SamplerNearest);
        list.draw(shader());
        shader().resetTextureSampler();
    });
    rastProgramId const appear = gl().loadProgram("PanelFx/guiAppearQuads.fx");
    rastProgramId const showMsg = gl().loadProgram("PanelFx/guiShowMsg.fx");
    ASSERT_NE(appear, 0u);
    ASSERT_NE(showMsg, 0u);
    int columns = 0, rows = 0;
    auto grid = makeGrid(40, 40, 16, columns, rows);
    ASSERT_EQ(columns, 3);

    beginFrame({0.15f, 0.15f, 0.15f, 1});
    set(appear, "quadSize", 16);
    set(appear, "quadSizeX", 2.0f * 16 / float(size.x));
    set(appear, "quadSizeY", 2.0f * 16 / float(size.y));
    set(appear, "columns", float(columns));
    set(appear, "rows", float(rows));
    set(appear, "texSizeX", 40);
    set(appear, "texSizeY", 40);
    float alphas[100] = {};
    for (int q = 0; q < 9; ++q)
        alphas[q] = 1.0f - float(q) / 9.0f;
    gl().setProgramParameter(appear, "quadsAlpha", alphas, 100);
    shader().setProgram(appear);
    shader().setTexture(picture->getTexture());
    renderer().setGeometry(grid.get());
    {
        rastRenderer::ModelViewMatrixGuard modelView;
        modelView.setTranslate(4, 4, 0);
        renderer().drawGeometry(rastGeometry::Triangles, columns * rows * 2, 0);
    }
    // The same half-way through growing: every cell pulled in by a quarter of its size.
    set(appear, "valueX", 0.25f * 2.0f * 16 / float(size.x));
    set(appear, "valueY", 0.25f * 2.0f * 16 / float(size.y));
    {
        rastRenderer::ModelViewMatrixGuard modelView;
        modelView.setTranslate(50, 4, 0);
        renderer().drawGeometry(rastGeometry::Triangles, columns * rows * 2, 0);
    }
    renderer().setGeometry(nullptr);

    // A message half grown and half faded in, as a plain quad.
    set(showMsg, "alphaCoeff", 0.5f);
    set(showMsg, "valueX", 0.5f * 40 / float(size.x) * 0.5f);
    set(showMsg, "valueY", 0.0f);
    shader().setProgram(showMsg);
    rastShaderQuads message;
    message.beginBatch(picture->getTexture(), -1);
    addQuad(message, 4, 46, 40, 16);
    message.draw(shader());
    shader().setProgram(0);
    shader().setTexture(nullptr);
    renderer().getTextureManager()->releaseTexture(texture);
    endFrame();
    expectGolden("effects");
}

}  // namespace
}  // namespace vurel_test
