#include "platform/windows.h"

#include "platform/choosers.h"
#include "platform/event_pump.h"
#include "platform/headless/desktop.h"

#include <gtest/gtest.h>
#include <string>

using namespace MVR::Platform;

namespace {

std::string calls;

std::intptr_t procedure(WindowHandle window, std::uint32_t message, std::intptr_t,
                        std::intptr_t parameter) {
    switch (message) {
    case kMessageCreate:
        calls += "create ";
        setUserData(window, parameter);
        return parameter == -5 ? -1 : 0;
    case kMessagePaint:
        calls += "paint" + std::to_string(getUserData(window)) + " ";
        break;
    case kMessageDestroy:
        calls += "destroy" + std::to_string(getUserData(window)) + " ";
        EXPECT_FALSE(destroyWindow(window));
        break;
    }
    return 0;
}

std::string takeCalls() {
    return std::exchange(calls, "");
}

class Windows : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(registerWindowClass("Clock", procedure)); }
    void TearDown() override {
        releasePlatform();
        calls.clear();
    }
    static WindowHandle make(std::intptr_t parameter, WindowHandle parent = 0) {
        return createWindow(
            {"Clock", "", kStylePopup | kStyleVisible, 0, 10, 20, 64, 64, parent, parameter});
    }
};

TEST_F(Windows, LiveFromCreateToDestroyWithTheirChildren) {
    EXPECT_FALSE(registerWindowClass("Clock", procedure));
    EXPECT_EQ(createWindow({.windowClass = "Other"}), 0);
    const WindowHandle parent = make(1);
    const WindowHandle child = make(2, parent);
    const WindowHandle foreign = make(3, 987654);
    EXPECT_EQ(make(-5), 0);
    EXPECT_EQ(takeCalls(), "create create create create destroy-5 ");
    Rectangle place;
    EXPECT_TRUE(getWindowRectangle(child, place));
    EXPECT_EQ(place.right, 74);
    EXPECT_TRUE(getWindowRectangle(0, place));
    EXPECT_EQ(place.bottom, Headless::kDesktopHeight);
    EXPECT_FALSE(getWindowRectangle(987654, place));
    EXPECT_TRUE(setWindowText(child, "3"));
    EXPECT_EQ(getWindowText(child), "3");

    EXPECT_FALSE(unregisterWindowClass("Clock"));
    EXPECT_TRUE(destroyWindow(parent));
    EXPECT_EQ(takeCalls(), "destroy1 destroy2 ");
    EXPECT_FALSE(isWindow(child));
    EXPECT_FALSE(destroyWindow(child));
    EXPECT_EQ(Headless::windows(), std::vector<WindowHandle>{foreign});
    EXPECT_TRUE(destroyWindow(foreign));
    EXPECT_TRUE(unregisterWindowClass("Clock"));
}

TEST_F(Windows, RequestsToRedrawAreGatheredUntilTheWindowCanBeSeen) {
    const WindowHandle window = make(1);
    EXPECT_EQ(runDueEvents(), -1);
    EXPECT_EQ(takeCalls(), "create paint1 ");
    requestRedraw(window);
    requestRedraw(window);
    runDueEvents();
    runDueEvents();
    EXPECT_EQ(takeCalls(), "paint1 ");
    showWindow(window, false);
    requestRedraw(window);
    EXPECT_EQ(runDueEvents(), -1);
    showWindow(window, true);
    Headless::setIconic(window, true);
    EXPECT_TRUE(isIconic(window));
    runDueEvents();
    EXPECT_EQ(takeCalls(), "");
    Headless::setIconic(window, false);
    runDueEvents();
    EXPECT_EQ(takeCalls(), "paint1 ");
}

TEST_F(Windows, MessageBoxesAreAnsweredByTheScriptElseByTheirDefaultButton) {
    EXPECT_EQ(messageBox(0, "text", "title", kButtonsOk | kIconError), kAnswerOk);
    EXPECT_EQ(messageBox(0, "a", "", kButtonsYesNoCancel | kDefaultThird), kAnswerCancel);
    EXPECT_EQ(messageBox(0, "b", "", kButtonsYesNo | kDefaultThird), kAnswerYes);
    EXPECT_EQ(messageBox(0, "c", "", 0xF), 0);
    Headless::scriptMessageBoxAnswer(kAnswerNo);
    Headless::scriptMessageBoxAnswer(kAnswerNo);
    EXPECT_EQ(messageBox(0, "d", "", kButtonsYesNo), kAnswerNo);
    EXPECT_EQ(messageBox(0, "e", "", kButtonsOkCancel | kDefaultSecond), kAnswerCancel);
    const auto shown = Headless::messageBoxes();
    ASSERT_EQ(shown.size(), 5u);
    EXPECT_EQ(shown[0].text + shown[0].title, "texttitle");
    EXPECT_EQ(shown[3].answer, kAnswerNo);
    for (std::size_t i = 0; i < 2 * Headless::kMessageBoxesKept; ++i)
        messageBox(0, "many", "", kButtonsOk);
    EXPECT_EQ(Headless::messageBoxes().size(), Headless::kMessageBoxesKept);
}

} // namespace
