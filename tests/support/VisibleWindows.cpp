// SPDX-License-Identifier: MIT
#include "tests/support/VisibleWindows.h"

#include <QProcess>

#include <stdexcept>

namespace sayloft::test {

QStringList visibleWindows(const XServer& server, const QString& windowClass) {
    // It fails when there is none, so its exit code says nothing.
    QProcess search;
    search.setProcessEnvironment(server.environment());
    search.start(QStringLiteral("xdotool"),
                 {QStringLiteral("search"), QStringLiteral("--onlyvisible"),
                  QStringLiteral("--class"), windowClass});
    if (!search.waitForFinished(5000))
        throw std::runtime_error("the windows cannot be listed");
    return QString::fromLatin1(search.readAllStandardOutput())
        .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

}  // namespace sayloft::test
