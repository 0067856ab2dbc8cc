// SPDX-License-Identifier: MIT
#include "platform/linux/LoginItemXdg.h"

#include "platform/linux/DesktopEntry.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

namespace sayloft {
namespace {

/// Where entries of all users are, the most important first.
QStringList systemFiles() {
    const QString folders = qEnvironmentVariable("XDG_CONFIG_DIRS");
    QStringList files;
    for (const QString& folder : (folders.isEmpty() ? QStringLiteral("/etc/xdg") : folders)
                                     .split(QLatin1Char(':'), Qt::SkipEmptyParts)) {
        if (QDir::isAbsolutePath(folder))
            files << folder + QStringLiteral("/autostart/org.sayloft.Sayloft.desktop");
    }
    return files;
}

// Relative paths are to be ignored, by the rules of freedesktop.org.
QString usersFile() {
    QString folder = qEnvironmentVariable("XDG_CONFIG_HOME");
    if (!QDir::isAbsolutePath(folder))
        folder = QDir::homePath() + QStringLiteral("/.config");
    return folder + QStringLiteral("/autostart/org.sayloft.Sayloft.desktop");
}

std::optional<QByteArray> read(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    return file.readAll();
}

/// The entry that counts: the first that is there.
std::optional<DesktopEntry> entryOfLogin() {
    for (const QString& path : QStringList(usersFile()) + systemFiles()) {
        if (const auto file = read(path))
            return DesktopEntry::parse(*file);
    }
    return std::nullopt;
}

bool isSwitchedOff(const DesktopEntry& entry) {
    return entry.isTrue(QStringLiteral("Hidden")) ||
           entry.isFalse(QStringLiteral("X-GNOME-Autostart-enabled"));
}

/// The file that a program's name or path stands for, free of links; empty where there is none.
QString programFile(const QString& program) {
    if (program.isEmpty())
        return {};
    return QFileInfo(QStandardPaths::findExecutable(program)).canonicalFilePath();
}

QByteArray entryFor(const QString& program) {
    return QByteArrayLiteral(
               "[Desktop Entry]\n"
               "Type=Application\n"
               "Name=Sayloft\n"
               "Comment=Push-to-talk dictation\n"
               "TryExec=") +
           escapedValue(program) + QByteArrayLiteral("\nExec=") + execLine(program) +
           QByteArrayLiteral(
               "\nTerminal=false\n"
               "X-GNOME-Autostart-enabled=true\n");
}

/// The entry as the user has it, but for what it starts.
QByteArray withProgram(const QByteArray& entry, const QString& program) {
    QByteArrayList lines = entry.split('\n');
    for (QByteArray& line : lines) {
        if (line.startsWith("Exec="))
            line = "Exec=" + execLine(program);
        else if (line.startsWith("TryExec="))
            line = "TryExec=" + escapedValue(program);
    }
    return lines.join('\n');
}

}  // namespace

LoginItemXdg::LoginItemXdg(QString program) : m_program(std::move(program)) {}

bool LoginItemXdg::isEnabled() const {
    const auto entry = entryOfLogin();
    return entry && !isSwitchedOff(*entry) && starts(*entry);
}

std::optional<QString> LoginItemXdg::setEnabled(bool enabled) {
    return enabled ? write(entryFor(m_program)) : disable();
}

// An entry of the system belongs to its administrator.
std::optional<QString> LoginItemXdg::followProgram() {
    const auto file = read(usersFile());
    if (!file)
        return std::nullopt;
    const DesktopEntry entry = DesktopEntry::parse(*file);
    if (isSwitchedOff(entry) || !programFile(entry.program()).isEmpty())
        return std::nullopt;
    return write(withProgram(*file, m_program));
}

bool LoginItemXdg::starts(const DesktopEntry& entry) const {
    const QString ours = programFile(m_program);
    const auto required = entry.value(QStringLiteral("TryExec"));
    const QString requiredFile = programFile(required.value_or(m_program));
    if (ours.isEmpty() || requiredFile.isEmpty())
        return false;
    // A wrapper may start what TryExec names.
    return (required && requiredFile == ours) || programFile(entry.program()) == ours;
}

std::optional<QString> LoginItemXdg::write(const QByteArray& entry) const {
    const QString path = usersFile();
    std::error_code error;
    std::filesystem::create_directories(QFileInfo(path).path().toStdString(), error);
    if (error)
        return QString::fromLocal8Bit(error.message().c_str());
    QSaveFile file(path);
    // WORKAROUND: commit() of Qt 6.4 does not see that the disk is full, and moves an empty file.
    if (file.open(QIODevice::WriteOnly) && file.write(entry) == entry.size() && file.flush() &&
        file.commit())
        return std::nullopt;
    return file.errorString();
}

std::optional<QString> LoginItemXdg::disable() const {
    const QStringList others = systemFiles();
    if (std::any_of(others.begin(), others.end(),
                    [](const QString& path) { return QFileInfo::exists(path); }))
        return write(entryFor(m_program) + QByteArrayLiteral("Hidden=true\n"));
    QFile file(usersFile());
    if (!file.exists() || file.remove())
        return std::nullopt;
    return file.errorString();
}

}  // namespace sayloft
