#include "rast/Geometry.h"

#include "rast/Renderer.h"

rastGeometry::rastGeometry(orm::vector<rastVertex> const& vertices, orm::vector<int> const& indices)
    : vertexCount_(static_cast<int>(vertices.size())), indexCount_(static_cast<int>(indices.size())) {
    id_ = rastRenderer::get()->getBackend().createGeometry(vertices.data(), vertexCount_, indices.data(),
                                                           indexCount_);
}

rastGeometry::~rastGeometry() {
    if (rastRenderer* r = rastRenderer::get())
        r->getBackend().destroyGeometry(id_);
}

void rastGeometry::update(orm::vector<rastVertex> const& vertices, orm::vector<int> const& indices) {
    vertexCount_ = static_cast<int>(vertices.size());
    indexCount_ = static_cast<int>(indices.size());
    rastRenderer::get()->getBackend().updateGeometry(id_, vertices.data(), vertexCount_, indices.data(),
                                                     indexCount_);
}
