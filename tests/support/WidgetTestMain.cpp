// SPDX-License-Identifier: MIT
// The main function of tests with widgets, which are on a real screen.
#include "tests/support/WidgetTest.h"
#include "tests/support/WindowManager.h"
#include "tests/support/XServer.h"

#include <QApplication>

#include <memory>

#include <gtest/gtest.h>

namespace sayloft::test {
namespace {

std::unique_ptr<const XServer> theDisplay;

int runTests(int argc, char** argv) {
    const WindowManager windowManager(*theDisplay);
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}

// The display ends after the application that is on it.
int runTestsOnADisplay(int argc, char** argv) {
    // Otherwise libdbus starts a bus for the accessibility of the first widget, and its child of a
    // fork waits forever for a lock that AddressSanitizer had in another thread.
    if (!qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS"))
        qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:");
    theDisplay = std::make_unique<XServer>();
    const int result = runTests(argc, argv);
    theDisplay.reset();
    return result;
}

}  // namespace

const XServer& widgetTestDisplay() {
    return *theDisplay;
}

}  // namespace sayloft::test

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    if (GTEST_FLAG_GET(list_tests))
        return RUN_ALL_TESTS();
    return sayloft::test::runTestsOnADisplay(argc, argv);
}
