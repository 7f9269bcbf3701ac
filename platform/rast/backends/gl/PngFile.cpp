#include "rast/backends/gl/PngFile.h"

#include <png.h>

#include <cstring>

#include "orm/Log.h"

bool rastWritePng(char const* path, uint8_t const* rgba, int width, int height) {
    if (!path || !rgba || width <= 0 || height <= 0) {
        orm_vlogf("VUREL", 16, "rastWritePng: nothing to write to %s", path ? path : "(null)");
        return false;
    }
    png_image image;
    std::memset(&image, 0, sizeof image);
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(width);
    image.height = static_cast<png_uint_32>(height);
    image.format = PNG_FORMAT_RGBA;
    if (!png_image_write_to_file(&image, path, 0, rgba, 0, nullptr)) {
        orm_vlogf("VUREL", 16, "rastWritePng: cannot write %s: %s", path, image.message);
        return false;
    }
    return true;
}

bool rastReadPng(char const* path, std::vector<uint8_t>& rgba, int& width, int& height) {
    width = height = 0;
    rgba.clear();
    png_image image;
    std::memset(&image, 0, sizeof image);
    image.version = PNG_IMAGE_VERSION;
    if (!path || !png_image_begin_read_from_file(&image, path)) {
        orm_vlogf("VUREL", 16, "rastReadPng: cannot read %s: %s", path ? path : "(null)", image.message);
        return false;
    }
    image.format = PNG_FORMAT_RGBA;
    std::vector<uint8_t> pixels(PNG_IMAGE_SIZE(image));
    if (!png_image_finish_read(&image, nullptr, pixels.data(), 0, nullptr)) {
        orm_vlogf("VUREL", 16, "rastReadPng: cannot decode %s: %s", path, image.message);
        png_image_free(&image);
        return false;
    }
    width = static_cast<int>(image.width);
    height = static_cast<int>(image.height);
    rgba = std::move(pixels);
    return true;
}
