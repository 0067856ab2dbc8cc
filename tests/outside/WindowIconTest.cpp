// SPDX-License-Identifier: MIT
// The icon by which window managers and task bars show each window.
#include "tests/outside/WindowDesk.h"
#include "tests/support/WaitUntil.h"
#include "tests/support/WindowIcon.h"

#include <QImage>

#include <vector>

#include <gtest/gtest.h>

namespace sayloft::test {
namespace {

class WindowIcons : public testing::Test {
protected:
    /// No theme of the desktop has a microphone.
    WindowIcons() {
        m_desk.setVariable(QStringLiteral("XDG_DATA_DIRS"), QStringLiteral("/nonexistent"));
    }

    /// It is looked up after the start, so it may come after the window; until then it is the
    /// window manager's own.
    [[nodiscard]] static bool isOurs(const QString& window) {
        const QImage ours = QImage(QStringLiteral(SAYLOFT_BUNDLE_DIR "/Contents/Resources/images/"
                                                                     "MenuIconActive.png"))
                                .convertToFormat(QImage::Format_ARGB32_Premultiplied)
                                .convertToFormat(QImage::Format_ARGB32);
        return !ours.isNull() &&
               waitUntil([&] { return iconsOf(window) == std::vector<QImage>{ours}; });
    }

    WindowDesk m_desk;
};

TEST_F(WindowIcons, areOursOnTheSettingsAndTheDictionary) {
    m_desk.startSayloft();
    m_desk.openDictionary();
    EXPECT_TRUE(isOurs(WindowDesk::settings));
    EXPECT_TRUE(isOurs(WindowDesk::dictionary));
}

TEST_F(WindowIcons, areOursOnTheWindowOfAFirstRunThatOpensAtTheStart) {
    m_desk.startSayloft({});
    static_cast<void>(m_desk.windows().window(WindowDesk::onboarding));
    EXPECT_TRUE(isOurs(WindowDesk::onboarding));
}

}  // namespace
}  // namespace sayloft::test
