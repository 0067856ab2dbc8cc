// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QTemporaryDir>

namespace sayloft::test {

/// A home directory and a bundle of its own for one test; fixes the global paths to them.
class TempHome {
public:
    TempHome();

    [[nodiscard]] QString path() const;       ///< the home directory
    [[nodiscard]] QString bundleDir() const;  ///< an empty bundle beside it

    /// Everything that has been logged.
    [[nodiscard]] QString log() const;

private:
    QTemporaryDir m_directory;
};

/// The whole file as bytes; empty when it cannot be read.
[[nodiscard]] QByteArray readFile(const QString& path);

/// Creates missing directories. Fails the test when the file cannot be written.
void writeFile(const QString& path, const QByteArray& content);

/// As if the file had last been written `days` before now.
void makeOlder(const QString& path, int days);

}  // namespace sayloft::test
