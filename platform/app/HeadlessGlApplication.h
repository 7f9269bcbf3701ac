#pragma once

#include <memory>

#include "app/EglContext.h"
#include "app/HeadlessApplication.h"
#include "osg/Vec4f.h"

class rastBackend;
class rastGlBackend;

namespace gui {

// A headless application that draws real pixels: init() makes an EGL context
// and the process-wide renderer over the OpenGL backend, whose default target
// is the "window" of the application's size. Without a context it logs, makes
// the renderer over the null backend, and the program runs on without drawing.
class VUREL_EXPORT HeadlessGlApplication : public HeadlessApplication {
public:
    // Effect programs are read from `assetDir` (e.g. examples/assets).
    HeadlessGlApplication(osg::Vec2i const& size, orm::basic_string<char> assetDir);
    // Destroys the renderer it made, then the context. Call after GUI::destroy.
    ~HeadlessGlApplication() override;

    // Always true: the application runs, with or without pixels.
    bool init() override;
    // Whether frames are really drawn.
    bool hasGl() const { return getGlBackend() != nullptr; }
    // The backend of the renderer this application made; null without one.
    rastGlBackend* getGlBackend() const;
    EglContext& getContext() { return context_; }

    // The colour the target starts each frame with.
    void setClearColor(osg::Vec4f const& color) { clearColor_ = color; }
    // Clears the target, then runs the toolkit's frame.
    void runFrame();
    int run() override;

    // Writes the frame drawn last as a PNG file; false without pixels.
    bool screenshot(char const* path);
    bool makeScreenshot(char const* file) override { return screenshot(file); }
    orm::basic_string<char> getScreenshotExtention() const override { return "png"; }

protected:
    bool createMainWindow_(int width, int height, bool fullScreen) override;

private:
    orm::basic_string<char> assetDir_;
    EglContext context_;
    rastGlBackend* backend_ = nullptr;  // owned by the renderer
    rastBackend* ownBackend_ = nullptr;  // the backend of the renderer made here, GL or null
    osg::Vec4f clearColor_{0, 0, 0, 1};
};

}  // namespace gui
