#pragma once

#include <cstdint>

#include "osg/Matrixf.h"
#include "osg/Rect.h"
#include "osg/Vec2f.h"
#include "osg/Vec4f.h"

// Plain data handed between the renderer objects and a backend.

// Backend object names; 0 is "none".
using rastTextureId = uint32_t;
using rastGeometryId = uint32_t;
using rastFrameBufferId = uint32_t;
using rastProgramId = uint32_t;

enum class rastPixelFormat : int32_t {
    RGBA8 = 0,  // four bytes a pixel, not premultiplied
    A8 = 1,     // one byte a pixel: coverage, drawn as white with that alpha
};

// One textured, coloured rectangle in drawing units (scaled by the UI scale
// when drawn). Texture coordinates run 0..1 over the whole texture.
struct rastQuad {
    float x = 0, y = 0, w = 0, h = 0;
    float uMin = 0, vMin = 0, uMax = 0, vMax = 0;
};

// A vertex of a geometry, in target pixels (the UI scale is not applied).
struct rastVertex {
    float x = 0, y = 0, z = 0;
    float u = 0, v = 0;
    osg::Vec4f color;
};

// Everything of the quad shader that a draw depends on. A backend may merge
// consecutive draws whose state compares equal.
struct rastDrawState {
    rastTextureId texture = 0;
    bool textureIsArray = false;
    int32_t sampler = -1;  // -1: the renderer's global filtering
    int32_t technique = 0;
    rastProgramId program = 0;  // an effect program, 0 for the plain shader
    float scale = 1.0f;         // UI scale applied to quad positions
    float opacity = 1.0f;
    float gamma = 1.0f;
    float intensity = 1.0f;
    osg::Vec2f shift;  // added to quad positions before scaling
    osg::Vec4f color{1, 1, 1, 1};  // multiplies every quad's colour

    bool operator==(rastDrawState const&) const = default;
};

// What a backend counted since its frame counters were last reset.
struct rastFrameStats {
    int32_t drawCalls = 0;
    int32_t vertices = 0;
    int32_t quads = 0;
};
