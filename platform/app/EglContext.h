#pragma once

#include <cstdint>

#include "Export.h"
#include "osg/Vec2i.h"

namespace gui {

// A desktop OpenGL 3.3 core context without a window, and an off-screen
// target of a given size standing in for a window's frame buffer: there is
// no default frame buffer without a surface, so drawing goes to a frame
// buffer object of our own.
//
// Displays are tried in this order: Mesa's surfaceless platform, the first
// EGL device, the default display with a 1x1 pbuffer. Mesa renders on the
// CPU (llvmpipe) when there is no GPU.
class VUREL_EXPORT EglContext {
public:
    EglContext() = default;
    ~EglContext();
    EglContext(EglContext const&) = delete;
    EglContext& operator=(EglContext const&) = delete;

    // Creates the context, makes it current and gives it a target of
    // `width` x `height`. False, logged under "VUREL" at level 16, when no
    // display gives such a context.
    bool create(int width, int height);
    void destroy();
    bool isValid() const { return context_ != nullptr; }
    bool makeCurrent();
    // A new target of the new size; the picture is lost.
    bool resize(int width, int height);

    // The GL name of the target's frame buffer object.
    uint32_t getFrameBuffer() const { return frameBuffer_; }
    osg::Vec2i getSize() const { return {width_, height_}; }
    // The road that worked: "surfaceless", "device" or "pbuffer"; empty before.
    char const* getPlatformName() const { return platform_; }

private:
    bool tryDisplay_(void* display, char const* platform);
    bool createContext_();
    bool createTarget_(int width, int height);
    void destroyTarget_();
    void releaseDisplay_();

    void* display_ = nullptr;
    void* context_ = nullptr;
    void* surface_ = nullptr;
    uint32_t frameBuffer_ = 0;
    uint32_t colorBuffer_ = 0;
    int width_ = 0;
    int height_ = 0;
    char const* platform_ = "";
};

}  // namespace gui
