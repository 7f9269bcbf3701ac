#include "rast/Font.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>

#include "orm/Log.h"
#include "rast/FreeTypeFont.h"
#include "rast/Renderer.h"

namespace {

// Larger sizes would need glyph bitmaps bigger than an atlas page.
constexpr int kMaxFontSize = 2048;

char const* const kSystemFontDirs[] = {"/usr/share/fonts", "/usr/local/share/fonts"};

bool isFile(std::filesystem::path const& path) {
    std::error_code ec;
    return std::filesystem::is_regular_file(path, ec);
}

// An absolute, normalised form, so that two spellings of one file share fonts.
orm::basic_string<char> normalisedPath(std::filesystem::path const& path) {
    std::error_code ec;
    std::filesystem::path absolute = std::filesystem::absolute(path, ec);
    if (ec)
        absolute = path;
    return orm::basic_string<char>(absolute.lexically_normal().string());
}

}  // namespace

rastFixedWidthFont::rastFixedWidthFont(int charWidth, int lineHeight, int ascent, int descent)
    : charWidth_(charWidth), lineHeight_(lineHeight), ascent_(ascent), descent_(descent) {
    uint8_t white[4 * 4 * 4];
    for (uint8_t& b : white)
        b = 255;
    atlas_ = rastRenderer::get()->getBackend().createTexture(4, 4, rastPixelFormat::RGBA8, white);
    box_.advance = static_cast<float>(charWidth);
    box_.x = 0;
    box_.y = static_cast<float>(-ascent);
    box_.w = static_cast<float>(charWidth);
    box_.h = static_cast<float>(ascent - descent);
    box_.uMin = box_.vMin = 0.25f;
    box_.uMax = box_.vMax = 0.75f;
    space_ = box_;
    space_.w = space_.h = 0;
}

rastFixedWidthFont::~rastFixedWidthFont() {
    if (rastRenderer* r = rastRenderer::get())
        r->getBackend().destroyTexture(atlas_);
}

rastFont::Glyph const& rastFixedWidthFont::getGlyph(wchar_t ch) const {
    return (ch == L' ' || ch == L'\t') ? space_ : box_;
}

rastFontManager::rastFontManager() = default;

rastFontManager::~rastFontManager() = default;

std::shared_ptr<rastFont> rastFontManager::getFont(orm::basic_string<char> const& name, int size, int blur) {
    if (name.empty())
        return nullptr;
    auto fixed = fixedFonts_.find(name);
    if (fixed != fixedFonts_.end())
        return fixed->second;
    if (size < 1 || size > kMaxFontSize)
        return nullptr;
    int const b = std::clamp(blur, 0, 2);
    FileFonts* file = findFile_(name);
    if (!file)
        return nullptr;
    for (Sized const& s : file->fonts)
        if (s.size == size && s.blur == b)
            return s.font;
    std::shared_ptr<rastFont> font = rastFreeTypeFont::load(file->path, size, static_cast<rastFont::Blur>(b));
    if (!font)
        logOnce_(name, "cannot be read");
    file->fonts.push_back(Sized{size, b, font});
    return font;
}

void rastFontManager::registerFixedWidthFont(orm::basic_string<char> const& name, int charWidth, int lineHeight,
                                             int ascent, int descent) {
    fixedFonts_[name] = std::make_shared<rastFixedWidthFont>(charWidth, lineHeight, ascent, descent);
}

void rastFontManager::addSearchPath(orm::basic_string<char> const& dir) {
    searchPaths_.push_back(dir);
    // Names resolve again, so that one missing so far may now be found.
    names_.clear();
}

orm::basic_string<char> rastFontManager::resolveFile(orm::basic_string<char> const& name) const {
    namespace fs = std::filesystem;
    if (name.empty())
        return {};
    if (name == "default" || name == "DejaVuSans")
        return isFile(kDefaultFontFile) ? orm::basic_string<char>(kDefaultFontFile) : orm::basic_string<char>();
    if (isFile(fs::path(name.c_str())))
        return normalisedPath(fs::path(name.c_str()));
    for (orm::basic_string<char> const& dir : searchPaths_) {
        fs::path const candidate = fs::path(dir.c_str()) / name.c_str();
        if (isFile(candidate))
            return normalisedPath(candidate);
    }
    if (!systemFontsScanned_) {
        systemFontsScanned_ = true;
        for (char const* root : kSystemFontDirs) {
            std::error_code ec;
            fs::recursive_directory_iterator it(root, fs::directory_options::skip_permission_denied, ec), end;
            for (; !ec && it != end; it.increment(ec)) {
                if (!it->is_regular_file(ec))
                    continue;
                orm::basic_string<char> const path = it->path().string();
                systemFonts_.emplace(it->path().filename().string(), path);
                systemFonts_.emplace(it->path().stem().string(), path);
            }
        }
    }
    auto found = systemFonts_.find(name);
    return found != systemFonts_.end() ? found->second : orm::basic_string<char>();
}

rastFontManager::FileFonts* rastFontManager::findFile_(orm::basic_string<char> const& name) {
    auto known = names_.find(name);
    if (known != names_.end())
        return known->second;
    orm::basic_string<char> const path = resolveFile(name);
    FileFonts* file = nullptr;
    if (path.empty()) {
        logOnce_(name, "not found");
    } else {
        file = &files_[path];
        file->path = path;
    }
    names_.emplace(name, file);
    return file;
}

void rastFontManager::logOnce_(orm::basic_string<char> const& name, char const* what) {
    if (logged_.insert(name).second)
        orm_vlogf("VUREL", 16, "Font \"%s\" %s", name.c_str(), what);
}

void rastFontManager::releaseUnusedFonts() {
    // A font only this cache holds has no text left to draw.
    for (auto& [path, file] : files_)
        std::erase_if(file.fonts, [](Sized const& s) { return s.font && s.font.use_count() == 1; });
}

int rastFontManager::getFontCount() const {
    int count = 0;
    for (auto const& [path, file] : files_)
        count += static_cast<int>(
            std::count_if(file.fonts.begin(), file.fonts.end(), [](Sized const& s) { return s.font != nullptr; }));
    return count;
}

void rastFontManager::doRedraw() {
    for (auto& [name, font] : fixedFonts_)
        font->flushAtlas();
    for (auto& [path, file] : files_)
        for (Sized& s : file.fonts)
            if (s.font)
                s.font->flushAtlas();
}
