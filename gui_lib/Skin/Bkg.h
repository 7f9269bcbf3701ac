#pragma once

#include <cstddef>
#include <cstdint>

#include "Align.h"
#include "Export.h"
#include "orm/Allocator.h"
#include "orm/BlockPool.h"
#include "orm/String.h"
#include "osg/Rect.h"
#include "osg/Vec2i.h"
#include "osg/Vec4f.h"
#include "rast/ShaderQuads.h"

class rastTexture;

namespace gui {

class GraphicCommands;

// A background of nine stretched cells (corners, edges and centre) cut from
// one texture by the insets, each cell with its own colour. Cells with no
// colour or no area are not drawn, so an outline costs only its edges.
//
// Allocation: `new Bkg` and `delete` go through the class's own operator new
// and operator delete, which take the storage from `bkgPool`. Skins create
// and drop backgrounds as states change; the pool keeps that from reaching
// the heap.
//
// Phases: setters only mark the background dirty; `redraw` computes the
// cells; `doRedraw` fills the quads; `draw` and `make` only draw.
class VUREL_EXPORT Bkg {
public:
    enum CellType : int32_t {
        LeftTop = 0,
        CenterTop = 1,
        RightTop = 2,
        LeftCenter = 3,
        CenterCenter = 4,
        RightCenter = 5,
        LeftBottom = 6,
        CenterBottom = 7,
        RightBottom = 8,
        CellCount = 9,
    };

    // A background as a skin describes it.
    struct Info {
        orm::basic_string<char> file;
        osg::RectImpl<osg::Vec2i> rect;  // part of the file's picture; unset for all of it
        Insets insets;
        orm::vector<osg::Vec4f> colors = orm::vector<osg::Vec4f>(CellCount);  // one a cell, in CellType order
    };

    // The skin table name of a cell ("left_top", ...); "" (logged) for an index outside 0 to 8.
    static char const* getCellName(int index);

    static orm::BlockPool bkgPool;
    static void* operator new(std::size_t size);
    static void operator delete(void* p, std::size_t size);

    Bkg();
    ~Bkg();
    Bkg(Bkg const&) = delete;
    Bkg& operator=(Bkg const&) = delete;

    // Texture, insets and colours from `info`; always marks the background dirty.
    void set(Info const& info);
    // Exactly nine colours; any other count is ignored. Does not mark dirty.
    void setCellColors(orm::vector<osg::Vec4f> const& colors);
    void setInsets(Insets const& value);
    void setPosition(osg::Vec2i const& value);
    void setSize(osg::Vec2i const& value);
    // A texture of the manager: the background holds a reference while it uses it.
    void setTexture(orm::basic_string<char> const& file, osg::RectImpl<osg::Vec2i> const& rect);
    // A texture the caller keeps alive; the background never releases it.
    void setTexture(rastTexture* value);
    void setDirty(bool value) { dirty = value; }

    void redraw();
    void doRedraw();
    void draw() const;
    void make(GraphicCommands* commands) const;

    // RGBA of each drawn cell, packed in draw order.
    float const* getColorsToDraw() const { return colorsToDraw; }
    Insets const& getInsets() const { return insets; }
    osg::Vec2i const& getPosition() const { return position; }
    osg::Vec2i const& getSize() const { return size; }
    rastTexture* getTexture() const { return texture; }
    rastShaderBkgQuads const& getQuads() const { return quads; }
    bool getDirty() const { return dirty; }

private:
    // x, y, w, h of a cell, or uMin, vMin, uMax, vMax of its texture part.
    struct CellRect {
        float a, b, c, d;
    };

    void releaseTexture_();
    void calcCellRects_();
    void calcCellTexRects_();

    osg::Vec2i position;
    osg::Vec2i size;
    rastShaderBkgQuads quads;
    Insets insets;
    rastTexture* texture = nullptr;
    float colorsToDraw[4 * CellCount] = {};
    uint32_t colors[CellCount] = {};  // red in the low byte, alpha in the high one
    CellRect cellRects[CellCount];
    CellRect cellTexRects[CellCount];
    bool dirty = false;
    bool vertexDirty = false;
    // Whether `texture` carries a reference of the manager taken by this object.
    bool ownsTexture = false;
};

}  // namespace gui
