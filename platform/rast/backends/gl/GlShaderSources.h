#pragma once

#include <string>

// The sources of the backend's own program, built in three variants by the
// kind of texture it samples. A8 textures need no variant of their own: their
// swizzle answers white with the texel as alpha.
enum class rastGlTextureKind : int { None = 0, Plain = 1, Array = 2 };

std::string rastGlBuiltinVertexSource();
std::string rastGlBuiltinFragmentSource(rastGlTextureKind kind);
