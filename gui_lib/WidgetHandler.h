#pragma once

#include <cstddef>
#include <cstdint>

#include "Export.h"

namespace gui {

class Layout;
class Widget;

// A weak handle to a widget. Records are never moved, reused or freed before
// shutdown, so a handle can be asked at any time and answers null once its
// widget is gone. Nothing keeps a raw pointer to a widget it does not own.
class VUREL_EXPORT WidgetHandler {
public:
    static Widget* get(WidgetHandler* handle) { return handle ? handle->widget_ : nullptr; }
    static Widget const* get(WidgetHandler const* handle) { return handle ? handle->widget_ : nullptr; }
    // Deletes every widget still alive, in order of creation, then frees all records.
    static void shutdown();

    uint64_t getSerial() const { return serial_; }
    static size_t getRecordCount();
    // Widgets alive now, for leak checks in tests and tools.
    static size_t getAliveCount();

protected:
    friend class Widget;
    static WidgetHandler* create(Widget* widget);
    static void release(WidgetHandler* handle);

private:
    uint64_t serial_ = 0;
    Widget* widget_ = nullptr;
};

// The same weak handle for layouts.
class VUREL_EXPORT LayoutHandler {
public:
    static Layout* get(LayoutHandler* handle) { return handle ? handle->layout_ : nullptr; }
    static Layout const* get(LayoutHandler const* handle) { return handle ? handle->layout_ : nullptr; }
    static void shutdown();

    uint64_t getSerial() const { return serial_; }

protected:
    friend class Layout;
    static LayoutHandler* create(Layout* layout);
    static void release(LayoutHandler* handle);

private:
    uint64_t serial_ = 0;
    Layout* layout_ = nullptr;
};

}  // namespace gui
