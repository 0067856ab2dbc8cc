// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <map>
#include <optional>

namespace sayloft {

/// What the group "Desktop Entry" of a file says, in the form that freedesktop.org gives it.
class DesktopEntry {
public:
    /// Without a group of that name the entry is empty.
    [[nodiscard]] static DesktopEntry parse(const QByteArray& file);

    /// None where the key is not there. Escapes such as \s have been resolved.
    [[nodiscard]] std::optional<QString> value(const QString& key) const;
    [[nodiscard]] bool isTrue(const QString& key) const;
    [[nodiscard]] bool isFalse(const QString& key) const;

    /// The program that Exec starts, its quoting resolved; empty where that makes no sense.
    [[nodiscard]] QString program() const;

private:
    std::map<QString, QString> m_values;
};

/// `program` as the value of Exec, quoted and escaped where it has to be.
[[nodiscard]] QByteArray execLine(const QString& program);
/// `text` as the value of any other key.
[[nodiscard]] QByteArray escapedValue(const QString& text);

}  // namespace sayloft
