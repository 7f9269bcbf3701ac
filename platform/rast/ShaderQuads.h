#pragma once

#include <array>

#include "Export.h"
#include "orm/Allocator.h"
#include "rast/Types.h"

class rastShader;
class rastTexture;

// Textured quads in batches, one texture a batch. Lists are cleared, not
// freed, so rebuilding the same picture allocates nothing.
class VUREL_EXPORT rastShaderQuads {
public:
    struct Batch {
        rastTexture const* texture = nullptr;
        int layer = -1;  // texture array layer, -1 for a plain texture
        int first = 0;
        int count = 0;
    };

    void reset();
    // Opens a batch drawn with `texture`; `layer` selects an array layer (-1 none).
    int beginBatch(rastTexture const* texture, int layer);
    void addBatchQuad(float x, float y, float w, float h);
    // Texture coordinates of the quad added last.
    void addBatchTexCoords(float uMin, float vMin, float uMax, float vMax);
    void endBatch();

    void draw(rastShader const& shader) const;
    void drawBatch(rastShader const& shader, int index) const;

    int getBatchCount() const { return static_cast<int>(batches_.size()); }
    Batch const& getBatch(int index) const { return batches_[static_cast<size_t>(index)]; }
    int getQuadCount() const { return static_cast<int>(quads_.size()); }
    rastQuad const& getQuad(int index) const { return quads_[static_cast<size_t>(index)]; }

private:
    orm::vector<rastQuad> quads_;
    orm::vector<Batch> batches_;
};

// Up to nine coloured cells over one texture: the quads of a background.
// Fixed storage, so copies (into recorded commands) never allocate.
class VUREL_EXPORT rastShaderBkgQuads {
public:
    using BkgQuad = rastQuad;
    static constexpr int maxQuads = 9;

    void setTexture(rastTexture const* texture) { texture_ = texture; }
    rastTexture const* getTexture() const { return texture_; }
    void clear() { count_ = 0; }
    // Ignored beyond nine cells.
    void addQuad(BkgQuad const& quad) {
        if (count_ < maxQuads)
            quads_[static_cast<size_t>(count_++)] = quad;
    }
    int getCount() const { return count_; }
    BkgQuad const& getQuad(int index) const { return quads_[static_cast<size_t>(index)]; }

    // Draws with the shader's per-cell colours (setColors); cells without a colour are white.
    void draw(rastShader const& shader) const;

private:
    rastTexture const* texture_ = nullptr;
    int count_ = 0;
    std::array<BkgQuad, maxQuads> quads_{};
};
