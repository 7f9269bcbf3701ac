#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "AllocationCounter.h"
#include "CallbackTypes.h"
#include "KeyboardButtons.h"

namespace {

gui::KeyboardButton key(int code) { return static_cast<gui::KeyboardButton>(code); }

class KeyNamesTest : public ::testing::Test {
protected:
    void SetUp() override { gui::registerKeyboardButtonsNames(); }
};

}  // namespace

TEST_F(KeyNamesTest, NamesAndCodesBothWays) {
    EXPECT_EQ(gui::getKeyboardButtonByName("a"), 97);
    EXPECT_STREQ(gui::getKeyboardButtonName(key(97)), "a");
    EXPECT_EQ(gui::getKeyboardButtonByName("A"), 0);
    EXPECT_EQ(gui::getKeyboardButtonByName("f15"), 296);
    EXPECT_EQ(gui::getKeyboardButtonByName("f16"), 0);
    EXPECT_EQ(gui::getKeyboardButtonByName("%"), 0);
    EXPECT_EQ(gui::getKeyboardButtonByName("="), 61);
    EXPECT_EQ(gui::getKeyboardButtonByName("equals"), 272);
    EXPECT_EQ(gui::getKeyboardButtonByName("[+]"), 270);
    EXPECT_EQ(gui::getKeyboardButtonByName("+"), 43);
    EXPECT_EQ(gui::getKeyboardButtonByName("[0]"), 256);
    EXPECT_EQ(gui::getKeyboardButtonByName("0"), 48);
    EXPECT_EQ(gui::getKeyboardButtonByName("`"), 96);
    EXPECT_EQ(gui::getKeyboardButtonByName("@"), 64);
    EXPECT_EQ(gui::getKeyboardButtonByName("page down"), gui::KeyPageDown);
    EXPECT_EQ(gui::getKeyboardButtonByName("print screen"), gui::KeyPrintScreen);
    EXPECT_EQ(gui::getKeyboardButtonByName("left ctrl"), gui::KeyLeftCtrl);
    EXPECT_EQ(gui::getKeyboardButtonByName("Escape"), 0);
    EXPECT_EQ(gui::getKeyboardButtonByName(""), 0);
    EXPECT_STREQ(gui::getKeyboardButtonName(key(160)), "world 0");
    EXPECT_STREQ(gui::getKeyboardButtonName(key(255)), "world 95");
    EXPECT_STREQ(gui::getKeyboardButtonName(key(322)), "undo");
    EXPECT_STREQ(gui::getKeyboardButtonName(key(0)), "");
    EXPECT_STREQ(gui::getKeyboardButtonName(key(37)), "");
    EXPECT_STREQ(gui::getKeyboardButtonName(key(-5)), "");
}

TEST_F(KeyNamesTest, EveryRowRoundTripsAndRegisteringAgainChangesNothing) {
    char const* const nameOfA = gui::getKeyboardButtonName(key(97));
    gui::registerKeyboardButtonsNames();
    EXPECT_EQ(gui::getKeyboardButtonName(key(97)), nameOfA);  // names handed out stay valid

    int named = 0;
    for (int code = 0; code <= 400; ++code) {
        char const* name = gui::getKeyboardButtonName(key(code));
        ASSERT_NE(name, nullptr);
        if (*name == '\0')
            continue;
        ++named;
        EXPECT_EQ(gui::getKeyboardButtonByName(name), code) << name;
    }
    EXPECT_EQ(named, 231);
}

TEST_F(KeyNamesTest, LookupsDoNotAllocate) {
    orm::string const name("page up");
    vurel_test::AllocationCounter counter;
    EXPECT_STREQ(gui::getKeyboardButtonName(key(280)), "page up");
    EXPECT_EQ(gui::getKeyboardButtonByName(name), 280);
    EXPECT_EQ(counter.count(), 0u);
}

TEST(CallbackTypesTest, FixedKindsByName) {
    EXPECT_EQ(gui::getMouseCallbackType("move"), gui::MouseCallbackMove);
    EXPECT_EQ(gui::getMouseCallbackType("double down"), 3);
    EXPECT_EQ(gui::getMouseCallbackType("leave"), 7);
    EXPECT_EQ(gui::getMouseCallbackType("down"), 2);
    EXPECT_EQ(gui::getKeyboardCallbackType("down"), 1);
    EXPECT_EQ(gui::getMouseCallbackType("up"), 4);
    EXPECT_EQ(gui::getKeyboardCallbackType("up"), 3);
    EXPECT_EQ(gui::getKeyboardCallbackType("move"), 0);
    EXPECT_EQ(gui::getMouseCallbackType("char"), 0);
    EXPECT_EQ(gui::getMouseCallbackType("Move"), 0);
    EXPECT_EQ(gui::getGridRowCallbackType("grid row selected"), 1);
    EXPECT_EQ(gui::getGridRowCallbackType("grid row hovered"), 2);
    EXPECT_EQ(gui::getGridRowCallbackType("grid row"), 0);
}

TEST(CallbackTypesTest, WidgetKindsAreSequentialAndStable) {
    // Other tests may have registered kinds already; only the order of new
    // texts is fixed.
    int const first = gui::getWidgetCallbackType("key names test kind one");
    int const second = gui::getWidgetCallbackType("key names test kind two");
    EXPECT_GE(first, 0);
    EXPECT_EQ(second, first + 1);
    EXPECT_EQ(gui::getWidgetCallbackType("key names test kind one"), first);
    EXPECT_EQ(gui::getWidgetCallbackType("key names test kind two"), second);
    EXPECT_EQ(gui::getWidgetCallbackType("key names test kind three"), second + 1);
    EXPECT_NE(gui::getWidgetCallbackType("KEY NAMES TEST KIND ONE"), first);
}
