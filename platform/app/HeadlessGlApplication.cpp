#include "app/HeadlessGlApplication.h"

#include "orm/Log.h"
#include "rast/Renderer.h"
#include "rast/backends/gl/GlBackend.h"
#include "rast/backends/null/NullBackend.h"

namespace gui {

HeadlessGlApplication::HeadlessGlApplication(osg::Vec2i const& size, orm::basic_string<char> assetDir)
    : HeadlessApplication(size), assetDir_(std::move(assetDir)) {}

HeadlessGlApplication::~HeadlessGlApplication() {
    // The renderer's textures and fonts go back to the context, so it goes first.
    if (ownBackend_ && rastRenderer::get() && &rastRenderer::get()->getBackend() == ownBackend_)
        rastRenderer::destroy();
    context_.destroy();
}

rastGlBackend* HeadlessGlApplication::getGlBackend() const {
    // Somebody else may have destroyed the renderer in the meantime.
    rastRenderer* renderer = rastRenderer::get();
    return backend_ && renderer && &renderer->getBackend() == backend_ ? backend_ : nullptr;
}

bool HeadlessGlApplication::init() {
    if (rastRenderer::get()) {
        orm_vlogf("VUREL", 16, "HeadlessGlApplication: a renderer exists already; it is kept");
        return true;
    }
    std::unique_ptr<rastBackend> backend;
    if (context_.create(size_.x, size_.y)) {
        auto gl = std::make_unique<rastGlBackend>(assetDir_.c_str());
        if (gl->isValid()) {
            gl->setDefaultTarget(context_.getFrameBuffer(), size_.x, size_.y);
            backend_ = gl.get();
            backend = std::move(gl);
        }
    }
    if (!backend) {
        orm_vlogf("VUREL", 16, "HeadlessGlApplication: no OpenGL; running without drawing");
        context_.destroy();
        backend = std::make_unique<rastNullBackend>();
    }
    ownBackend_ = backend.get();
    rastRenderer::create(std::move(backend));
    return true;
}

bool HeadlessGlApplication::createMainWindow_(int width, int height, bool) {
    size_ = osg::Vec2i(width, height);
    rastGlBackend* gl = getGlBackend();
    if (!gl)
        return true;
    if (!context_.resize(width, height)) {
        orm_vlogf("VUREL", 16, "HeadlessGlApplication: cannot resize the target to %dx%d", width, height);
        return false;
    }
    gl->setDefaultTarget(context_.getFrameBuffer(), width, height);
    return true;
}

void HeadlessGlApplication::runFrame() {
    if (rastGlBackend* gl = getGlBackend()) {
        gl->bindFrameBuffer(0);
        gl->popClipRect(nullptr);
        gl->clear(clearColor_);
    }
    HeadlessApplication::runFrame();
}

int HeadlessGlApplication::run() {
    double const frameTime = 1.0 / (framerate_ > 0 ? framerate_ : 60);
    while (getRunning()) {
        runFrame();
        advanceTime(frameTime);
    }
    return 0;
}

bool HeadlessGlApplication::screenshot(char const* path) {
    rastGlBackend* gl = getGlBackend();
    return gl && gl->writePng(path);
}

}  // namespace gui
