// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace sayloft {

/// None when the file cannot be read.
[[nodiscard]] std::optional<QByteArray> readWholeFile(const QString& path);

/// Truncates and rewrites the file in place, creating it and missing directories for the user
/// alone. False when not all of it was written.
bool writeWholeFile(const QString& path, const QByteArray& content);

/// Gives a file another name, in one step and over what has that name; not from one file system to
/// another. False with the reason in errno.
[[nodiscard]] bool moveFile(const QString& from, const QString& to);

}  // namespace sayloft
