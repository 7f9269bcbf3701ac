#pragma once

#include <functional>

#include "Export.h"
#include "rast/Texture.h"

// An off-screen target that the toolkit renders into and then draws as a
// picture. Made by rastRenderer::createFrameBuffer.
class VUREL_EXPORT rastFrameBuffer {
public:
    ~rastFrameBuffer();
    rastFrameBuffer(rastFrameBuffer const&) = delete;
    rastFrameBuffer& operator=(rastFrameBuffer const&) = delete;

    osg::Vec2i const& getSize() const { return size_; }
    int getMsaa() const { return msaa_; }
    bool getMips() const { return mips_; }
    rastTexture* getTexture() { return &texture_; }
    rastFrameBufferId getId() const { return id_; }

    // Binds the target with fresh state stacks, runs `draw`, and unbinds,
    // restoring whatever was bound and set before. A target entered afresh
    // starts transparent, or, with `keepContents` where the backend can,
    // keeps its pixels.
    void renderTo(std::function<void()> const& draw, bool keepContents = false);

private:
    friend class rastRenderer;
    rastFrameBuffer(osg::Vec2i const& size, int msaa, bool mips);

    osg::Vec2i size_;
    int msaa_ = 0;
    bool mips_ = false;
    rastFrameBufferId id_ = 0;
    rastTexture texture_;
};
