#include "layouts/Layout.h"

#include <algorithm>

#include "Container.h"
#include "WidgetHandler.h"

namespace gui {

Layout::Layout() : handler_(LayoutHandler::create(this)) {}

Layout::~Layout() { LayoutHandler::release(handler_); }

void Layout::destroy(Layout* layout) {
    if (layout)
        layout->destroy_();
}

Container* Layout::getContainerObject_() const { return dynamic_cast<Container*>(WidgetHandler::get(container_)); }

void Layout::updatePrefSizes_() {
    prefSizes_.clear();
    Container const* container = getContainerObject_();
    if (!container)
        return;
    for (int i = 0; i < container->getWidgetCount(); ++i) {
        Widget const* child = container->getWidget(i);
        prefSizes_.push_back(child ? child->getPrefSize() : osg::Vec2i());
    }
}

osg::Vec2i Layout::calcMaxSize() const {
    osg::Vec2i size;
    Container const* container = getContainerObject_();
    if (!container)
        return size;
    for (int i = 0; i < container->getWidgetCount(); ++i)
        if (Widget const* child = container->getWidget(i)) {
            osg::Vec2i const m = child->getMaxSize();
            size.x = std::max(size.x, m.x);
            size.y = std::max(size.y, m.y);
        }
    return size;
}

}  // namespace gui
