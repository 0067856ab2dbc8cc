// SPDX-License-Identifier: MIT
// What the user is told when something is missing, by the real program on real desktops.
#include "tests/support/BusMonitor.h"
#include "tests/support/NotificationDaemon.h"
#include "tests/support/ProcessFigures.h"
#include "tests/support/RawHttpServer.h"
#include "tests/support/SayloftProgram.h"
#include "tests/support/SessionBus.h"
#include "tests/support/SoundServer.h"
#include "tests/support/TempHome.h"
#include "tests/support/TrayClient.h"
#include "tests/support/TrayHost.h"
#include "tests/support/WaitUntil.h"
#include "tests/support/XServer.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>

namespace sayloft {
namespace {

using namespace std::chrono_literals;

class Trouble : public testing::Test {
protected:
    Trouble() {
        m_bus.addTo(m_environment);
        m_environment.remove(QStringLiteral("XDG_RUNTIME_DIR"));
        m_environment.insert(QStringLiteral("PULSE_SERVER"), QStringLiteral("unix:/nonexistent"));
    }

    /// There is a sound server from here on.
    test::SoundServer& openRoom() {
        m_room = std::make_unique<test::SoundServer>();
        m_room->addTo(m_environment);
        return *m_room;
    }

    void startSayloft(const QByteArray& configuration,
                      const QString& bundle = QStringLiteral(SAYLOFT_BUNDLE_DIR)) {
        const QString home = m_directory.filePath(QStringLiteral("home"));
        test::writeConfig(home, configuration);
        m_sayloft = std::make_unique<test::SayloftProgram>(home, m_environment, bundle);
        ASSERT_TRUE(m_sayloft->waitForLog(QStringLiteral("event tap installed OK")));
    }

    test::XServer m_display;
    test::SessionBus m_bus;
    test::NotificationDaemon m_daemon{test::Notifying::dunst, m_display, m_bus};
    test::BusMonitor m_messages{m_bus, QStringLiteral("org.freedesktop.Notifications")};
    test::TrayClient m_client{m_bus};
    QTemporaryDir m_directory;
    QProcessEnvironment m_environment = m_display.environment();
    std::unique_ptr<test::SoundServer> m_room;
    std::unique_ptr<test::SayloftProgram> m_sayloft;
};

TEST_F(Trouble, ofAMissingModelIsToldOnceAndStandsInTheTooltip) {
    startSayloft(R"({"model":"english"})");
    EXPECT_TRUE(m_client.tooltipSays(QStringLiteral("speech model missing")));
    EXPECT_EQ(m_client.property(QStringLiteral("Title")),
              QStringLiteral("'Sayloft: one moment… (speech model missing)'"));
    EXPECT_TRUE(m_messages.hears("The speech model is missing"));
    EXPECT_TRUE(test::waitUntil([this] { return m_daemon.shows(); }));
    EXPECT_EQ(m_messages.count("The speech model is missing"), 1);
}

TEST_F(Trouble, ofAMissingHelperIsToldAndStandsInTheTooltip) {
    openRoom();
    startSayloft(R"({"model":"starter"})", test::bundleWithoutHelper(m_directory.path()));
    EXPECT_TRUE(m_client.tooltipSays(QStringLiteral("speech helper missing")));
    EXPECT_TRUE(m_messages.hears("Sayloft's speech helper is missing"));
}

TEST_F(Trouble, ofAHelperThatDiesStandsInTheTooltip) {
    openRoom();
    startSayloft(R"({"model":"starter"})");
    ASSERT_TRUE(m_sayloft->waitForHelper());
    test::run(QStringLiteral("pkill"),
              {QStringLiteral("-KILL"), QStringLiteral("-x"), QStringLiteral("parakeet-server")});
    EXPECT_TRUE(m_client.tooltipSays(QStringLiteral("speech helper has ended")));
    EXPECT_TRUE(m_messages.hears("Sayloft's speech helper has ended"));
}

TEST_F(Trouble, ofAPortThatSomebodyElseHasStaysAlthoughHeAnswers) {
    const test::RawHttpServer stranger({test::RawAnswer::ok("hello")}, 8090);
    startSayloft(R"({"model":"starter"})");
    EXPECT_TRUE(m_client.tooltipSays(QStringLiteral("port 8090 taken")));
    test::turnEventLoopFor(2s);
    EXPECT_TRUE(m_client.tooltipSays(QStringLiteral("port 8090 taken")));
}

TEST_F(Trouble, ofAMissingSoundServerIsTold) {
    startSayloft(R"({"model":"starter"})");
    EXPECT_TRUE(m_client.tooltipSays(QStringLiteral("no sound server")));
    EXPECT_TRUE(m_messages.hears("Sayloft finds no sound server"));
}

TEST_F(Trouble, ofASoundServerThatRefusesIsToldUntilItLetsUsIn) {
    const QString theirs = m_directory.filePath(QStringLiteral("theirs"));
    const QString ours = m_directory.filePath(QStringLiteral("ours"));
    openRoom().openGuardedDoor(14714, theirs);
    m_environment.insert(QStringLiteral("PULSE_SERVER"), QStringLiteral("tcp:127.0.0.1:14714"));
    m_environment.insert(QStringLiteral("PULSE_COOKIE"), ours);
    const test::TrayHost panel(test::TrayHostKind::xfcePanel, m_display, m_bus);
    startSayloft(R"({"model":"starter"})");
    EXPECT_TRUE(m_client.tooltipSays(QStringLiteral("sound server refuses")));
    EXPECT_TRUE(m_messages.hears("The sound server refuses Sayloft"));
    test::writeFile(ours, test::readFile(theirs));
    EXPECT_TRUE(m_client.tooltipSays(QStringLiteral("'Sayloft: ready', ''")));
}

TEST_F(Trouble, ofAMissingTrayIsToldWithTheRemedy) {
    openRoom();
    startSayloft(R"({"model":"starter"})");
    EXPECT_TRUE(m_client.tooltipSays(QStringLiteral("no place for the icon")));
    EXPECT_TRUE(m_messages.hears("GNOME shows the icon with its AppIndicator extension"));
}

TEST_F(Trouble, ofAMissingTrayIsNotToldAtTheNextStartAndCostsNothing) {
    openRoom();
    startSayloft(R"({"model":"starter"})");
    ASSERT_TRUE(m_client.tooltipSays(QStringLiteral("no place for the icon")));
    ASSERT_TRUE(m_messages.hears("its icon has no place"));
    m_sayloft.reset();
    startSayloft(R"({"model":"starter"})");
    ASSERT_TRUE(m_sayloft->waitForHelper());
    // A tray is given ten seconds to come up.
    test::turnEventLoopFor(12s);
    EXPECT_EQ(m_messages.count("its icon has no place"), 1);
    const qint64 pid = m_sayloft->program().pid();
    const long before = test::threadSwitchesOf(pid).voluntary;
    test::turnEventLoopFor(5s);
    EXPECT_EQ(test::threadSwitchesOf(pid).voluntary, before);
}

TEST_F(Trouble, isNotToldWhereAllIsWell) {
    openRoom();
    const test::TrayHost panel(test::TrayHostKind::xfcePanel, m_display, m_bus);
    startSayloft(R"({"model":"starter"})");
    ASSERT_TRUE(m_sayloft->waitForHelper());
    // A tray and a sound server are given ten seconds to come up.
    test::turnEventLoopFor(12s);
    EXPECT_EQ(m_messages.count("member=Notify"), 0);
}

}  // namespace
}  // namespace sayloft
