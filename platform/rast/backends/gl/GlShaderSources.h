#pragma once

#include <string>

// The sources of the backend's own programs.
//
// The built-in program comes in three variants by the kind of texture it
// samples. A8 textures need no variant of their own: their swizzle answers
// white with the texel as alpha.
//
// The merged program draws batches that mix model-views, clip rectangles,
// colours and up to rastGlMergedTextureUnits plain 2-D textures: positions
// arrive already moved by the model-view, colour already multiplied by the
// draw state's colour and opacity, and each vertex names its clip rectangle
// (GL window coordinates: x, y, width, height) and its texture slot (-1 for
// none). Its fragment stage is built for the number of texture units a batch
// uses, 0 to rastGlMergedTextureUnits, so that a batch of few textures does
// not pay for choosing among many.
enum class rastGlTextureKind : int { None = 0, Plain = 1, Array = 2 };

constexpr int rastGlMergedTextureUnits = 8;

std::string rastGlBuiltinVertexSource();
std::string rastGlBuiltinFragmentSource(rastGlTextureKind kind);
std::string rastGlMergedVertexSource();
std::string rastGlMergedFragmentSource(int units);
