// SPDX-License-Identifier: MIT
// The entry of the program in the desktop's list of applications.
#include "platform/SessionBusConnection.h"
#include "platform/linux/NotifierFreedesktop.h"
#include "platform/tests/ScriptedNotificationDaemon.h"
#include "tests/support/ChildProgram.h"
#include "tests/support/SessionBus.h"
#include "tests/support/TempHome.h"
#include "tests/support/WaitUntil.h"

#include <QDBusArgument>
#include <QFile>
#include <QVariantMap>

#include <gtest/gtest.h>

namespace sayloft {
namespace {

const QString file =
    QStringLiteral(SAYLOFT_BUNDLE_DIR "/Contents/Resources/desktop/org.sayloft.Sayloft.desktop");

TEST(TheDesktopEntry, isValidAndLeavesNothingToSay) {
    EXPECT_EQ(test::run(QStringLiteral("desktop-file-validate"), {file}).toStdString(), "");
}

TEST(TheDesktopEntry, startsTheProgramThatTheBundleHas) {
    EXPECT_TRUE(test::readFile(file).contains("\nExec=sayloft\n"));
    EXPECT_TRUE(QFile::exists(QStringLiteral(SAYLOFT_BUNDLE_DIR "/Contents/bin/sayloft")));
}

TEST(TheDesktopEntry, isTheOneThatNotificationsName) {
    const test::SessionBus bus;
    ScriptedNotificationDaemon daemon(bus);
    SessionBusConnection connection(bus.address());
    NotifierFreedesktop notifier(connection);
    notifier.show({.key = QStringLiteral("key"), .summary = QStringLiteral("summary"), .body = {}});
    ASSERT_TRUE(test::waitUntil([&daemon] { return !daemon.notified.empty(); }));
    constexpr int hintsArgument = 6;
    const QVariantMap hints =
        qdbus_cast<QVariantMap>(daemon.argument(0, hintsArgument).value<QDBusArgument>());
    const QString name = hints.value(QStringLiteral("desktop-entry")).toString();
    EXPECT_TRUE(file.endsWith(QLatin1Char('/') + name + QStringLiteral(".desktop")));
    EXPECT_TRUE(QFile::exists(file));
}

}  // namespace
}  // namespace sayloft
