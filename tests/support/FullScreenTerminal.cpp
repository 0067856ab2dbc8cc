// SPDX-License-Identifier: MIT
#include "tests/support/FullScreenTerminal.h"

#include "platform/linux/FocusX11.h"
#include "tests/support/TempHome.h"
#include "tests/support/WaitUntil.h"

#include <QFile>

#include <stdexcept>

namespace sayloft::test {
namespace {

QStringList arguments(const QString& file, const QString& colour) {
    // \033[?1000h turns the reports of mouse buttons on.
    const QString record = QStringLiteral("stty raw -echo; printf '\\033[?1000h'; cat > '%1'");
    return {
        QStringLiteral("-fullscreen"), QStringLiteral("-bg"), colour,          QStringLiteral("-e"),
        QStringLiteral("sh"),          QStringLiteral("-c"),  record.arg(file)};
}

FocusedWindow focused() {
    const XcbConnection connection = connectToXServer();
    return connection ? FocusX11(connection.get()).focused() : FocusedWindow();
}

}  // namespace

FullScreenTerminal::FullScreenTerminal(const XServer& server, const QString& colour)
    : m_focusedBefore(focused().window),
      m_program(QStringLiteral("xterm"), arguments(m_file, colour), server.environment()) {
    if (!waitUntil([this] { return QFile::exists(m_file) && hasTheFocus(); }))
        throw std::runtime_error("xterm did not come up");
}

bool FullScreenTerminal::hasTheFocus() const {
    const FocusedWindow now = focused();
    return now.windowClass == "XTerm" && now.window != m_focusedBefore;
}

QByteArray FullScreenTerminal::received() const {
    return readFile(m_file);
}

}  // namespace sayloft::test
