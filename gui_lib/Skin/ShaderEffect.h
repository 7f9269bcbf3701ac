#pragma once

#include "Export.h"
#include "osg/Vec2i.h"

class rastTexture;

namespace gui {
class GraphicCommands;
}  // namespace gui

namespace gui::skin {

// A timed effect drawn over the picture of a widget that draws through a
// render target. The skin hands it the target's texture and lets it draw in
// place of the plain picture; the effect kinds implement the rest.
class VUREL_EXPORT ShaderEffect {
public:
    virtual ~ShaderEffect() = default;

    // Gives the effect back to whoever handed it out; the skin calls it when
    // it lets go of the effect.
    virtual void destroy() = 0;
    virtual void setTexture(rastTexture* texture) = 0;
    // Render-side rebuild for a widget of `size`.
    virtual void doRedraw(osg::Vec2i const& size) = 0;
    virtual void draw() = 0;
    virtual void make(GraphicCommands* commands) = 0;
};

}  // namespace gui::skin
