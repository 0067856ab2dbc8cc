// SPDX-License-Identifier: MIT
#include "platform/linux/DesktopEntry.h"

namespace sayloft {
namespace {

QString unescaped(const QString& raw) {
    QString text;
    for (qsizetype i = 0; i < raw.size(); ++i) {
        if (raw[i] != QLatin1Char('\\') || i + 1 == raw.size()) {
            text += raw[i];
            continue;
        }
        switch (raw[++i].unicode()) {
            case 's':
                text += QLatin1Char(' ');
                break;
            case 'n':
                text += QLatin1Char('\n');
                break;
            case 't':
                text += QLatin1Char('\t');
                break;
            case 'r':
                text += QLatin1Char('\r');
                break;
            case '\\':
                text += QLatin1Char('\\');
                break;
            default:
                text += QLatin1Char('\\');
                text += raw[i];
        }
    }
    return text;
}

/// The argument up to its closing quote; none without one.
QString quotedArgument(const QString& command) {
    QString argument;
    for (qsizetype i = 1; i < command.size(); ++i) {
        if (command[i] == QLatin1Char('"'))
            return argument;
        if (command[i] == QLatin1Char('\\') && i + 1 < command.size())
            ++i;
        argument += command[i];
    }
    return {};
}

}  // namespace

DesktopEntry DesktopEntry::parse(const QByteArray& file) {
    DesktopEntry entry;
    bool isOurs = false;
    const QStringList lines = QString::fromUtf8(file).split(QLatin1Char('\n'));
    for (const QString& each : lines) {
        const QString line = each.trimmed();
        if (line.startsWith(QLatin1Char('[')))
            isOurs = line == QStringLiteral("[Desktop Entry]");
        const qsizetype equals = line.indexOf(QLatin1Char('='));
        if (!isOurs || equals < 1 || line.startsWith(QLatin1Char('#')))
            continue;
        entry.m_values[line.left(equals).trimmed()] = unescaped(line.mid(equals + 1).trimmed());
    }
    return entry;
}

std::optional<QString> DesktopEntry::value(const QString& key) const {
    const auto found = m_values.find(key);
    return found == m_values.end() ? std::nullopt : std::optional(found->second);
}

bool DesktopEntry::isTrue(const QString& key) const {
    const QString text = value(key).value_or(QString()).toLower();
    return text == QStringLiteral("true") || text == QStringLiteral("1");
}

bool DesktopEntry::isFalse(const QString& key) const {
    const QString text = value(key).value_or(QString()).toLower();
    return text == QStringLiteral("false") || text == QStringLiteral("0");
}

QString DesktopEntry::program() const {
    const QString command = value(QStringLiteral("Exec")).value_or(QString());
    QString program = command.startsWith(QLatin1Char('"'))
                          ? quotedArgument(command)
                          : command.section(QLatin1Char(' '), 0, 0);
    return program.replace(QStringLiteral("%%"), QStringLiteral("%"));
}

// Twice escaped: once for the quotes of Exec, once as every value is.
QByteArray execLine(const QString& program) {
    QString quoted;
    for (const QChar each : program) {
        if (QStringLiteral("\"`$\\").contains(each))
            quoted += QLatin1Char('\\');
        quoted += each;
    }
    quoted.replace(QLatin1Char('%'), QStringLiteral("%%"));
    return escapedValue(QLatin1Char('"') + quoted + QLatin1Char('"'));
}

QByteArray escapedValue(const QString& text) {
    QString escaped = text;
    escaped.replace(QLatin1Char('\\'), QStringLiteral("\\\\"));
    escaped.replace(QLatin1Char('\n'), QStringLiteral("\\n"));
    escaped.replace(QLatin1Char('\r'), QStringLiteral("\\r"));
    escaped.replace(QLatin1Char('\t'), QStringLiteral("\\t"));
    return escaped.toUtf8();
}

}  // namespace sayloft
