#include "Skin/Image.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "Skin/GraphicCommands.h"
#include "rast/Renderer.h"
#include "rast/Shader.h"
#include "rast/Texture.h"

namespace gui {

namespace {

rastTextureManager* textureManager() {
    rastRenderer* renderer = rastRenderer::get();
    return renderer ? renderer->getTextureManager() : nullptr;
}

void releaseToManager(rastTexture* texture) {
    if (!texture)
        return;
    if (rastTextureManager* manager = textureManager())
        manager->releaseTexture(texture);
}

int clampToInt(double value) {
    return static_cast<int>(std::clamp(value, double(std::numeric_limits<int32_t>::min()),
                                       double(std::numeric_limits<int32_t>::max())));
}

// The first position at or below `limit`, stepping back from `start` by `step`.
int64_t stepBack(int64_t start, int64_t limit, int64_t step) {
    if (start <= limit)
        return start;
    return start - (start - limit + step - 1) / step * step;
}

}  // namespace

Image::~Image() {
    if (ownsTexture)
        releaseToManager(texture);
    releaseRetired_();
}

void Image::set(Info const& value) {
    info = value;
    dirty = true;
}

void Image::setAlign(Align2 const& align) {
    if (info.horzAlign == align.horz && info.vertAlign == align.vert)
        return;
    info.horzAlign = align.horz;
    info.vertAlign = align.vert;
    dirty = true;
}

void Image::setInsets(Insets const& value) {
    if (insets == value)
        return;
    insets = value;
    dirty = true;
}

void Image::setResizeToFill(bool value) {
    if (info.resizeToFill == value)
        return;
    info.resizeToFill = value;
    dirty = true;
}

void Image::setTileHorizontally(bool value) {
    if (info.tileHorizontally == value)
        return;
    info.tileHorizontally = value;
    dirty = true;
}

void Image::setTileVertically(bool value) {
    if (info.tileVertically == value)
        return;
    info.tileVertically = value;
    dirty = true;
}

void Image::setSize(osg::Vec2i const& value) {
    if (info.size == value)
        return;
    info.size = value;
    dirty = true;
}

void Image::setTexture(orm::basic_string<char> const& file, osg::RectImpl<osg::Vec2i> const& rect) {
    rastTextureManager* manager = textureManager();
    rastTexture* fetched = manager && !file.empty() ? manager->getTexture(file, rect) : nullptr;
    if (fetched == texture) {
        // The manager counted a second reference of the texture in use.
        if (fetched && ownsTexture)
            manager->releaseTexture(fetched);
        ownsTexture = true;
        return;
    }
    setTexture(fetched, true);
}

void Image::setTexture(rastTexture* value, bool owned) {
    if (value != texture) {
        // Replaced textures stay alive until doRedraw has rebuilt the quads.
        // Only a texture this picture holds a reference of is released.
        if (texture && ownsTexture)
            retiredTextures.push_back(texture);
        texture = value;
        dirty = true;
    }
    ownsTexture = owned;
}

osg::Vec2i Image::getSize() const {
    if (!texture)
        return {};
    if (info.size.x == 0 && info.size.y == 0)
        return texture->getRectSize();
    return info.size;
}

osg::Vec2i Image::fillSize_(osg::Vec2i const& picture, osg::Vec2i const& avail) const {
    // Only ever enlarged; an empty picture cannot be scaled at all.
    if (!info.resizeToFill || (picture.x >= avail.x && picture.y >= avail.y) || picture.x <= 0 || picture.y <= 0)
        return picture;
    double const k = std::max(double(avail.y) / picture.y, double(avail.x) / picture.x);
    return {std::max(avail.x, clampToInt(std::ceil(picture.x * k))),
            std::max(avail.y, clampToInt(std::ceil(picture.y * k)))};
}

osg::RectImpl<osg::Vec2i> Image::place_(osg::Vec2i& avail) {
    avail = {viewSize.x - insets.left - insets.right, viewSize.y - insets.top - insets.bottom};
    osg::Vec2i const picture = fillSize_(getSize(), avail);
    osg::RectImpl<osg::Vec2i> const rect = Align2(info.horzAlign, info.vertAlign).calc(picture, avail);
    origin = {rect.min.x + insets.left, rect.min.y + insets.top};
    return rect;
}

void Image::redraw(osg::Vec2i const& view) {
    if (!dirty)
        return;
    if (visible_()) {
        viewSize = view;
        osg::Vec2i avail;
        place_(avail);
    }
    dirty = false;
    vertexDirty = true;
}

void Image::doRedraw() {
    if (!vertexDirty)
        return;
    quads.reset();
    if (visible_()) {
        osg::Vec2i avail;
        osg::RectImpl<osg::Vec2i> const rect = place_(avail);
        quads.beginBatch(texture, -1);
        addTiles_(rect, avail);
        quads.endBatch();
    }
    vertexDirty = false;
    releaseRetired_();
}

void Image::addTile_(float x, float y, float w, float h, osg::Vec4f const& uv) {
    quads.addBatchQuad(x, y, w, h);
    quads.addBatchTexCoords(uv.x, uv.y, uv.z, uv.w);
}

void Image::addTiles_(osg::RectImpl<osg::Vec2i> const& rect, osg::Vec2i const& avail) {
    osg::Vec4f const uv = texture->getRect();
    int64_t const w = rect.width(), h = rect.height();
    bool const horz = info.tileHorizontally && info.horzAlign.type != Align::Stretch && w > 0;
    bool const vert = info.tileVertically && info.vertAlign.type != Align::Stretch && h > 0;
    bool const grid = info.tileHorizontally && info.tileVertically && w > 0 && h > 0 &&
                      (info.horzAlign.type != Align::Stretch || info.vertAlign.type != Align::Stretch);
    float const fw = float(w), fh = float(h);

    if (grid) {
        // The step back stops at the align offsets here, unlike along one axis.
        int64_t const x0 = stepBack(origin.x, int64_t(info.horzAlign.offset) + insets.left, w);
        for (int64_t y = stepBack(origin.y, int64_t(info.vertAlign.offset) + insets.top, h); y < avail.y; y += h)
            for (int64_t x = x0; x < avail.x; x += w)
                addTile_(float(x), float(y), fw, fh, uv);
    } else if (horz && !info.tileVertically) {
        for (int64_t x = stepBack(origin.x, insets.left, w); x < avail.x; x += w)
            addTile_(float(x), float(origin.y), fw, fh, uv);
    } else if (vert && !info.tileHorizontally) {
        for (int64_t y = stepBack(origin.y, insets.top, h); y < avail.y; y += h)
            addTile_(float(origin.x), float(y), fw, fh, uv);
    } else {
        addTile_(float(origin.x), float(origin.y), fw, fh, uv);
    }
}

void Image::releaseRetired_() {
    // Last first: the order the textures were taken in, undone.
    for (auto it = retiredTextures.rbegin(); it != retiredTextures.rend(); ++it)
        releaseToManager(*it);
    retiredTextures.clear();
}

void Image::draw() const { draw(info.color); }

void Image::draw(osg::Vec4f const& color) const {
    rastRenderer* renderer = rastRenderer::get();
    if (!texture || !(color.w > 0) || !renderer)
        return;
    rastShader& shader = *renderer->getShader();
    shader.setColor(color);
    int const sampler = info.userTexSampler;
    shader.setUserTextureFiltering(sampler == rastRenderer::SamplerNearest || sampler == rastRenderer::SamplerMipmap
                                       ? sampler
                                       : rastRenderer::SamplerLinear);
    quads.draw(shader);
    if (sampler > 0)
        shader.resetTextureSampler();
}

void Image::make(GraphicCommands* commands) const { make(commands, info.color); }

void Image::make(GraphicCommands* commands, osg::Vec4f const& color) const {
    if (texture && color.w > 0 && commands)
        commands->drawQuads(quads, color, info.userTexSampler, -1);
}

}  // namespace gui
