// SPDX-License-Identifier: MIT
#include "tests/support/FileModes.h"

#include "tests/support/ChildProgram.h"

namespace sayloft::test {

std::vector<std::string> modesIn(const QString& folder) {
    const QByteArray list =
        run(QStringLiteral("find"),
            {folder, QStringLiteral("("), QStringLiteral("-type"), QStringLiteral("f"),
             QStringLiteral("-o"), QStringLiteral("-type"), QStringLiteral("d"),
             QStringLiteral(")"), QStringLiteral("-printf"), QStringLiteral("0%m %P\\n")});
    std::vector<std::string> modes;
    for (const QByteArray& line : list.split('\n')) {
        if (!line.isEmpty())
            modes.push_back((line.endsWith(' ') ? line + '.' : line).toStdString());
    }
    return modes;
}

}  // namespace sayloft::test
