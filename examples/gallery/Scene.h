#pragma once

#include <map>
#include <string>

#include "osg/Vec2i.h"
#include "osg/Vec4f.h"

struct lua_State;

namespace gui {
class WidgetHandler;
class WindowBase;
}  // namespace gui

namespace gallery {

// The gallery's windows, built from the Lua resources under
// examples/gallery/resources with the skin the toolkit was created with.
//
// Resources reach the scene through a global table "gallery" in the skin
// script's Lua state: gallery.open(name [, anchor]), gallery.close(name),
// gallery.status(text), gallery.hasKind(kind), gallery.quit(), gallery.scale,
// gallery.dir. Windows are named by their resource file: "main", "tools",
// "overlay", "notice", "dialog", "popup".
class Scene {
public:
    // The screen in UI units; the window has this many pixels times the scale.
    static constexpr int kScreenWidth = 1120;
    static constexpr int kScreenHeight = 760;

    static std::string galleryDir();
    static std::string defaultSkinFile();
    // Effect programs of the OpenGL backend.
    static std::string assetDir();
    // The folder holding vurel/loader/CreateWindow.lua, which resources need
    // as the current directory.
    static std::string rootDir();
    static osg::Vec2i pixelSize(float scale);

    // `skinFile` is the script gui::GUI::create was given: textures and fonts
    // are looked for beside it.
    explicit Scene(std::string skinFile);
    ~Scene();
    Scene(Scene const&) = delete;
    Scene& operator=(Scene const&) = delete;

    // Needs gui::GUI. Answers false with the reason when a window cannot be built.
    bool build(std::string& error);
    // The colour behind everything, from the skin script's Desktop table.
    osg::Vec4f const& getClearColor() const { return clearColor_; }

    // Shows a window; a popup opens below `anchor` when one is given.
    bool open(std::string const& name, gui::WidgetHandler* anchor);
    bool close(std::string const& name);
    // Writes `text` into the main window's status line.
    void setStatus(std::string const& text);
    gui::WindowBase* getWindow(std::string const& name) const;

private:
    void setSearchPaths_();
    void readDesktop_();
    void openLuaTable_(lua_State* L);
    bool runHelpers_(lua_State* L, std::string& error);
    bool loadWindow_(std::string const& name, std::string& error);
    bool loadPopup_(std::string& error);
    std::string resourceFile_(std::string const& name) const;

    std::string skinFile_;
    std::string skinDir_;
    osg::Vec4f clearColor_{0.16f, 0.19f, 0.24f, 1.0f};
    std::map<std::string, gui::WidgetHandler*> windows_;
};

}  // namespace gallery
