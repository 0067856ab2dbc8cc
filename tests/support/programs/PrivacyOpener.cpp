// SPDX-License-Identifier: MIT
// Opens panes of the privacy settings and sections of the help. Arguments: the page of the help,
// then the address of each pane, or "#" and the name of a section. Ends when its standard input
// does.
#include "platform/linux/PrivacySettingsX11.h"

#include <QApplication>
#include <QSocketNotifier>
#include <QUrl>

#include <unistd.h>

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    const QStringList arguments = QApplication::arguments();
    sayloft::PrivacySettingsX11 settings(arguments.value(1));
    for (const QString& wanted : arguments.mid(2)) {
        if (wanted.startsWith(QLatin1Char('#')))
            settings.openHelp(wanted.mid(1));
        else
            settings.open(QUrl(wanted));
    }
    const QSocketNotifier inputEnded(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&inputEnded, &QSocketNotifier::activated, &application, &QApplication::quit);
    return QApplication::exec();
}
