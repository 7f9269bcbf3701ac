#pragma once

#include "Export.h"
#include "orm/Allocator.h"
#include "rast/Types.h"

// Vertex and index buffers drawn as lines or triangles. Made by
// rastRenderer::createGeometry, owned by the caller.
class VUREL_EXPORT rastGeometry {
public:
    enum PrimitiveType : int32_t {
        Points = 0,
        Lines = 1,  // a line list: `count` is the number of lines
        LineStrip = 2,
        Triangles = 3,
        TriangleStrip = 4,
    };

    ~rastGeometry();
    rastGeometry(rastGeometry const&) = delete;
    rastGeometry& operator=(rastGeometry const&) = delete;

    void update(orm::vector<rastVertex> const& vertices, orm::vector<int> const& indices);
    rastGeometryId getId() const { return id_; }
    int getVertexCount() const { return vertexCount_; }
    int getIndexCount() const { return indexCount_; }

private:
    friend class rastRenderer;
    rastGeometry(orm::vector<rastVertex> const& vertices, orm::vector<int> const& indices);

    rastGeometryId id_ = 0;
    int vertexCount_ = 0;
    int indexCount_ = 0;
};
