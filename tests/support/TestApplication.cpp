#include "TestApplication.h"

namespace vurel_test {

TestApplication::TestApplication() {
    instance_ = this;
    size_ = osg::Vec2i(800, 600);
}

void TestApplication::setKeyPressed(gui::KeyboardButton button, bool pressed) {
    if (pressed)
        pressed_.insert(button);
    else
        pressed_.erase(button);
}

}  // namespace vurel_test
