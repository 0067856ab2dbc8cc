// SPDX-License-Identifier: MIT
// An autostart entry: session managers, other programs and users write them.
#include "fuzz/support/FuzzInput.h"
#include "platform/linux/DesktopEntry.h"

using namespace sayloft;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const DesktopEntry entry =
        DesktopEntry::parse(fuzz::byteArray(fuzz::FuzzInput(data, size).rest()));
    static_cast<void>(entry.isTrue(QStringLiteral("Hidden")));
    static_cast<void>(entry.isFalse(QStringLiteral("X-GNOME-Autostart-enabled")));
    const QString program = entry.program();
    if (program.isEmpty())
        return 0;
    // What we write, we read.
    const QByteArray ours = "[Desktop Entry]\nExec=" + execLine(program);
    fuzz::require(DesktopEntry::parse(ours).program() == program);
    return 0;
}
