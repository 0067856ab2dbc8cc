// SPDX-License-Identifier: MIT
// The windows on a machine whose fonts have letters and punctuation only.
#include "ui/tests/PlainFont.h"

#include "app/AppDelegate.h"
#include "models/ModelCatalogue.h"
#include "models/Paths.h"
#include "tests/support/FakePlatform.h"
#include "tests/support/TempHome.h"
#include "ui/AppWindows.h"
#include "ui/DictWindowController.h"
#include "ui/OnboardWindowController.h"
#include "ui/SettingsWindow.h"
#include "ui/SettingsWindowController.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QFontMetrics>
#include <QLabel>
#include <QLineEdit>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

namespace sayloft {
namespace {

using testing::IsEmpty;

const test::PlainFont plainFont;

class WindowsInAPlainFont : public testing::Test {
protected:
    WindowsInAPlainFont() {
        test::writeFile(Config::url(), R"({"dictateChords":[12,3,31],"dictateEnterChords":[],
            "replacements":[["say loft","Sayloft"]],"model":"multilingual"})");
        test::writeFile(
            DOWNLOAD_MODELS_DIR + QLatin1Char('/') + modelInfo(QStringLiteral("multilingual")).file,
            "model");
        m_app = std::make_unique<AppDelegate>(m_fakes.platform());
        auto windows = std::make_unique<AppWindows>(*m_app);
        m_windows = windows.get();
        m_app->windows = std::move(windows);
    }

    void look(const QWidget& widget, const QString& text) {
        const QFontMetrics metrics(widget.font());
        for (const uint character : text.toUcs4()) {
            if (!metrics.inFontUcs4(character))
                m_boxes.push_back(text.toStdString());
        }
        m_seen.push_back(text.toStdString());
    }

    void lookAt(const QWidget& window) {
        for (const auto* label : window.findChildren<QLabel*>())
            look(*label, label->text());
        for (const auto* button : window.findChildren<QAbstractButton*>())
            look(*button, button->text());
        for (const auto* field : window.findChildren<QLineEdit*>())
            look(*field, field->text() + field->placeholderText());
        for (const auto* box : window.findChildren<QComboBox*>()) {
            for (int i = 0; i < box->count(); ++i)
                look(*box, box->itemText(i));
        }
    }

    test::TempHome m_home;
    test::FakePlatform m_fakes;
    std::unique_ptr<AppDelegate> m_app;
    AppWindows* m_windows = nullptr;
    std::vector<std::string> m_seen;
    std::vector<std::string> m_boxes;  ///< texts in which a sign would be a box
};

TEST_F(WindowsInAPlainFont, haveNoneOfTheSignsToTheirNames) {
    const QFontMetrics metrics(QApplication::font());
    EXPECT_TRUE(metrics.inFont(u'a'));
    for (const QChar sign : QStringLiteral("✓✕→○＋⌘⇧⌥⌃"))
        EXPECT_FALSE(metrics.inFont(sign)) << static_cast<int>(sign.unicode());
}

TEST_F(WindowsInAPlainFont, showNoBoxInTheSettings) {
    m_app->openSettings();
    lookAt(m_windows->settingsWC->window());
    EXPECT_THAT(m_boxes, IsEmpty());
    for (const char* text : {"Granted", "•", "–", "Shift+Super  ×", "+ Add combo"})
        EXPECT_THAT(m_seen, testing::Contains(text));
}

TEST_F(WindowsInAPlainFont, showNoBoxInTheSettingsWherePermissionsAreMissing) {
    m_fakes.privacy.trusted = false;
    m_app->openSettings();
    lookAt(m_windows->settingsWC->window());
    EXPECT_THAT(m_boxes, IsEmpty());
    EXPECT_THAT(m_seen, testing::Contains("Not granted"));
}

TEST_F(WindowsInAPlainFont, showNoBoxInTheDictionary) {
    m_app->openDict();
    lookAt(m_windows->dictWC->window());
    EXPECT_THAT(m_boxes, IsEmpty());
    for (const char* text : {"->", "×", "+ Add replacement"})
        EXPECT_THAT(m_seen, testing::Contains(text));
}

TEST_F(WindowsInAPlainFont, showNoBoxOnTheFirstRun) {
    m_fakes.privacy.trusted = false;
    m_app->windows->openOnboarding();
    lookAt(m_windows->onboardWC->window());
    EXPECT_THAT(m_boxes, IsEmpty());
    for (const char* text : {"Ready", "Not yet"})
        EXPECT_THAT(m_seen, testing::Contains(text));
}

}  // namespace
}  // namespace sayloft
