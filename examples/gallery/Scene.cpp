#include "Scene.h"

#include <cmath>
#include <filesystem>

#include "Application.h"
#include "GUI.h"
#include "GalleryPopup.h"
#include "LuaBinding.h"
#include "Skin/LuaUtil.h"
#include "WidgetHandler.h"
#include "WindowBase.h"
#include "orm/Log.h"
#include "orm/Lua.h"
#include "orm/Utf8.h"
#include "rast/Font.h"
#include "rast/Renderer.h"
#include "rast/Texture.h"

namespace gallery {

namespace {

// Windows made from resources, in the order they are built (and stacked).
char const* const kWindowNames[] = {"overlay", "notice", "main", "tools", "dialog"};

std::string folderOf(std::string const& file) {
    std::filesystem::path const folder = std::filesystem::path(file).parent_path();
    return folder.empty() ? std::string(".") : folder.string();
}

Scene* sceneOf(lua_State* L) { return static_cast<Scene*>(lua_touserdata(L, lua_upvalueindex(1))); }

// The Lua functions raise errors only before any C++ object with a
// destructor is alive: Lua unwinds with longjmp.
int luaOpen(lua_State* L) {
    char const* name = luaL_checkstring(L, 1);
    auto* anchor = lua_type(L, 2) == LUA_TLIGHTUSERDATA ? static_cast<gui::WidgetHandler*>(lua_touserdata(L, 2))
                                                         : nullptr;
    lua_pushboolean(L, sceneOf(L)->open(name, anchor));
    return 1;
}

int luaClose(lua_State* L) {
    char const* name = luaL_checkstring(L, 1);
    lua_pushboolean(L, sceneOf(L)->close(name));
    return 1;
}

int luaStatus(lua_State* L) {
    char const* text = luaL_checkstring(L, 1);
    sceneOf(L)->setStatus(text);
    return 0;
}

// Ends the program's loop, as closing its window does.
int luaQuit(lua_State*) {
    if (gui::Application* app = gui::Application::get())
        app->quit();
    return 0;
}

int luaHasKind(lua_State* L) {
    char const* kind = luaL_checkstring(L, 1);
    lua_pushboolean(L, gui::lua::hasWidgetKind(kind));
    return 1;
}

}  // namespace

std::string Scene::galleryDir() { return GALLERY_SOURCE_DIR; }

std::string Scene::defaultSkinFile() { return galleryDir() + "/skin/default.lua"; }

std::string Scene::assetDir() { return GALLERY_ASSET_DIR; }

std::string Scene::rootDir() { return GALLERY_ROOT_DIR; }

osg::Vec2i Scene::pixelSize(float scale) {
    return {static_cast<int>(std::lround(kScreenWidth * scale)), static_cast<int>(std::lround(kScreenHeight * scale))};
}

Scene::Scene(std::string skinFile) : skinFile_(std::move(skinFile)), skinDir_(folderOf(skinFile_)) {}

Scene::~Scene() {
    // Callbacks still alive must not reach a scene that is gone.
    gui::GUI* gui = gui::GUI::get();
    if (lua_State* L = gui ? gui->getSkinLuaState() : nullptr) {
        lua_pushnil(L);
        lua_setglobal(L, "gallery");
    }
}

bool Scene::build(std::string& error) {
    gui::GUI* gui = gui::GUI::get();
    if (!gui || !gui->getSkinLuaState()) {
        error = "the toolkit is not running";
        return false;
    }
    setSearchPaths_();
    readDesktop_();
    lua_State* L = gui->getSkinLuaState();
    openLuaTable_(L);
    if (!runHelpers_(L, error))
        return false;
    for (char const* name : kWindowNames)
        if (!loadWindow_(name, error))
            return false;
    return loadPopup_(error);
}

void Scene::setSearchPaths_() {
    rastRenderer* renderer = rastRenderer::get();
    renderer->getTextureManager()->addSearchPath(skinDir_);
    renderer->getFontManager()->addSearchPath(skinDir_);
}

void Scene::readDesktop_() {
    gui::GUI* gui = gui::GUI::get();
    lua_State* L = gui->getSkinLuaState();
    luautil::StackGuard guard(L);
    lua_getglobal(L, "Desktop");
    luautil::getColorField(L, -1, "color", clearColor_);
    orm::basic_string<char> picture;
    if (luautil::getField(L, -1, "picture", picture) && !picture.empty())
        gui->setBkgPicture(picture, true);
}

void Scene::openLuaTable_(lua_State* L) {
    luautil::StackGuard guard(L);
    lua_newtable(L);
    luaL_Reg const functions[] = {
        {"open", luaOpen}, {"close", luaClose}, {"status", luaStatus}, {"hasKind", luaHasKind}, {"quit", luaQuit}};
    for (luaL_Reg const& f : functions) {
        lua_pushlightuserdata(L, this);
        lua_pushcclosure(L, f.func, 1);
        lua_setfield(L, -2, f.name);
    }
    float const scale = rastRenderer::get()->getScale();
    lua_pushnumber(L, scale);
    lua_setfield(L, -2, "scale");
    lua_pushstring(L, galleryDir().c_str());
    lua_setfield(L, -2, "dir");
    lua_setglobal(L, "gallery");
}

// Widget helpers the resources share (button, label, row...).
bool Scene::runHelpers_(lua_State* L, std::string& error) {
    luautil::StackGuard guard(L);
    std::string const file = galleryDir() + "/resources/widgets.lua";
    if (ORM_lua_loadfile(L, file.c_str()) != 0 || ORM_lua_pcall(L, 0, 0, 0) != 0) {
        char const* message = lua_tostring(L, -1);
        error = message ? message : file + ": cannot run";
        return false;
    }
    return true;
}

std::string Scene::resourceFile_(std::string const& name) const {
    return galleryDir() + "/resources/" + name + ".lua";
}

bool Scene::loadWindow_(std::string const& name, std::string& error) {
    gui::GUI* gui = gui::GUI::get();
    lua_State* L = gui->getSkinLuaState();
    std::string const file = resourceFile_(name);
    // The loader leaves its result on the stack.
    luautil::StackGuard guard(L);
    gui::WindowBase* window = gui->createWindowFromResource(file.c_str());
    if (window) {
        windows_[name] = window->handler();
        return true;
    }
    // The toolkit only answers null; a syntax error at least can be named.
    if (luaL_loadfile(L, file.c_str()) != 0) {
        char const* message = lua_tostring(L, -1);
        error = message ? message : file + ": cannot read";
    } else {
        error = file + ": the window cannot be built (an unknown widget kind, or an error while it runs)";
    }
    return false;
}

bool Scene::loadPopup_(std::string& error) {
    gui::GUI* gui = gui::GUI::get();
    std::string const file = resourceFile_("popup");
    if (!std::filesystem::exists(file)) {
        error = file + ": no such file";
        return false;
    }
    auto* popup = new GalleryPopup();
    windows_["popup"] = popup->handler();
    // Errors are logged by the toolkit; the popup keeps what was built.
    gui->loadWindowFromResource(file.c_str(), popup);
    return true;
}

gui::WindowBase* Scene::getWindow(std::string const& name) const {
    auto it = windows_.find(name);
    return it == windows_.end() ? nullptr : static_cast<gui::WindowBase*>(gui::WidgetHandler::get(it->second));
}

bool Scene::open(std::string const& name, gui::WidgetHandler* anchor) {
    gui::WindowBase* window = getWindow(name);
    if (!window) {
        orm_vlogf("VUREL", 16, "gallery.open: no window '%s'", name.c_str());
        return false;
    }
    if (gui::Widget* widget = gui::WidgetHandler::get(anchor)) {
        // The window's frame, not its shadow margin, lines up with the anchor.
        osg::Vec2i const below = widget->widgetToScreen(osg::Vec2i(0, widget->getSize().y + 4));
        osg::Vec2i const position = below - window->getClientRect().min;
        window->setPosition(gui::WindowBase::calcWindowPositionInsideScreen(position, window->getSize()));
    } else if (name == "dialog") {
        window->centerWindow();
    }
    window->setVisible(true);
    return true;
}

bool Scene::close(std::string const& name) {
    gui::WindowBase* window = getWindow(name);
    if (!window)
        return false;
    window->close();
    return true;
}

void Scene::setStatus(std::string const& text) {
    gui::WindowBase* main = getWindow("main");
    if (gui::Widget* status = main ? main->findWidgetByName(L"status") : nullptr)
        status->setText(orm::iconv_utf8_to_wchar(text));
}

}  // namespace gallery
