#pragma once

#include <functional>
#include <memory>

#include "Export.h"
#include "InputTypes.h"
#include "orm/Allocator.h"
#include "osg/Vec2i.h"

namespace gui {

class GuiMessagePool;
class WindowBase;

// One queued piece of input, or a deferred action. `process` delivers it
// through gui::GUI; `release` hands it back to its kind's pool.
class VUREL_EXPORT Message {
public:
    virtual void process() = 0;
    virtual void release(GuiMessagePool& pool) = 0;
    virtual ~Message() = default;
};

class VUREL_EXPORT MessageKey : public Message {
public:
    MessageKey(KeyboardButton button, int value) : button_(button), value_(value) {}
    void set(KeyboardButton button, int value) {
        button_ = button;
        value_ = value;
    }
    KeyboardButton getButton() const { return button_; }
    int getValue() const { return value_; }

protected:
    KeyboardButton button_;
    int value_;
};

class VUREL_EXPORT MessageChar : public MessageKey {
public:
    using MessageKey::MessageKey;
    void process() override;
    void release(GuiMessagePool& pool) override;
};

class VUREL_EXPORT MessageKeyDown : public MessageKey {
public:
    using MessageKey::MessageKey;
    void process() override;
    void release(GuiMessagePool& pool) override;
};

class VUREL_EXPORT MessageKeyUp : public MessageKey {
public:
    using MessageKey::MessageKey;
    void process() override;
    void release(GuiMessagePool& pool) override;
};

class VUREL_EXPORT MessageKillWindow : public Message {
public:
    explicit MessageKillWindow(WindowBase* window) : window_(window) {}
    void set(WindowBase* window) { window_ = window; }
    void process() override;
    void release(GuiMessagePool& pool) override;

private:
    WindowBase* window_;
};

class VUREL_EXPORT MessageMouseButton : public Message {
public:
    explicit MessageMouseButton(MouseButton button) : button_(button) {}
    void set(MouseButton button) { button_ = button; }
    MouseButton getButton() const { return button_; }

protected:
    MouseButton button_;
};

class VUREL_EXPORT MessageMouseDown : public MessageMouseButton {
public:
    using MessageMouseButton::MessageMouseButton;
    void process() override;
    void release(GuiMessagePool& pool) override;
};

class VUREL_EXPORT MessageMouseUp : public MessageMouseButton {
public:
    using MessageMouseButton::MessageMouseButton;
    void process() override;
    void release(GuiMessagePool& pool) override;
};

class VUREL_EXPORT MessageMouseMove : public Message {
public:
    explicit MessageMouseMove(osg::Vec2i const& position) : position_(position) {}
    void set(osg::Vec2i const& position) { position_ = position; }
    void process() override;
    void release(GuiMessagePool& pool) override;

private:
    osg::Vec2i position_;
};

class VUREL_EXPORT MessageMouseWheel : public Message {
public:
    explicit MessageMouseWheel(int delta) : delta_(delta) {}
    void set(int delta) { delta_ = delta; }
    void process() override;
    void release(GuiMessagePool& pool) override;

private:
    int delta_;
};

class VUREL_EXPORT MessageRawKeyInput : public Message {
public:
    explicit MessageRawKeyInput(RawKeyInfo const& info) : info_(info) {}
    void set(RawKeyInfo const& info) { info_ = info; }
    void process() override;
    void release(GuiMessagePool& pool) override;

private:
    RawKeyInfo info_;
};

class VUREL_EXPORT MessageRawMouseInput : public Message {
public:
    explicit MessageRawMouseInput(RawMouseInfo const& info) : info_(info) {}
    void set(RawMouseInfo const& info) { info_ = info; }
    void process() override;
    void release(GuiMessagePool& pool) override;

private:
    RawMouseInfo info_;
};

class VUREL_EXPORT MessageUserCallback : public Message {
public:
    using Function = std::shared_ptr<std::function<void()>>;
    explicit MessageUserCallback(Function f) : function_(std::move(f)) {}
    void set(Function f) { function_ = std::move(f); }
    // An empty function throws std::bad_function_call, as calling one does.
    void process() override;
    void release(GuiMessagePool& pool) override;

private:
    Function function_;
};

// Message objects by kind. Entries are taken by the first free one and given
// back after delivery; the lists only grow, to the most messages of a kind
// that were ever queued at once, so steady input allocates nothing.
class VUREL_EXPORT GuiMessagePool {
public:
    struct Entry {
        Message* message = nullptr;
        bool inUse = false;
    };
    using List = orm::vector<Entry>;

    GuiMessagePool() = default;
    ~GuiMessagePool();
    GuiMessagePool(GuiMessagePool const&) = delete;
    GuiMessagePool& operator=(GuiMessagePool const&) = delete;

    MessageChar* takeChar(KeyboardButton button, int value) { return take_<MessageChar>(chars, button, value); }
    MessageKeyDown* takeKeyDown(KeyboardButton button, int value) {
        return take_<MessageKeyDown>(keyDowns, button, value);
    }
    MessageKeyUp* takeKeyUp(KeyboardButton button, int value) { return take_<MessageKeyUp>(keyUps, button, value); }
    MessageKillWindow* takeKillWindow(WindowBase* window) { return take_<MessageKillWindow>(killWindows, window); }
    MessageMouseDown* takeMouseDown(MouseButton button) { return take_<MessageMouseDown>(mouseDowns, button); }
    MessageMouseUp* takeMouseUp(MouseButton button) { return take_<MessageMouseUp>(mouseUps, button); }
    MessageMouseMove* takeMouseMove(osg::Vec2i const& position) {
        return take_<MessageMouseMove>(mouseMoves, position);
    }
    MessageMouseWheel* takeMouseWheel(int delta) { return take_<MessageMouseWheel>(mouseWheels, delta); }
    MessageRawKeyInput* takeRawKeyInput(RawKeyInfo const& info) {
        return take_<MessageRawKeyInput>(rawKeyInputs, info);
    }
    MessageRawMouseInput* takeRawMouseInput(RawMouseInfo const& info) {
        return take_<MessageRawMouseInput>(rawMouseInputs, info);
    }
    MessageUserCallback* takeUserCallback(MessageUserCallback::Function f) {
        return take_<MessageUserCallback>(userCallbacks, std::move(f));
    }

    // Clears the in-use flag of `message` in `list`.
    static void give(List& list, Message const* message);

    // Pooled objects of each kind, in this order.
    List chars, keyDowns, keyUps, killWindows, mouseDowns, mouseUps, mouseMoves, mouseWheels, rawKeyInputs,
        rawMouseInputs, userCallbacks;

private:
    template <class T, class... Args>
    T* take_(List& list, Args&&... payload) {
        for (Entry& e : list) {
            if (e.inUse)
                continue;
            e.inUse = true;
            if (e.message) {
                auto* m = static_cast<T*>(e.message);
                m->set(std::forward<Args>(payload)...);
                return m;
            }
            T* m = new T(std::forward<Args>(payload)...);
            e.message = m;
            return m;
        }
        T* m = new T(std::forward<Args>(payload)...);
        list.push_back(Entry{m, true});
        return m;
    }
};

}  // namespace gui
