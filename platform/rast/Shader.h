#pragma once

#include "Export.h"
#include "rast/Types.h"

class rastTexture;
class rastTextureArray;

// State of the quad shader: colour, per-cell colours, texture, sampler,
// position shift, gamma and intensity, and an optional effect program. The
// quad lists read it when they draw.
class VUREL_EXPORT rastShader {
public:
    void turnOnDrawQuads() { drawQuads_ = true; }
    void turnOffDrawQuads() { drawQuads_ = false; }
    bool getDrawQuads() const { return drawQuads_; }

    void setColor(osg::Vec4f const& color) { color_ = color; }
    osg::Vec4f const& getColor() const { return color_; }
    // Per-cell colours for the next background draw: `count` RGBA quadruples.
    // The pointer is kept, not copied; it must live until that draw.
    void setColors(float const* rgba, int count) {
        colors_ = rgba;
        colorCount_ = count;
    }
    float const* getColors() const { return colors_; }
    int getColorCount() const { return colorCount_; }

    void setTexture(rastTexture const* texture) { texture_ = texture; }
    rastTexture const* getTexture() const { return texture_; }
    void setTextureArray(rastTextureArray const* array) { textureArray_ = array; }
    rastTextureArray const* getTextureArray() const { return textureArray_; }

    void setUserTextureFiltering(int sampler) { userSampler_ = sampler; }
    void resetTextureSampler() { userSampler_ = -1; }
    int getUserTextureFiltering() const { return userSampler_; }

    // The shift is relative: shifting by (1, 2) then (-1, -2) returns to the start.
    void shiftPosition(float x, float y) {
        shift_.x += x;
        shift_.y += y;
    }
    void resetPositionShift() { shift_ = {}; }
    osg::Vec2f const& getPositionShift() const { return shift_; }

    void setGamma(float gamma) { gamma_ = gamma; }
    float getGamma() const { return gamma_; }
    void setIntensity(float intensity) { intensity_ = intensity; }
    float getIntensity() const { return intensity_; }

    void setProgram(rastProgramId program) { program_ = program; }
    rastProgramId getProgram() const { return program_; }

private:
    bool drawQuads_ = true;
    osg::Vec4f color_{1, 1, 1, 1};
    float const* colors_ = nullptr;
    int colorCount_ = 0;
    rastTexture const* texture_ = nullptr;
    rastTextureArray const* textureArray_ = nullptr;
    int userSampler_ = -1;
    osg::Vec2f shift_;
    float gamma_ = 1.0f;
    float intensity_ = 1.0f;
    rastProgramId program_ = 0;
};
