#include "app/EglContext.h"

#include <epoxy/egl.h>
#include <epoxy/gl.h>

#include "orm/Log.h"

namespace gui {

namespace {

bool hasClientExtension(char const* name) {
    char const* extensions = eglQueryString(EGL_NO_DISPLAY, EGL_EXTENSIONS);
    return extensions && epoxy_extension_in_string(extensions, name);
}

EGLDisplay surfacelessDisplay() {
    if (!hasClientExtension("EGL_MESA_platform_surfaceless") || !hasClientExtension("EGL_EXT_platform_base"))
        return EGL_NO_DISPLAY;
    return eglGetPlatformDisplayEXT(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr);
}

EGLDisplay deviceDisplay() {
    if (!hasClientExtension("EGL_EXT_platform_device") || !hasClientExtension("EGL_EXT_device_enumeration"))
        return EGL_NO_DISPLAY;
    EGLDeviceEXT device = nullptr;
    EGLint count = 0;
    if (!eglQueryDevicesEXT(1, &device, &count) || count < 1)
        return EGL_NO_DISPLAY;
    return eglGetPlatformDisplayEXT(EGL_PLATFORM_DEVICE_EXT, device, nullptr);
}

}  // namespace

EglContext::~EglContext() { destroy(); }

bool EglContext::create(int width, int height) {
    destroy();
    if (!epoxy_has_egl()) {
        orm_vlogf("VUREL", 16, "EglContext: no EGL library");
        return false;
    }
    bool const ok = tryDisplay_(surfacelessDisplay(), "surfaceless") || tryDisplay_(deviceDisplay(), "device") ||
                    tryDisplay_(eglGetDisplay(EGL_DEFAULT_DISPLAY), "pbuffer");
    if (!ok) {
        orm_vlogf("VUREL", 16, "EglContext: no display gives an OpenGL 3.3 core context (EGL error 0x%x)",
                  static_cast<unsigned>(eglGetError()));
        return false;
    }
    if (!createTarget_(width, height)) {
        destroy();
        return false;
    }
    return true;
}

bool EglContext::tryDisplay_(void* display, char const* platform) {
    if (display == EGL_NO_DISPLAY)
        return false;
    EGLint major = 0, minor = 0;
    if (!eglInitialize(display, &major, &minor))
        return false;
    display_ = display;
    platform_ = platform;
    if (createContext_())
        return true;
    releaseDisplay_();
    return false;
}

bool EglContext::createContext_() {
    if (!eglBindAPI(EGL_OPENGL_API))
        return false;
    // A context needs no config where the display allows it; otherwise one that can make pbuffers.
    EGLConfig config = EGL_NO_CONFIG_KHR;
    bool const configless = epoxy_has_egl_extension(display_, "EGL_KHR_no_config_context");
    bool const surfaceless = epoxy_has_egl_extension(display_, "EGL_KHR_surfaceless_context");
    if (!configless || !surfaceless) {
        EGLint const wanted[] = {EGL_SURFACE_TYPE,    EGL_PBUFFER_BIT, EGL_RENDERABLE_TYPE, EGL_OPENGL_BIT,
                                 EGL_RED_SIZE,        8,               EGL_GREEN_SIZE,      8,
                                 EGL_BLUE_SIZE,       8,               EGL_ALPHA_SIZE,      8,
                                 EGL_NONE};
        EGLint count = 0;
        if (!eglChooseConfig(display_, wanted, &config, 1, &count) || count < 1)
            return false;
    }
    EGLint const attributes[] = {EGL_CONTEXT_MAJOR_VERSION,
                                 3,
                                 EGL_CONTEXT_MINOR_VERSION,
                                 3,
                                 EGL_CONTEXT_OPENGL_PROFILE_MASK,
                                 EGL_CONTEXT_OPENGL_CORE_PROFILE_BIT,
                                 EGL_NONE};
    context_ = eglCreateContext(display_, config, EGL_NO_CONTEXT, attributes);
    if (context_ == EGL_NO_CONTEXT) {
        context_ = nullptr;
        return false;
    }
    if (!surfaceless) {
        EGLint const size[] = {EGL_WIDTH, 1, EGL_HEIGHT, 1, EGL_NONE};
        surface_ = eglCreatePbufferSurface(display_, config, size);
        if (surface_ == EGL_NO_SURFACE)
            surface_ = nullptr;
    }
    if ((surfaceless || surface_) && makeCurrent() && epoxy_gl_version() >= 33)
        return true;
    eglMakeCurrent(display_, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    if (surface_)
        eglDestroySurface(display_, surface_);
    eglDestroyContext(display_, context_);
    surface_ = context_ = nullptr;
    return false;
}

bool EglContext::makeCurrent() {
    if (!context_)
        return false;
    EGLSurface const surface = surface_ ? surface_ : EGL_NO_SURFACE;
    return eglMakeCurrent(display_, surface, surface, context_) == EGL_TRUE;
}

bool EglContext::createTarget_(int width, int height) {
    if (width <= 0 || height <= 0) {
        orm_vlogf("VUREL", 16, "EglContext: invalid target size %dx%d", width, height);
        return false;
    }
    GLuint color = 0, frameBuffer = 0;
    glGenRenderbuffers(1, &color);
    glBindRenderbuffer(GL_RENDERBUFFER, color);
    glRenderbufferStorage(GL_RENDERBUFFER, GL_RGBA8, width, height);
    glGenFramebuffers(1, &frameBuffer);
    glBindFramebuffer(GL_FRAMEBUFFER, frameBuffer);
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, color);
    colorBuffer_ = color;
    frameBuffer_ = frameBuffer;
    if (glCheckFramebufferStatus(GL_FRAMEBUFFER) != GL_FRAMEBUFFER_COMPLETE) {
        orm_vlogf("VUREL", 16, "EglContext: the %dx%d target is not complete", width, height);
        destroyTarget_();
        return false;
    }
    width_ = width;
    height_ = height;
    glViewport(0, 0, width, height);
    return true;
}

void EglContext::destroyTarget_() {
    if (!context_ || !makeCurrent())
        return;
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
    GLuint frameBuffer = frameBuffer_, color = colorBuffer_;
    glDeleteFramebuffers(1, &frameBuffer);
    glDeleteRenderbuffers(1, &color);
    frameBuffer_ = colorBuffer_ = 0;
    width_ = height_ = 0;
}

bool EglContext::resize(int width, int height) {
    if (!context_ || !makeCurrent())
        return false;
    if (width == width_ && height == height_)
        return true;
    destroyTarget_();
    return createTarget_(width, height);
}

void EglContext::destroy() {
    if (context_) {
        destroyTarget_();
        eglMakeCurrent(display_, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
        if (surface_)
            eglDestroySurface(display_, surface_);
        eglDestroyContext(display_, context_);
        surface_ = context_ = nullptr;
    }
    releaseDisplay_();
}

void EglContext::releaseDisplay_() {
    // EGL displays are process-wide: other contexts may share this one, and
    // terminating it would unload the driver under them. It stays initialised.
    display_ = nullptr;
    platform_ = "";
}

}  // namespace gui
