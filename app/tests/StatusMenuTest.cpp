// SPDX-License-Identifier: MIT
#include "app/StatusMenu.h"

#include "models/Paths.h"
#include "storage/Config.h"
#include "storage/History.h"
#include "tests/support/FakePlatform.h"
#include "tests/support/TempHome.h"

#include <QFile>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

namespace sayloft {
namespace {

using testing::ElementsAre;

const QString images = QStringLiteral("/Contents/Resources/images/");

/// The texts of a menu, "—" in brackets for a separator.
std::vector<std::string> titles(const Menu& menu) {
    std::vector<std::string> titles;
    for (const MenuItem& item : menu)
        titles.push_back(item.isSeparator ? "[-]" : item.title.toStdString());
    return titles;
}

const MenuItem& item(const Menu& menu, const char* title) {
    for (const MenuItem& item : menu) {
        if (item.title == QString::fromUtf8(title))
            return item;
    }
    throw std::runtime_error(std::string("the menu has no ") + title);
}

class TheStatusMenu : public testing::Test {
protected:
    TheStatusMenu() {
        provide("MenuIcon.png");
        provide("MenuIconActive.png");
    }

    void provide(const char* name) const {
        const QString path = m_home.bundleDir() + images + QString::fromLatin1(name);
        test::writeFile(path, test::readFile(QStringLiteral(SAYLOFT_BUNDLE_DIR) + images +
                                             QString::fromLatin1(name)));
    }

    void remove(const char* name) const {
        ASSERT_TRUE(QFile::remove(m_home.bundleDir() + images + QString::fromLatin1(name)));
    }

    StatusMenu& menu() {
        if (!m_menu)
            m_menu = std::make_unique<StatusMenu>(m_tray, m_cfg, m_history, actions());
        return *m_menu;
    }

    const Menu& built() {
        menu().buildMenu();
        return m_tray.menu;
    }

    const Menu& history() { return item(built(), "History").submenu; }

    const TrayLook& look(IconState state) {
        menu().setState(state);
        return m_tray.looks.back();
    }

    StatusMenuActions actions() {
        return {.copyHistoryItem = [this](const QString& text) { m_copied.append(text); },
                .clearHistory = [this] { m_done.push_back("clear"); },
                .openSettings = [this] { m_done.push_back("settings"); },
                .checkForUpdates = [this] { m_done.push_back("updates"); },
                .quit = [this] { m_done.push_back("quit"); }};
    }

    test::TempHome m_home;
    test::FakeTrayItem m_tray;
    Config m_cfg;
    History m_history;
    QStringList m_copied;
    std::vector<std::string> m_done;
    std::unique_ptr<StatusMenu> m_menu;
};

// The icon

struct StateRow {
    IconState state;
    const char* image;
    TrayTint tint;
    const char* title;
};

class TheIcon : public TheStatusMenu, public testing::WithParamInterface<StateRow> {};

TEST_P(TheIcon, tellsTheState) {
    const StateRow& row = GetParam();
    const TrayLook& shown = look(row.state);
    EXPECT_EQ(shown.image.name, QString::fromLatin1(row.image));
    EXPECT_EQ(shown.image.isTemplate, row.state != IconState::recording);
    EXPECT_FALSE(shown.image.picture.isNull());
    EXPECT_EQ(shown.tint, row.tint);
    EXPECT_EQ(shown.title, QString::fromUtf8(row.title));
}

INSTANTIATE_TEST_SUITE_P(
    States, TheIcon,
    testing::Values(
        StateRow{IconState::warming, "MenuIcon", TrayTint::dimmed, "Sayloft: one moment…"},
        StateRow{IconState::ready, "MenuIcon", TrayTint::none, "Sayloft: ready"},
        StateRow{IconState::recording, "MenuIconActive", TrayTint::none, "Sayloft: listening"},
        StateRow{IconState::processing, "MenuIcon", TrayTint::accent, "Sayloft: transcribing"},
        StateRow{IconState::error, "MenuIcon", TrayTint::warning, "Sayloft: that did not work"}),
    [](const auto& row) { return "state" + std::to_string(static_cast<int>(row.param.state)); });

TEST_F(TheStatusMenu, fallsBackToTheMicSymbolWithoutItsIcon) {
    remove("MenuIcon.png");
    const TrayLook& shown = look(IconState::error);
    EXPECT_EQ(shown.image.name, QStringLiteral("mic"));
    EXPECT_TRUE(shown.image.picture.isNull());
    EXPECT_TRUE(shown.image.isTemplate);
    EXPECT_EQ(shown.tint, TrayTint::warning);
}

TEST_F(TheStatusMenu, recordsWithTheNormalIconUntintedWithoutTheActiveOne) {
    remove("MenuIconActive.png");
    const TrayLook& shown = look(IconState::recording);
    EXPECT_EQ(shown.image.name, QStringLiteral("MenuIcon"));
    EXPECT_EQ(shown.tint, TrayTint::none);
}

TEST_F(TheStatusMenu, takesADamagedIconForAMissingOne) {
    test::writeFile(m_home.bundleDir() + images + QStringLiteral("MenuIcon.png"), "no picture");
    EXPECT_EQ(look(IconState::ready).image.name, QStringLiteral("mic"));
}

struct SizeRow {
    const char* name;
    QSize natural;
    QSizeF shown;
};

class AMenuImage : public TheStatusMenu, public testing::WithParamInterface<SizeRow> {};

TEST_P(AMenuImage, is18PointsHighInItsProportions) {
    QImage picture(GetParam().natural, QImage::Format_ARGB32);
    picture.fill(Qt::black);
    ASSERT_TRUE(picture.save(m_home.bundleDir() + images + QStringLiteral("MenuIcon.png")));
    EXPECT_EQ(look(IconState::ready).image.size, GetParam().shown);
}

INSTANTIATE_TEST_SUITE_P(Sizes, AMenuImage,
                         testing::Values(SizeRow{"square", {216, 216}, {18, 18}},
                                         SizeRow{"wide", {72, 36}, {36, 18}},
                                         SizeRow{"small", {9, 9}, {18, 18}},
                                         SizeRow{"onePixelHigh", {3, 1}, {54, 18}}),
                         [](const auto& row) { return row.param.name; });

TEST_F(TheStatusMenu, saysWhyTheStateIsWhatItIs) {
    menu().setState(IconState::warming);
    menu().setReason(QStringLiteral("the speech model is missing"));
    EXPECT_EQ(m_tray.looks.back().title, QStringLiteral("Sayloft: one moment…"));
    EXPECT_EQ(m_tray.looks.back().reason, QStringLiteral("the speech model is missing"));
    EXPECT_EQ(look(IconState::ready).reason, QStringLiteral("the speech model is missing"));
}

// The menu

TEST_F(TheStatusMenu, listsItsItemsInOrder) {
    EXPECT_THAT(titles(built()), ElementsAre("Sayloft 1.0 · Parakeet v3", "[-]", "Dictate:  ⇧⌘",
                                             "Dictate + Enter:  —", "[-]", "History", "[-]",
                                             "Settings…", "Check for Updates…", "[-]", "Quit"));
}

TEST_F(TheStatusMenu, hasLinesThatOnlyInform) {
    EXPECT_FALSE(item(built(), "Sayloft 1.0 · Parakeet v3").isEnabled());
    EXPECT_FALSE(item(built(), "Dictate:  ⇧⌘").isEnabled());
    EXPECT_FALSE(item(built(), "Dictate + Enter:  —").isEnabled());
    EXPECT_TRUE(item(built(), "History").isEnabled());
}

TEST_F(TheStatusMenu, doesWhatItsItemsSay) {
    item(built(), "Settings…").action();
    item(built(), "Check for Updates…").action();
    item(built(), "Quit").action();
    EXPECT_THAT(m_done, ElementsAre("settings", "updates", "quit"));
}

TEST_F(TheStatusMenu, hasKeyEquivalentsForSettingsAndQuit) {
    EXPECT_EQ(item(built(), "Settings…").keyEquivalent, QKeySequence(Qt::CTRL | Qt::Key_Comma));
    EXPECT_EQ(item(built(), "Quit").keyEquivalent, QKeySequence(Qt::CTRL | Qt::Key_Q));
    EXPECT_TRUE(item(built(), "Check for Updates…").keyEquivalent.isEmpty());
}

struct ChordsRow {
    const char* name;
    std::vector<std::int64_t> chords;
    const char* list;
};

class AChordList : public testing::TestWithParam<ChordsRow> {};

TEST_P(AChordList, namesTheChordsInTheirOrder) {
    EXPECT_EQ(chordList(GetParam().chords), QString::fromUtf8(GetParam().list));
}

INSTANTIATE_TEST_SUITE_P(Lists, AChordList,
                         testing::Values(ChordsRow{"none", {}, "—"}, ChordsRow{"one", {12}, "⇧⌘"},
                                         ChordsRow{"several", {12, 3, 16}, "⇧⌘, ⌃⌥, fn"},
                                         ChordsRow{"theEmptyChord", {0}, "—"}),
                         [](const auto& row) { return row.param.name; });

TEST_F(TheStatusMenu, showsADashForAListWithoutChords) {
    m_cfg.dictateChords.clear();
    EXPECT_NO_THROW(static_cast<void>(item(built(), "Dictate:  —")));
}

// The history

TEST_F(TheStatusMenu, saysThatTheHistoryIsEmpty) {
    EXPECT_THAT(titles(history()), ElementsAre("(empty)"));
    EXPECT_FALSE(history()[0].isEnabled());
}

TEST_F(TheStatusMenu, showsOnlyTheTwelveNewestTranscripts) {
    for (int i = 1; i <= 13; ++i)
        m_history.add(QString::number(i));
    EXPECT_THAT(titles(history()), ElementsAre("13", "12", "11", "10", "9", "8", "7", "6", "5", "4",
                                               "3", "2", "[-]", "Clear History"));
}

TEST_F(TheStatusMenu, showsAllOfTwelveTranscripts) {
    for (int i = 1; i <= 12; ++i)
        m_history.add(QString::number(i));
    EXPECT_EQ(history().size(), 14U);
    EXPECT_EQ(history()[11].title, QStringLiteral("1"));
}

TEST_F(TheStatusMenu, copiesTheUnalteredTranscript) {
    const QString text = QStringLiteral("first line\nsecond line ") + QString(50, QLatin1Char('x'));
    m_history.add(text);
    EXPECT_EQ(history()[0].title, QStringLiteral("first line second line ") +
                                      QString(21, QLatin1Char('x')) + QStringLiteral("…"));
    history()[0].action();
    EXPECT_EQ(m_copied, QStringList(text));
}

TEST_F(TheStatusMenu, clearsTheHistory) {
    m_history.add(QStringLiteral("a"));
    item(history(), "Clear History").action();
    EXPECT_THAT(m_done, ElementsAre("clear"));
}

struct TitleRow {
    const char* name;
    QString transcript;
    QString title;
};

class AHistoryTitle : public testing::TestWithParam<TitleRow> {};

TEST_P(AHistoryTitle, isOneLineOfAtMost44Characters) {
    EXPECT_EQ(historyTitle(GetParam().transcript), GetParam().title);
}

QString times(int count, const char* text) {
    return QString::fromUtf8(text).repeated(count);
}

INSTANTIATE_TEST_SUITE_P(
    Titles, AHistoryTitle,
    testing::Values(
        TitleRow{"empty", {}, {}}, TitleRow{"fits", times(44, "a"), times(44, "a")},
        TitleRow{"isCut", times(45, "a"), times(44, "a") + QStringLiteral("…")},
        TitleRow{"lineBreaks", QStringLiteral("a\nb\n"), QStringLiteral("a b ")},
        TitleRow{"otherLineBreaks", QString::fromUtf8("a\rb\u2028c\u2029d\u0085e\vf\fg"),
                 QStringLiteral("a b c d e f g")},
        TitleRow{"lineBreaksOfWindows", QStringLiteral("a\r\nb"), QStringLiteral("a  b")},
        TitleRow{"isCutAsIfOtherLineBreaksStayed", times(44, "\u2028\u0301").left(60),
                 times(22, " \u0301") + QStringLiteral("…")},
        TitleRow{"familiesFit", times(44, "👩‍👩‍👧"), times(44, "👩‍👩‍👧")},
        TitleRow{"aFamilyIsNeverCut", times(45, "👩‍👩‍👧"),
                 times(44, "👩‍👩‍👧") + QStringLiteral("…")},
        TitleRow{"accentsOfTheirOwn", times(45, "e\u0301"),
                 times(44, "e\u0301") + QStringLiteral("…")}),
    [](const auto& row) { return row.param.name; });

}  // namespace
}  // namespace sayloft
