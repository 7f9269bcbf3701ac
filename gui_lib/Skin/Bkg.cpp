#include "Skin/Bkg.h"

#include <algorithm>
#include <limits>
#include <new>

#include "Skin/GraphicCommands.h"
#include "orm/Log.h"
#include "rast/Renderer.h"
#include "rast/Shader.h"
#include "rast/Texture.h"

namespace gui {

namespace {

constexpr char const* kCellNames[Bkg::CellCount] = {
    "left_top",    "center_top",    "right_top",     //
    "left_center", "center_center", "right_center",  //
    "left_bottom", "center_bottom", "right_bottom",
};

rastTextureManager* textureManager() {
    rastRenderer* renderer = rastRenderer::get();
    return renderer ? renderer->getTextureManager() : nullptr;
}

// 0..1 to 0..255, truncated; NaN counts as 0.
uint32_t toByte(float component) {
    float const scaled = component * 255.0f;
    if (!(scaled > 0.0f))
        return 0;
    return static_cast<uint32_t>(std::min(scaled, 255.0f));
}

uint32_t packColor(osg::Vec4f const& c) {
    return toByte(c.x) | toByte(c.y) << 8 | toByte(c.z) << 16 | toByte(c.w) << 24;
}

float byteOf(uint32_t packed, int index) { return static_cast<float>((packed >> (8 * index)) & 0xFFu) / 255.0f; }

// Sizes in 64 bits, so absurd insets cannot overflow.
int64_t max0(int64_t value) { return std::max<int64_t>(value, 0); }

}  // namespace

orm::BlockPool Bkg::bkgPool(sizeof(Bkg), 1024, "gui::Bkg", 16);

char const* Bkg::getCellName(int index) {
    if (index < 0 || index >= CellCount) {
        orm_vlogf("VUREL", 64, "Invalid background cell type!");
        return "";
    }
    return kCellNames[index];
}

void* Bkg::operator new(std::size_t size) {
    if (size > bkgPool.getObjectSize())
        return ::operator new(size);
    return bkgPool.alloc();
}

void Bkg::operator delete(void* p, std::size_t size) {
    if (!p)
        return;
    if (size > bkgPool.getObjectSize())
        ::operator delete(p);
    else
        bkgPool.free(p);
}

Bkg::Bkg() {
    float const big = std::numeric_limits<float>::max();
    std::fill(std::begin(cellRects), std::end(cellRects), CellRect{big, big, -big, -big});
    std::fill(std::begin(cellTexRects), std::end(cellTexRects), CellRect{big, big, -big, -big});
}

Bkg::~Bkg() { releaseTexture_(); }

void Bkg::releaseTexture_() {
    if (ownsTexture && texture)
        if (rastTextureManager* manager = textureManager())
            manager->releaseTexture(texture);
    ownsTexture = false;
}

void Bkg::set(Info const& info) {
    setTexture(info.file, info.rect);
    setInsets(info.insets);
    setCellColors(info.colors);
    dirty = true;
}

void Bkg::setCellColors(orm::vector<osg::Vec4f> const& values) {
    if (values.size() != CellCount)
        return;
    for (int i = 0; i < CellCount; ++i)
        colors[i] = packColor(values[static_cast<size_t>(i)]);
}

void Bkg::setInsets(Insets const& value) {
    if (insets == value)
        return;
    insets = value;
    dirty = true;
}

void Bkg::setPosition(osg::Vec2i const& value) {
    if (position == value)
        return;
    position = value;
    dirty = true;
}

void Bkg::setSize(osg::Vec2i const& value) {
    if (size == value)
        return;
    size = value;
    dirty = true;
}

void Bkg::setTexture(orm::basic_string<char> const& file, osg::RectImpl<osg::Vec2i> const& rect) {
    rastTextureManager* manager = textureManager();
    rastTexture* fetched = manager && !file.empty() ? manager->getTexture(file, rect) : nullptr;
    if (fetched == texture) {
        // The manager counted a second reference of the texture in use.
        if (fetched && ownsTexture)
            manager->releaseTexture(fetched);
        ownsTexture = ownsTexture || fetched != nullptr;
        return;
    }
    releaseTexture_();
    texture = fetched;
    ownsTexture = fetched != nullptr;
    dirty = true;
    quads.setTexture(texture);
}

void Bkg::setTexture(rastTexture* value) {
    if (value == texture)
        return;
    releaseTexture_();
    texture = value;
    dirty = true;
    quads.setTexture(texture);
}

void Bkg::redraw() {
    if (!dirty)
        return;
    calcCellRects_();
    if (texture)
        calcCellTexRects_();
    dirty = false;
    vertexDirty = true;
}

void Bkg::calcCellRects_() {
    int64_t const W = size.x, H = size.y;
    int64_t const L = insets.left, T = insets.top, R = insets.right, B = insets.bottom;
    float const cw = float(max0(W - R - L)), ch = float(max0(H - B - T));
    float const xr = float(max0(W - R)), yb = float(max0(H - B));
    float const l = float(L), t = float(T), r = float(R), b = float(B);

    cellRects[LeftTop] = {0, 0, l, t};
    cellRects[CenterTop] = {l, 0, cw, t};
    cellRects[RightTop] = {xr, 0, r, t};
    cellRects[LeftCenter] = {0, t, l, ch};
    cellRects[CenterCenter] = {l, t, cw, ch};
    cellRects[RightCenter] = {xr, t, r, ch};
    cellRects[LeftBottom] = {0, yb, l, b};
    cellRects[CenterBottom] = {l, yb, cw, b};
    cellRects[RightBottom] = {xr, yb, r, b};
}

void Bkg::calcCellTexRects_() {
    osg::Vec2i const pixels = texture->getSize();
    float const tw = float(std::max(pixels.x, 1)), th = float(std::max(pixels.y, 1));
    osg::Vec4f const& tr = texture->getRect();
    float const uMin = tr.x, vMin = tr.y, uMax = tr.z, vMax = tr.w;
    float const L = float(insets.left), T = float(insets.top), R = float(insets.right), B = float(insets.bottom);

    float const uL = L / tw + uMin;
    float const vT = T / th + vMin;
    float const uR = std::max(uMax - R / tw, uL);
    float const vB = std::max(vMax - B / th, vT);
    // The centre stops one texel early so that the right and bottom rows do
    // not bleed into it when filtered.
    float const uC = insets.right == 0 ? uR : std::max(uMax - (R + 1) / tw, uL);
    float const vC = insets.bottom == 0 ? vB : std::max(vMax - (B + 1) / th, vT);

    cellTexRects[LeftTop] = {uMin, vMin, uL, vT};
    cellTexRects[CenterTop] = {uL, vMin, uC, vT};
    cellTexRects[RightTop] = {uR, vMin, uMax, vT};
    cellTexRects[LeftCenter] = {uMin, vT, uL, vC};
    cellTexRects[CenterCenter] = {uL, vT, uC, vC};
    cellTexRects[RightCenter] = {uR, vT, uMax, vC};
    cellTexRects[LeftBottom] = {uMin, vB, uL, vMax};
    cellTexRects[CenterBottom] = {uL, vB, uC, vMax};
    cellTexRects[RightBottom] = {uR, vB, uMax, vMax};
}

void Bkg::doRedraw() {
    if (!vertexDirty)
        return;
    quads.clear();
    int drawn = 0;
    for (int i = 0; i < CellCount; ++i) {
        CellRect const& cell = cellRects[i];
        if (colors[i] == 0 || !(cell.c > 0) || !(cell.d > 0))
            continue;
        rastShaderBkgQuads::BkgQuad quad;
        quad.x = cell.a + float(position.x);
        quad.y = cell.b + float(position.y);
        quad.w = cell.c;
        quad.h = cell.d;
        if (texture) {
            CellRect const& tex = cellTexRects[i];
            quad.uMin = tex.a;
            quad.vMin = tex.b;
            quad.uMax = tex.c;
            quad.vMax = tex.d;
        }
        quads.addQuad(quad);
        for (int k = 0; k < 4; ++k)
            colorsToDraw[4 * drawn + k] = byteOf(colors[i], k);
        ++drawn;
    }
    vertexDirty = false;
}

void Bkg::draw() const {
    rastRenderer* renderer = rastRenderer::get();
    if (quads.getCount() <= 0 || !renderer)
        return;
    rastShader& shader = *renderer->getShader();
    shader.turnOnDrawQuads();
    shader.setColors(colorsToDraw, quads.getCount());
    quads.draw(shader);
}

void Bkg::make(GraphicCommands* commands) const {
    if (quads.getCount() > 0 && commands)
        commands->drawBkg(quads, colorsToDraw);
}

}  // namespace gui
