#include "rast/Texture.h"

#include <png.h>

#include <algorithm>
#include <cstring>
#include <filesystem>

#include "orm/Log.h"
#include "rast/Renderer.h"

namespace {

// Larger pictures are refused rather than risking a huge allocation.
constexpr png_uint_32 kMaxImageSide = 16384;

}  // namespace

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
        if (image.id)
            r->getBackend().destroyTexture(image.id);
}

void rastTextureManager::addImage(orm::basic_string<char> const& name, osg::Vec2i const& size,
                                  void const* rgbaPixels) {
    rastBackend& backend = rastRenderer::get()->getBackend();
    Image& image = images_[name];
    if (image.id)
        backend.destroyTexture(image.id);
    image.size = osg::Vec2i(std::max(size.x, 0), std::max(size.y, 0));
    image.id = backend.createTexture(image.size.x, image.size.y, rastPixelFormat::RGBA8, rgbaPixels);
    image.registered = true;
    failed_.erase(name);
    // Textures already handed out for this name show the new picture, not a destroyed one.
    for (Entry& entry : image.entries)
        place_(*entry.texture, image, entry.rect);
}

void rastTextureManager::addSearchPath(orm::basic_string<char> const& dir) {
    searchPaths_.push_back(dir);
    failed_.clear();
}

void rastTextureManager::place_(rastTexture& texture, Image const& image, osg::Recti const& rect) {
    texture.id_ = image.id;
    texture.size_ = image.size;
    osg::Recti pixels = rect.isUnset() ? osg::Recti(0, 0, image.size.x, image.size.y) : rect;
    // Cut to the picture; a rectangle wholly outside it becomes an empty one on its border.
    pixels.min.x = std::clamp(pixels.min.x, 0, image.size.x);
    pixels.min.y = std::clamp(pixels.min.y, 0, image.size.y);
    pixels.max.x = std::clamp(pixels.max.x, pixels.min.x, image.size.x);
    pixels.max.y = std::clamp(pixels.max.y, pixels.min.y, image.size.y);
    texture.pixelRect_ = pixels;
    float const w = image.size.x > 0 ? static_cast<float>(image.size.x) : 1.0f;
    float const h = image.size.y > 0 ? static_cast<float>(image.size.y) : 1.0f;
    texture.rect_ = osg::Vec4f(static_cast<float>(pixels.min.x) / w, static_cast<float>(pixels.min.y) / h,
                               static_cast<float>(pixels.max.x) / w, static_cast<float>(pixels.max.y) / h);
}

orm::basic_string<char> rastTextureManager::resolveFile_(orm::basic_string<char> const& file) const {
    std::error_code ec;
    if (std::filesystem::is_regular_file(file.c_str(), ec))
        return file;
    for (orm::basic_string<char> const& dir : searchPaths_) {
        std::filesystem::path const candidate = std::filesystem::path(dir.c_str()) / file.c_str();
        if (std::filesystem::is_regular_file(candidate, ec))
            return orm::basic_string<char>(candidate.string());
    }
    return {};
}

bool rastTextureManager::readFile_(orm::basic_string<char> const& file, Image& image) {
    orm::basic_string<char> const path = resolveFile_(file);
    if (path.empty()) {
        logOnce_(file, "not found", "");
        return false;
    }
    png_image png;
    std::memset(&png, 0, sizeof png);
    png.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_file(&png, path.c_str())) {
        logOnce_(file, "cannot be read: ", png.message);
        return false;
    }
    if (png.width > kMaxImageSide || png.height > kMaxImageSide) {
        png_image_free(&png);
        logOnce_(file, "cannot be read: ", "picture too large");
        return false;
    }
    png.format = PNG_FORMAT_RGBA;
    orm::vector<uint8_t> pixels(PNG_IMAGE_SIZE(png));
    if (!png_image_finish_read(&png, nullptr, pixels.data(), 0, nullptr)) {
        logOnce_(file, "cannot be read: ", png.message);
        png_image_free(&png);
        return false;
    }
    image.size = osg::Vec2i(static_cast<int>(png.width), static_cast<int>(png.height));
    image.id = rastRenderer::get()->getBackend().createTexture(image.size.x, image.size.y, rastPixelFormat::RGBA8,
                                                               pixels.data());
    return true;
}

void rastTextureManager::logOnce_(orm::basic_string<char> const& file, char const* what, char const* detail) {
    if (logged_.insert(file).second)
        orm_vlogf("VUREL", 16, "Texture file \"%s\" %s%s", file.c_str(), what, detail);
}

rastTextureManager::Image* rastTextureManager::findOrLoadImage_(orm::basic_string<char> const& file) {
    auto it = images_.find(file);
    if (it != images_.end())
        return &it->second;
    if (file.empty() || failed_.count(file) != 0)
        return nullptr;
    Image image;
    if (!readFile_(file, image)) {
        failed_.insert(file);
        return nullptr;
    }
    return &images_.emplace(file, std::move(image)).first->second;
}

rastTexture* rastTextureManager::getTexture(orm::basic_string<char> const& file, osg::Recti const& rect) {
    Image* image = findOrLoadImage_(file);
    if (!image)
        return nullptr;
    ++image->references;
    for (Entry& entry : image->entries)
        if (entry.rect == rect) {
            ++entry.references;
            return entry.texture.get();
        }
    Entry entry;
    entry.rect = rect;
    entry.texture = std::make_unique<rastTexture>();
    entry.texture->file_ = file;
    entry.references = 1;
    place_(*entry.texture, *image, rect);
    image->entries.push_back(std::move(entry));
    return image->entries.back().texture.get();
}

void rastTextureManager::releaseTexture(rastTexture* texture) {
    if (!texture)
        return;
    auto it = images_.find(texture->file_);
    Entry* entry = nullptr;
    if (it != images_.end())
        for (Entry& e : it->second.entries)
            if (e.texture.get() == texture)
                entry = &e;
    if (!entry) {
        orm_vlogf("VUREL", 16, "releaseTexture: texture not from this manager");
        return;
    }
    if (entry->references <= 0) {
        orm_vlogf("VUREL", 16, "releaseTexture: texture released more often than taken");
        return;
    }
    --entry->references;
    Image& image = it->second;
    if (--image.references > 0 || image.registered)
        return;
    // Nothing shows this file any more: its picture leaves the GPU.
    if (rastRenderer* r = rastRenderer::get())
        r->getBackend().destroyTexture(image.id);
    images_.erase(it);
}

int rastTextureManager::getReferenceCount(rastTexture const* texture) const {
    if (!texture)
        return 0;
    auto it = images_.find(texture->file_);
    if (it == images_.end())
        return 0;
    for (Entry const& entry : it->second.entries)
        if (entry.texture.get() == texture)
            return entry.references;
    return 0;
}

int rastTextureManager::getTextureCount() const {
    int count = 0;
    for (auto const& [name, image] : images_)
        for (Entry const& entry : image.entries)
            count += entry.references > 0 ? 1 : 0;
    return count;
}
