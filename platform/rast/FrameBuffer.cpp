#include "rast/FrameBuffer.h"

#include "rast/Renderer.h"

rastFrameBuffer::rastFrameBuffer(osg::Vec2i const& size, int msaa, bool mips) : size_(size), msaa_(msaa), mips_(mips) {
    rastTextureId color = 0;
    id_ = rastRenderer::get()->getBackend().createFrameBuffer(size.x, size.y, msaa, mips, color);
    texture_.id_ = color;
    texture_.size_ = size;
    texture_.pixelRect_ = osg::Recti(0, 0, size.x, size.y);
}

rastFrameBuffer::~rastFrameBuffer() {
    if (rastRenderer* r = rastRenderer::get())
        r->getBackend().destroyFrameBuffer(id_);
}

void rastFrameBuffer::renderTo(std::function<void()> const& draw, bool keepContents) {
    rastRenderer* renderer = rastRenderer::get();
    renderer->beginRenderTo(*this, keepContents);
    if (draw)
        draw();
    renderer->endRenderTo();
}
