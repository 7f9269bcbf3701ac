#include "WidgetHandler.h"

#include <deque>

#include "Widget.h"
#include "layouts/Layout.h"

namespace gui {

namespace {

// A deque keeps the address of every record while it grows.
template <class Record>
struct Records {
    std::deque<Record> records;
    uint64_t nextSerial = 1;
};

Records<WidgetHandler>& widgetRecords() {
    static Records<WidgetHandler> r;
    return r;
}

Records<LayoutHandler>& layoutRecords() {
    static Records<LayoutHandler> r;
    return r;
}

}  // namespace

WidgetHandler* WidgetHandler::create(Widget* widget) {
    auto& r = widgetRecords();
    WidgetHandler& h = r.records.emplace_back();
    h.serial_ = r.nextSerial++;
    h.widget_ = widget;
    return &h;
}

void WidgetHandler::release(WidgetHandler* handle) {
    if (handle)
        handle->widget_ = nullptr;
}

size_t WidgetHandler::getRecordCount() { return widgetRecords().records.size(); }

size_t WidgetHandler::getAliveCount() {
    size_t alive = 0;
    for (WidgetHandler const& h : widgetRecords().records)
        if (h.widget_)
            ++alive;
    return alive;
}

void WidgetHandler::shutdown() {
    auto& r = widgetRecords();
    // Indexing, because a dying parent may create nothing but does clear the
    // records of the children it takes along.
    for (size_t i = 0; i < r.records.size(); ++i)
        if (Widget* w = r.records[i].widget_)
            delete w;
    r.records.clear();
    r.records.shrink_to_fit();
}

LayoutHandler* LayoutHandler::create(Layout* layout) {
    auto& r = layoutRecords();
    LayoutHandler& h = r.records.emplace_back();
    h.serial_ = r.nextSerial++;
    h.layout_ = layout;
    return &h;
}

void LayoutHandler::release(LayoutHandler* handle) {
    if (handle)
        handle->layout_ = nullptr;
}

void LayoutHandler::shutdown() {
    auto& r = layoutRecords();
    for (size_t i = 0; i < r.records.size(); ++i)
        if (Layout* l = r.records[i].layout_)
            delete l;
    r.records.clear();
    r.records.shrink_to_fit();
}

}  // namespace gui
