#include "rast/Texture.h"

#include "orm/Log.h"
#include "rast/Renderer.h"

rastTextureArray::rastTextureArray(osg::Vec2i const& size, int layers) : size_(size), layers_(layers) {
    id_ = rastRenderer::get()->getBackend().createTextureArray(size.x, size.y, layers);
}

rastTextureArray::~rastTextureArray() {
    if (rastRenderer* r = rastRenderer::get())
        r->getBackend().destroyTexture(id_);
}

void rastTextureArray::setLayer(int layer, void const* rgbaPixels) {
    if (layer < 0 || layer >= layers_)
        return;
    rastRenderer::get()->getBackend().updateTextureLayer(id_, layer, rgbaPixels);
}

rastTextureManager::~rastTextureManager() {
    rastRenderer* r = rastRenderer::get();
    if (!r)
        return;
    for (auto const& [name, image] : images_)
        r->getBackend().destroyTexture(image.id);
}

orm::basic_string<char> rastTextureManager::makeKey_(orm::basic_string<char> const& file, osg::Recti const& rect) {
    if (rect.isUnset())
        return file;
    return orm::basic_string<char>::format("%s#%d,%d,%d,%d", file.c_str(), rect.min.x, rect.min.y, rect.max.x,
                                           rect.max.y);
}

void rastTextureManager::addImage(orm::basic_string<char> const& name, osg::Vec2i const& size,
                                  void const* rgbaPixels) {
    rastBackend& backend = rastRenderer::get()->getBackend();
    auto it = images_.find(name);
    if (it != images_.end()) {
        backend.destroyTexture(it->second.id);
        images_.erase(it);
    }
    Image image;
    image.size = size;
    image.id = backend.createTexture(size.x, size.y, rastPixelFormat::RGBA8, rgbaPixels);
    images_.emplace(name, image);
    // Textures already handed out for this name show the new picture, not a destroyed one.
    for (auto& [key, entry] : entries_)
        if (entry.texture->file_ == name)
            place_(*entry.texture, image, key == name ? osg::Recti() : entry.texture->pixelRect_);
}

void rastTextureManager::place_(rastTexture& texture, Image const& image, osg::Recti const& rect) {
    texture.id_ = image.id;
    texture.size_ = image.size;
    osg::Recti const pixels = rect.isUnset() ? osg::Recti(0, 0, image.size.x, image.size.y) : rect;
    texture.pixelRect_ = pixels;
    float const w = image.size.x > 0 ? static_cast<float>(image.size.x) : 1.0f;
    float const h = image.size.y > 0 ? static_cast<float>(image.size.y) : 1.0f;
    texture.rect_ = osg::Vec4f(static_cast<float>(pixels.min.x) / w, static_cast<float>(pixels.min.y) / h,
                               static_cast<float>(pixels.max.x) / w, static_cast<float>(pixels.max.y) / h);
}

rastTextureManager::Image const* rastTextureManager::findOrLoadImage_(orm::basic_string<char> const& file) {
    auto it = images_.find(file);
    if (it != images_.end())
        return &it->second;
    // Picture files are read by the image loader once it is installed; until
    // then only registered images exist.
    return nullptr;
}

rastTexture* rastTextureManager::getTexture(orm::basic_string<char> const& file, osg::Recti const& rect) {
    orm::basic_string<char> const key = makeKey_(file, rect);
    auto found = entries_.find(key);
    if (found != entries_.end()) {
        ++found->second.references;
        return found->second.texture.get();
    }
    Image const* image = findOrLoadImage_(file);
    if (!image)
        return nullptr;

    auto texture = std::make_unique<rastTexture>();
    texture->file_ = file;
    place_(*texture, *image, rect);
    rastTexture* result = texture.get();
    entries_.emplace(key, Entry{std::move(texture), 1});
    return result;
}

void rastTextureManager::releaseTexture(rastTexture* texture) {
    if (!texture)
        return;
    for (auto it = entries_.begin(); it != entries_.end(); ++it) {
        if (it->second.texture.get() != texture)
            continue;
        if (--it->second.references <= 0)
            entries_.erase(it);
        return;
    }
    orm_vlogf("VUREL", 16, "releaseTexture: texture not from this manager");
}

int rastTextureManager::getReferenceCount(rastTexture const* texture) const {
    for (auto const& [key, entry] : entries_)
        if (entry.texture.get() == texture)
            return entry.references;
    return 0;
}
