#pragma once

#include <cstdint>
#include <memory>
#include <unordered_map>
#include <unordered_set>

#include "Export.h"
#include "orm/Allocator.h"
#include "orm/String.h"
#include "rast/Types.h"

// A picture on the GPU, or a rectangle of one. Sizes are known in every
// backend, so texture coordinates can be computed without a GPU.
class VUREL_EXPORT rastTexture {
public:
    rastTextureId getId() const { return id_; }
    // Pixel size of the whole GPU texture.
    osg::Vec2i const& getSize() const { return size_; }
    // This texture's part of it in texture space: uMin, vMin, uMax, vMax.
    osg::Vec4f const& getRect() const { return rect_; }
    // The same part in pixels.
    osg::Recti const& getPixelRect() const { return pixelRect_; }
    osg::Vec2i getRectSize() const { return pixelRect_.size(); }
    orm::basic_string<char> const& getFile() const { return file_; }

private:
    friend class rastTextureManager;
    friend class rastFrameBuffer;

    rastTextureId id_ = 0;
    osg::Vec2i size_;
    osg::Vec4f rect_{0, 0, 1, 1};
    osg::Recti pixelRect_{0, 0, 0, 0};
    orm::basic_string<char> file_;
};

// Several pictures of one size in layers of one GPU object.
class VUREL_EXPORT rastTextureArray {
public:
    rastTextureArray(osg::Vec2i const& size, int layers);
    ~rastTextureArray();
    rastTextureArray(rastTextureArray const&) = delete;
    rastTextureArray& operator=(rastTextureArray const&) = delete;

    void setLayer(int layer, void const* rgbaPixels);
    rastTextureId getId() const { return id_; }
    osg::Vec2i const& getSize() const { return size_; }
    int getLayerCount() const { return layers_; }

private:
    rastTextureId id_ = 0;
    osg::Vec2i size_;
    int layers_ = 0;
};

// Textures by file name and sub-rectangle, reference counted. Asking twice for
// the same file and rectangle gives the same object; each get is matched by a
// release. Files are PNG pictures, read once as RGBA; a name is a path as
// given (absolute or relative to the current directory) or relative to a
// search path. A file that cannot be read gives null, logged once: callers
// draw colours only. When the last texture of a file is released, its picture
// leaves the GPU; pictures registered with addImage stay while the manager
// lives.
class VUREL_EXPORT rastTextureManager {
public:
    rastTextureManager() = default;
    ~rastTextureManager();
    rastTextureManager(rastTextureManager const&) = delete;
    rastTextureManager& operator=(rastTextureManager const&) = delete;

    // `rect` in pixels of the file's picture, cut to the picture; an unset
    // rectangle means all of it.
    rastTexture* getTexture(orm::basic_string<char> const& file, osg::Recti const& rect = osg::Recti());
    void releaseTexture(rastTexture* texture);

    // Registers a picture under `name` as if it were a file (RGBA, 4 bytes a pixel).
    void addImage(orm::basic_string<char> const& name, osg::Vec2i const& size, void const* rgbaPixels);
    // Whether a picture of that name is in memory, registered or read from a file.
    bool hasImage(orm::basic_string<char> const& name) const { return images_.count(name) != 0; }

    // A folder searched for picture files after the current directory; later
    // folders come after earlier ones. Files not found so far are tried again.
    void addSearchPath(orm::basic_string<char> const& dir);

    int getReferenceCount(rastTexture const* texture) const;
    // Textures handed out and not yet released.
    int getTextureCount() const;
    // Pictures on the GPU.
    int getImageCount() const { return static_cast<int>(images_.size()); }

private:
    // A texture of one rectangle; it stays, with no references, while its
    // picture does, so that switching between rectangles does not allocate.
    struct Entry {
        osg::Recti rect;
        std::unique_ptr<rastTexture> texture;
        int references = 0;
    };
    struct Image {
        rastTextureId id = 0;
        osg::Vec2i size;
        bool registered = false;
        int references = 0;  // over all its rectangles
        orm::vector<Entry> entries;
    };

    Image* findOrLoadImage_(orm::basic_string<char> const& file);
    bool readFile_(orm::basic_string<char> const& file, Image& image);
    orm::basic_string<char> resolveFile_(orm::basic_string<char> const& file) const;
    void logOnce_(orm::basic_string<char> const& file, char const* what, char const* detail);
    // Points `texture` at `rect` (pixels, unset for all) of `image`.
    static void place_(rastTexture& texture, Image const& image, osg::Recti const& rect);

    std::unordered_map<orm::basic_string<char>, Image> images_;
    orm::vector<orm::basic_string<char>> searchPaths_;
    // Files that could not be read are not tried again until the search paths change.
    std::unordered_set<orm::basic_string<char>> failed_;
    std::unordered_set<orm::basic_string<char>> logged_;
};
