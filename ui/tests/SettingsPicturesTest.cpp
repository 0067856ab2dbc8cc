// SPDX-License-Identifier: MIT
#include "tests/support/WaitUntil.h"
#include "ui/tests/CutControls.h"
#include "ui/tests/SettingsFixture.h"
#include "ui/tests/WindowPictures.h"

#include <QMessageBox>
#include <QScreen>
#include <QTest>

#include <string>
#include <tuple>

namespace sayloft {
namespace {

enum class State { plain, manyChords, notGranted, twoModels, downloading, capturing, asking };

struct Named {
    const char* name;
    State state;
};

struct NamedLook {
    const char* name;
    test::DesktopLook look;
};

class SettingsPictures : public SettingsFixture,
                         public testing::WithParamInterface<std::tuple<NamedLook, Named>> {
protected:
    [[nodiscard]] static State state() { return std::get<Named>(GetParam()).state; }

    [[nodiscard]] static QString name() {
        return QStringLiteral("settings-%1-%2")
            .arg(QLatin1String(std::get<Named>(GetParam()).name),
                 QLatin1String(std::get<NamedLook>(GetParam()).name));
    }

    void arrange() {
        provideModel(QStringLiteral("multilingual"));
        provideModel(QStringLiteral("starter"));
        if (state() == State::twoModels)
            provideModel(QStringLiteral("english"));
        if (state() == State::notGranted) {
            fakes.privacy.trusted = false;
            fakes.audio.answer = AudioInput::Authorization::denied;
        }
    }

    [[nodiscard]] static QByteArray config() {
        if (state() == State::manyChords)
            return manyChords;
        return state() == State::twoModels ? R"({"inputDeviceUID":"usb"})"
                                           : R"({"dictateEnterChords":[3]})";
    }

    void act() {
        if (state() == State::downloading) {
            ASSERT_TRUE(beginSlowDownload(QStringLiteral("english")));
        }
        if (state() == State::capturing)
            app->startCapture(Capturing::dictate);
        if (state() == State::asking)
            click(QStringLiteral("Reset to defaults"));
    }

    /// The window, or what it asks.
    [[nodiscard]] QWidget& shown() const {
        QWidget* const alert = window->findChild<QMessageBox*>();
        return alert != nullptr ? *alert : *window;
    }

    const test::DesktopLooks looks{std::get<NamedLook>(GetParam()).look};
};

TEST_P(SettingsPictures, cutNoControl) {
    arrange();
    open(config());
    ASSERT_NO_FATAL_FAILURE(act());
    ASSERT_EQ(&shown() != window, state() == State::asking);
    ASSERT_TRUE(QTest::qWaitForWindowActive(&shown()));
    // A window follows what it has got at the next turn of the event loop.
    EXPECT_TRUE(test::waitUntil([this] { return test::cutControls(shown()).isEmpty(); }))
        << test::cutControls(shown()).join(u'\n').toStdString();
    test::takePicture(shown(), name());
    const QSize space = shown().screen()->availableSize();
    EXPECT_EQ(shown().size().expandedTo(space), space);
}

INSTANTIATE_TEST_SUITE_P(
    Pictures, SettingsPictures,
    testing::Combine(
        testing::Values(NamedLook{"light", {}}, NamedLook{"dark", {.isDark = true}},
                        NamedLook{"large-font", {.fontScale = 2}},
                        NamedLook{"dark-large-font", {.isDark = true, .fontScale = 2}}),
        testing::Values(Named{"plain", State::plain}, Named{"many-chords", State::manyChords},
                        Named{"not-granted", State::notGranted},
                        Named{"two-models", State::twoModels},
                        Named{"downloading", State::downloading},
                        Named{"capturing", State::capturing}, Named{"asking", State::asking})),
    [](const auto& row) {
        QString name = QString::fromLatin1(std::get<Named>(row.param).name) +
                       QLatin1String(std::get<NamedLook>(row.param).name);
        return name.remove(QLatin1Char('-')).toStdString();
    });

}  // namespace
}  // namespace sayloft
