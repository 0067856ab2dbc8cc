// SPDX-License-Identifier: MIT
// The main function of tests with widgets, which are on a real screen.
#include "tests/support/WidgetTest.h"
#include "tests/support/WindowManager.h"
#include "tests/support/XServer.h"

#include <QApplication>

#include <gtest/gtest.h>

namespace sayloft::test {
namespace {

const XServer* theDisplay = nullptr;

}  // namespace

const XServer& widgetTestDisplay() {
    return *theDisplay;
}

}  // namespace sayloft::test

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    if (GTEST_FLAG_GET(list_tests))
        return RUN_ALL_TESTS();
    const sayloft::test::XServer display;
    sayloft::test::theDisplay = &display;
    const sayloft::test::WindowManager windowManager(display);
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
