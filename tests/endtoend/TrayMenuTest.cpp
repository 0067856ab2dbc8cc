// SPDX-License-Identifier: MIT
// The menu of the tray item, read and clicked through its D-Bus interface.
#include "tests/endtoend/TrayDesktop.h"
#include "tests/support/Xclip.h"

#include <gmock/gmock.h>

namespace sayloft {
namespace {

using namespace std::chrono_literals;

class TrayMenu : public test::Tray {};

TEST_F(TrayMenu, listsItsItems) {
    writeHistory(R"(["newest","oldest"])");
    startSayloft();
    EXPECT_THAT(m_client.labels(),
                testing::ElementsAre(
                    QStringLiteral("Sayloft 1.0 · Parakeet v3"), QStringLiteral("Dictate:  ⇧⌘"),
                    QStringLiteral("Dictate + Enter:  —"), QStringLiteral("History"),
                    QStringLiteral("newest"), QStringLiteral("oldest"),
                    QStringLiteral("Clear History"), QStringLiteral("Settings…"),
                    QStringLiteral("Check for Updates…"), QStringLiteral("Quit")));
}

TEST_F(TrayMenu, copiesAWholeTranscript) {
    writeHistory(R"(["first line\nsecond_line, which is far too long for one line of a menu"])");
    startSayloft();
    m_client.click(QStringLiteral("first line second__line, which is far too lon…"));
    EXPECT_TRUE(test::waitUntil([] {
        try {
            return test::pasteWithXclip() ==
                   "first line\nsecond_line, which is far too long for one line of a menu";
        } catch (const std::runtime_error&) {
            return false;  // nobody owns the clipboard yet
        }
    }));
}

TEST_F(TrayMenu, clearsTheHistory) {
    writeHistory(R"(["a"])");
    startSayloft();
    m_client.click(QStringLiteral("Clear History"));
    EXPECT_TRUE(
        test::waitUntil([this] { return m_client.idOf(QStringLiteral("(empty)")).has_value(); }));
    EXPECT_EQ(test::readFile(home() + QStringLiteral("/.sayloft/history.json")), "[]");
}

TEST_F(TrayMenu, opensTheSettings) {
    startSayloft();
    m_client.click(QStringLiteral("Settings…"));
    EXPECT_NO_THROW(test::run(
        QStringLiteral("xdotool"),
        {QStringLiteral("search"), QStringLiteral("--sync"), QStringLiteral("--onlyvisible"),
         QStringLiteral("--name"), QStringLiteral("^Sayloft Settings$")},
        {}, m_environment));
}

TEST_F(TrayMenu, looksForUpdates) {
    startSayloft();
    m_client.click(QStringLiteral("Check for Updates…"));
    EXPECT_NO_THROW(test::run(
        QStringLiteral("xdotool"),
        {QStringLiteral("search"), QStringLiteral("--sync"), QStringLiteral("--onlyvisible"),
         QStringLiteral("--name"), QStringLiteral("^Sayloft Updates$")},
        {}, m_environment));
}

TEST_F(TrayMenu, quits) {
    startSayloft();
    m_client.click(QStringLiteral("Quit"));
    ASSERT_TRUE(m_sayloft->program().waitForEnd(8s));
    EXPECT_EQ(m_sayloft->program().exitCode(), 0);
    EXPECT_FALSE(test::helperRuns());
}

TEST_F(TrayMenu, doesNothingForLinesThatOnlyInformAndForSeparators) {
    startSayloft();
    const QString before = m_client.menu();
    const int lastOfThem = m_client.idOf(QStringLiteral("(empty)")).value();
    for (int id = 0; id <= lastOfThem; ++id)
        m_client.click(id);
    EXPECT_EQ(m_client.menu(), before);
    EXPECT_TRUE(m_sayloft->program().isRunning());
}

TEST_F(TrayMenu, doesNothingForALineThatIsGone) {
    writeHistory(R"(["a"])");
    startSayloft();
    const int gone = m_client.idOf(QStringLiteral("Clear History")).value();
    m_client.click(gone);
    ASSERT_TRUE(
        test::waitUntil([this] { return m_client.idOf(QStringLiteral("(empty)")).has_value(); }));
    EXPECT_THROW(m_client.click(gone), std::runtime_error);
    EXPECT_TRUE(m_sayloft->program().isRunning());
}

TEST_F(TrayMenu, namesItsKeyEquivalents) {
    startSayloft();
    EXPECT_TRUE(m_client.menu().contains(
        QStringLiteral("{'label': <'Settings…'>, 'shortcut': <[['Control', 'comma']]>}")));
    EXPECT_TRUE(m_client.menu().contains(
        QStringLiteral("{'label': <'Quit'>, 'shortcut': <[['Control', 'q']]>}")));
}

TEST_F(TrayMenu, answersForSingleLines) {
    startSayloft();
    const QString quit = QString::number(m_client.idOf(QStringLiteral("Quit")).value());
    EXPECT_EQ(m_client.callMenu("GetProperty", {quit, QStringLiteral("label")}),
              QStringLiteral("(<'Quit'>,)"));
    EXPECT_EQ(m_client.callMenu("GetGroupProperties",
                                {QStringLiteral("[1, 99999]"), QStringLiteral("['enabled']")}),
              QStringLiteral("([(1, {'enabled': <false>})],)"));
    EXPECT_EQ(m_client.callMenu("GetLayout", {quit, QStringLiteral("-1"), QStringLiteral("[]")}),
              QStringLiteral("(uint32 1, (%1, {'label': <'Quit'>, 'shortcut': <[['Control', "
                             "'q']]>}, @av []))")
                  .arg(quit));
    EXPECT_EQ(m_client.callMenu("GetLayout",
                                {QStringLiteral("0"), QStringLiteral("0"), QStringLiteral("[]")}),
              QStringLiteral("(uint32 1, (0, {'children-display': <'submenu'>}, @av []))"));
    EXPECT_EQ(m_client.callMenu("AboutToShow", {quit}), QStringLiteral("(false,)"));
    const QString all = m_client.callMenu("GetGroupProperties",
                                          {QStringLiteral("[]"), QStringLiteral("['label']")});
    EXPECT_TRUE(all.contains(QStringLiteral("'(empty)'")) &&
                all.contains(QStringLiteral("'Quit'")));
}

TEST_F(TrayMenu, saysWhichLinesItDoesNotHave) {
    startSayloft();
    const QString none = QStringLiteral("99999");
    EXPECT_THROW(static_cast<void>(m_client.callMenu("AboutToShow", {none})), std::runtime_error);
    EXPECT_THROW(
        static_cast<void>(m_client.callMenu("GetProperty", {none, QStringLiteral("label")})),
        std::runtime_error);
    EXPECT_THROW(static_cast<void>(m_client.callMenu(
                     "GetLayout", {none, QStringLiteral("-1"), QStringLiteral("[]")})),
                 std::runtime_error);
    EXPECT_EQ(m_client.callMenu("AboutToShowGroup", {QStringLiteral("[0, 99999]")}),
              QStringLiteral("(@ai [], [99999])"));
    EXPECT_EQ(
        m_client.callMenu("EventGroup", {QStringLiteral("[(99999, 'clicked', <''>, uint32 0)]")}),
        QStringLiteral("([99999],)"));
}

TEST_F(TrayMenu, doesWhatIsClickedInAGroupOfEvents) {
    startSayloft();
    const int quit = m_client.idOf(QStringLiteral("Quit")).value();
    static_cast<void>(
        m_client.callMenu("EventGroup", {QStringLiteral("[(%1, 'hovered', <''>, uint32 0), "
                                                        "(%1, 'clicked', <''>, uint32 0)]")
                                             .arg(quit)}));
    EXPECT_TRUE(m_sayloft->program().waitForEnd(8s));
}

}  // namespace
}  // namespace sayloft
