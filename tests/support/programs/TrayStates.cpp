// SPDX-License-Identifier: MIT
// Shows the tray item in the state whose number is on each line of standard input, and says when it
// has: some states pass too quickly for a look, and one is never set.
#include "app/StatusMenu.h"
#include "models/Paths.h"
#include "platform/SessionBusAddress.h"
#include "platform/SessionBusConnection.h"
#include "platform/linux/TrayItemSni.h"
#include "storage/Config.h"
#include "storage/History.h"

#include <QApplication>
#include <QColor>
#include <QDir>
#include <QPalette>
#include <QSocketNotifier>

#include <cstdio>
#include <iostream>
#include <string>

#include <unistd.h>

int main(int argc, char** argv) {
    using namespace sayloft;

    QApplication application(argc, argv);
    // The desktop's accent, the same on all of them.
    QPalette palette = QApplication::palette();
    palette.setColor(QPalette::Highlight, QColor(35, 116, 225));
    QApplication::setPalette(palette);
    fixPaths(QStringLiteral(SAYLOFT_BUNDLE_DIR), QDir::homePath());
    SessionBusConnection sessionBus(sessionBusAddress());
    TrayItemSni tray(sessionBus, BUNDLE_DIR + QStringLiteral("/Contents/Resources/images"));
    const Config cfg;
    const History history;
    StatusMenu menu(tray, cfg, history, {});
    menu.buildMenu();
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &application, [&menu] {
        std::string line;
        if (!std::getline(std::cin, line))
            QApplication::quit();
        else
            menu.setState(static_cast<IconState>(std::stoi(line)));
    });
    return QApplication::exec();
}
