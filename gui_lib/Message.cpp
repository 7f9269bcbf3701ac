#include "Message.h"

#include "GUI.h"

namespace gui {

namespace {
GUI& gui() { return *GUI::get(); }
}  // namespace

void MessageChar::process() { gui().onCharMessage(button_, value_); }
void MessageChar::release(GuiMessagePool& pool) { GuiMessagePool::give(pool.chars, this); }

void MessageKeyDown::process() {
    if (!gui().processKeyboardCallbacks(button_, value_, true))
        gui().onKeyDownMessage(button_, value_);
}
void MessageKeyDown::release(GuiMessagePool& pool) { GuiMessagePool::give(pool.keyDowns, this); }

void MessageKeyUp::process() {
    if (!gui().processKeyboardCallbacks(button_, value_, false))
        gui().onKeyUpMessage(button_, value_);
}
void MessageKeyUp::release(GuiMessagePool& pool) { GuiMessagePool::give(pool.keyUps, this); }

void MessageKillWindow::process() { gui().deleteWindow_(window_); }
void MessageKillWindow::release(GuiMessagePool& pool) {
    window_ = nullptr;
    GuiMessagePool::give(pool.killWindows, this);
}

void MessageMouseDown::process() { gui().onMouseDownMessage(button_); }
void MessageMouseDown::release(GuiMessagePool& pool) { GuiMessagePool::give(pool.mouseDowns, this); }

void MessageMouseUp::process() { gui().onMouseUpMessage(button_); }
void MessageMouseUp::release(GuiMessagePool& pool) { GuiMessagePool::give(pool.mouseUps, this); }

void MessageMouseMove::process() { gui().onMouseMoveMessage(position_); }
void MessageMouseMove::release(GuiMessagePool& pool) { GuiMessagePool::give(pool.mouseMoves, this); }

void MessageMouseWheel::process() { gui().onMouseWheelMessage(delta_); }
void MessageMouseWheel::release(GuiMessagePool& pool) { GuiMessagePool::give(pool.mouseWheels, this); }

void MessageRawKeyInput::process() { gui().onRawKeyInputMessage(info_); }
void MessageRawKeyInput::release(GuiMessagePool& pool) { GuiMessagePool::give(pool.rawKeyInputs, this); }

void MessageRawMouseInput::process() { gui().onRawMouseInputMessage(info_); }
void MessageRawMouseInput::release(GuiMessagePool& pool) { GuiMessagePool::give(pool.rawMouseInputs, this); }

void MessageUserCallback::process() {
    if (!function_)
        throw std::bad_function_call();
    (*function_)();
}
void MessageUserCallback::release(GuiMessagePool& pool) {
    // Drop the reference now, so the pool does not keep the caller's function alive.
    function_.reset();
    GuiMessagePool::give(pool.userCallbacks, this);
}

void GuiMessagePool::give(List& list, Message const* message) {
    for (Entry& e : list)
        if (e.message == message) {
            e.inUse = false;
            return;
        }
}

GuiMessagePool::~GuiMessagePool() {
    for (List* list : {&chars, &keyDowns, &keyUps, &killWindows, &mouseDowns, &mouseUps, &mouseMoves, &mouseWheels,
                       &rawKeyInputs, &rawMouseInputs, &userCallbacks})
        for (Entry& e : *list)
            delete e.message;
}

}  // namespace gui
