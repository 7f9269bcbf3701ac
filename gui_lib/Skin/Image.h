#pragma once

#include <cstdint>

#include "Align.h"
#include "Export.h"
#include "orm/Allocator.h"
#include "orm/String.h"
#include "osg/Rect.h"
#include "osg/Vec2i.h"
#include "osg/Vec4f.h"
#include "rast/ShaderQuads.h"

class rastTexture;

namespace gui {

class GraphicCommands;

// A picture placed in a view by alignment, optionally scaled up to fill it
// and tiled along one or both axes.
//
// Phases: setters only mark the picture dirty; `redraw(viewSize)` places it;
// `doRedraw` builds the quads and only then lets go of replaced textures, so
// a texture outlives the quads that drew it; `draw` and `make` only draw.
class VUREL_EXPORT Image {
public:
    // A picture as a skin describes it.
    struct Info {
        orm::basic_string<char> file;
        osg::Vec4f color{1, 1, 1, 1};
        Align horzAlign{Align::Min, 0};
        Align vertAlign{Align::Middle, 0};
        osg::Vec2i size;  // (0, 0): the size of the texture's rectangle
        osg::RectImpl<osg::Vec2i> rect;  // part of the file's picture; unset for all of it
        int32_t userTexSampler = 0;      // 1 or 2 override the filtering, anything else does not
        bool resizeToFill = false;
        bool tileHorizontally = false;
        bool tileVertically = false;
    };

    Image() = default;
    virtual ~Image();
    Image(Image const&) = delete;
    Image& operator=(Image const&) = delete;

    // Copies every field of `info` and marks dirty; the texture stays as it is.
    void set(Info const& info);
    void setInsets(Insets const& value);
    void setResizeToFill(bool value);
    void setTileHorizontally(bool value);
    void setTileVertically(bool value);
    void setSize(osg::Vec2i const& value);
    // A texture of the manager; the picture holds its reference.
    void setTexture(orm::basic_string<char> const& file, osg::RectImpl<osg::Vec2i> const& rect);
    // With `owned` the picture releases the texture to the manager when done
    // with it; otherwise the caller keeps it alive until it is replaced.
    void setTexture(rastTexture* value, bool owned);
    void setDirty(bool value) { dirty = value; }
    virtual void setAlign(Align2 const& align);

    // (0, 0) without a texture; else `size`, or the texture rectangle's size when that is (0, 0).
    osg::Vec2i getSize() const;
    Info const& getInfo() const { return info; }
    Insets const& getInsets() const { return insets; }
    osg::Vec2i const& getOrigin() const { return origin; }
    osg::Vec2i const& getViewSize() const { return viewSize; }
    rastTexture* getTexture() const { return texture; }
    bool getOwnsTexture() const { return ownsTexture; }
    rastShaderQuads const& getQuads() const { return quads; }
    int getRetiredTextureCount() const { return static_cast<int>(retiredTextures.size()); }

    void redraw(osg::Vec2i const& view);
    void doRedraw();
    void draw() const;
    void draw(osg::Vec4f const& color) const;
    void make(GraphicCommands* commands) const;
    void make(GraphicCommands* commands, osg::Vec4f const& color) const;

private:
    bool visible_() const { return texture && info.color.w > 0; }
    // Places the picture in `viewSize`: its rectangle in the area inside the
    // insets, and `origin`; `avail` is that area's size.
    osg::RectImpl<osg::Vec2i> place_(osg::Vec2i& avail);
    osg::Vec2i fillSize_(osg::Vec2i const& picture, osg::Vec2i const& avail) const;
    void addTile_(float x, float y, float w, float h, osg::Vec4f const& uv);
    void addTiles_(osg::RectImpl<osg::Vec2i> const& rect, osg::Vec2i const& avail);
    void releaseRetired_();

    rastShaderQuads quads;
    osg::Vec2i origin;
    osg::Vec2i viewSize;
    Info info;
    Insets insets;
    rastTexture* texture = nullptr;
    orm::vector<rastTexture*> retiredTextures;
    bool dirty = false;
    bool vertexDirty = false;
    bool ownsTexture = true;
};

}  // namespace gui
