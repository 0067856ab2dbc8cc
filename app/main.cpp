// SPDX-License-Identifier: MIT
#include "app/AppDelegate.h"
#include "app/ExitHook.h"
#include "app/QuitSignals.h"
#include "app/SingleInstance.h"
#include "models/Paths.h"
#include "platform/Desktop.h"
#include "platform/Platform.h"
#include "platform/SessionBusAddress.h"
#include "platform/SessionBusConnection.h"
#include "ui/AppWindows.h"

#include <QApplication>
#include <QDir>
#include <QIcon>
#include <QSessionManager>
#include <QTimer>

#include <csignal>
#include <cstdio>
#include <memory>

namespace {

void giveWindowsAnIcon() {
    const QString image =
        sayloft::BUNDLE_DIR + QStringLiteral("/Contents/Resources/images/MenuIconActive.png");
    QApplication::setWindowIcon(
        QIcon::fromTheme(QStringLiteral("audio-input-microphone"), QIcon(image)));
}

}  // namespace

int main(int argc, char** argv) {
    using namespace sayloft;

    // Writing to an X server that has just gone is an error like others.
    std::signal(SIGPIPE, SIG_IGN);
    if (const auto missing = missingDesktop()) {
        std::fprintf(stderr, "sayloft: %s\n", qUtf8Printable(*missing));
        return 1;
    }
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Sayloft"));
    QApplication::setDesktopFileName(QStringLiteral("org.sayloft.Sayloft"));
    QApplication::setQuitOnLastWindowClosed(false);
    fixPaths(bundleDirOfExecutable(QApplication::applicationDirPath()), QDir::homePath());

    SessionBusConnection sessionBus(sessionBusAddress());
    SingleInstance instance(sessionBus);
    if (!instance.claim())
        return 0;

    AppDelegate delegate(loadPlatform(sessionBus));
    delegate.windows = std::make_unique<AppWindows>(delegate);
    instance.onActivate = [&delegate] { delegate.activate(); };
    const QuitSignals quitSignals([&delegate] { delegate.quit(); });
    QObject::connect(&application, &QApplication::aboutToQuit, &delegate,
                     &AppDelegate::applicationWillTerminate);
    const ExitHook exitHook([&delegate] { delegate.applicationWillTerminate(); });
    // Whether we start with the session is for the user's autostart entries to say.
    QObject::connect(
        &application, &QApplication::saveStateRequest, &application,
        [](QSessionManager& session) { session.setRestartHint(QSessionManager::RestartNever); });
    delegate.applicationDidFinishLaunching();
    // Last: to look through the desktop's icon theme takes longer than all of the above.
    QTimer::singleShot(0, &application, &giveWindowsAnIcon);
    return QApplication::exec();
}
