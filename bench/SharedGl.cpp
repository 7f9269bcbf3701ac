#include "SharedGl.h"

#include <epoxy/gl.h>

#include <memory>

#include "FrameUi.h"
#include "app/EglContext.h"

namespace vurel_bench {

namespace {

struct Shared {
    std::unique_ptr<gui::EglContext> context;
    bool tried = false;
};

Shared& shared() {
    static Shared s;
    return s;
}

}  // namespace

gui::EglContext* sharedGlContext() {
    Shared& s = shared();
    if (!s.tried) {
        s.tried = true;
        s.context = std::make_unique<gui::EglContext>();
        if (!s.context->create(kScreenWidth, kScreenHeight))
            s.context.reset();
    }
    if (s.context)
        s.context->makeCurrent();
    return s.context.get();
}

void releaseSharedGlContext() {
    Shared& s = shared();
    if (s.context)
        s.context->destroy();
    s.context.reset();
}

void clearSharedTarget() {
    gui::EglContext* context = shared().context.get();
    if (!context)
        return;
    glBindFramebuffer(GL_FRAMEBUFFER, context->getFrameBuffer());
    glViewport(0, 0, kScreenWidth, kScreenHeight);
    glDisable(GL_SCISSOR_TEST);
    glClearColor(0.1f, 0.1f, 0.12f, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT);
}

void finishGl() {
    if (shared().context)
        glFinish();
}

}  // namespace vurel_bench
