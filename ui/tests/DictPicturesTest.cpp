// SPDX-License-Identifier: MIT
#include "app/AppDelegate.h"
#include "tests/support/FakePlatform.h"
#include "tests/support/TempHome.h"
#include "ui/DictWindowController.h"
#include "ui/tests/CutControls.h"
#include "ui/tests/WindowPictures.h"

#include <QScreen>
#include <QTest>
#include <QWidget>

#include <gtest/gtest.h>

namespace sayloft {
namespace {

struct Picture {
    const char* name;
    test::DesktopLook look = {};
    double scale = 1;
    int entries = 3;
};

class DictPictures : public testing::TestWithParam<Picture> {};

TEST_P(DictPictures, cutNoControl) {
    const test::DesktopLooks looks(GetParam().look);
    const test::TempHome home;
    test::FakePlatform fakes;
    AppDelegate delegate(fakes.platform());
    const std::vector<std::vector<QString>> entries{
        {QStringLiteral("solona"), QStringLiteral("Solana")},
        {QStringLiteral("new line"), QStringLiteral("newline")},
        {QStringLiteral("uhm"), QString()}};
    for (int i = 0; i < GetParam().entries; ++i)
        delegate.cfg.replacements.push_back(entries[static_cast<std::size_t>(i) % 3]);
    DictWindowController dict(delegate);
    dict.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dict.window()));
    test::takePicture(dict.window(), QStringLiteral("dictionary-") + QLatin1String(GetParam().name),
                      GetParam().scale);
    EXPECT_EQ(test::cutControls(dict.window()), QStringList());
    EXPECT_TRUE(dict.window().screen()->availableSize().expandedTo(dict.window().size()) ==
                dict.window().screen()->availableSize());
}

INSTANTIATE_TEST_SUITE_P(
    Pictures, DictPictures,
    testing::Values(Picture{"light"}, Picture{"dark", {.isDark = true}}, Picture{"scaled", {}, 2},
                    Picture{"large-font", {.fontScale = 2}}, Picture{"long-list", {}, 1, 40},
                    Picture{"long-list-large-font", {.isDark = true, .fontScale = 2}, 1, 40},
                    Picture{"empty", {}, 1, 0}),
    [](const auto& row) {
        QString name = QString::fromLatin1(row.param.name);
        return name.remove(QLatin1Char('-')).toStdString();
    });

}  // namespace
}  // namespace sayloft
