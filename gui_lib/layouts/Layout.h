#pragma once

#include "Export.h"
#include "orm/Allocator.h"
#include "osg/Vec2i.h"

namespace gui {

class Container;
class LayoutHandler;
class WidgetHandler;

// A rule that places the children of one container inside its client
// rectangle and answers what size they need. The container owns it through
// a LayoutHandler, runs it when resized, and once a frame when children
// changed. The base places nothing.
class VUREL_EXPORT Layout {
public:
    Layout();

    // Calls destroy_, which deletes: the public way to kill a layout.
    static void destroy(Layout* layout);
    LayoutHandler* handler() const { return handler_; }

    virtual Layout* clone() const { return nullptr; }
    virtual char const* getType() const { return ""; }
    virtual void setContainer(WidgetHandler* container) { container_ = container; }
    virtual WidgetHandler* getContainer() const { return container_; }
    virtual osg::Vec2i getMinSize() const { return {}; }
    virtual osg::Vec2i getMaxSize() const { return {}; }
    virtual osg::Vec2i getPrefSize() const { return {}; }
    virtual osg::Vec2i calcMaxSize() const;
    virtual void updateSize() {}
    virtual ~Layout();

protected:
    virtual void destroy_() { delete this; }
    virtual void updatePrefSizes_();

    // The container as a Container, null when it is gone.
    Container* getContainerObject_() const;

    LayoutHandler* handler_;
    WidgetHandler* container_ = nullptr;
    orm::vector<osg::Vec2i> prefSizes_;
};

}  // namespace gui
