// SPDX-License-Identifier: MIT
// Opens a pane of the privacy settings. Arguments: the page of the help, then the address of each
// pane. Ends when its standard input does.
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
    for (const QString& pane : arguments.mid(2))
        settings.open(QUrl(pane));
    const QSocketNotifier inputEnded(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&inputEnded, &QSocketNotifier::activated, &application, &QApplication::quit);
    return QApplication::exec();
}
