// SPDX-License-Identifier: MIT
#pragma once

#include "fuzz/support/FuzzInput.h"
#include "storage/KeptFile.h"

#include <QString>
#include <QTemporaryDir>

namespace sayloft::fuzz {

/// The data folder of a user, on memory where that is to be had: no input waits for a disk. While
/// it lives, the program's paths lead into it.
class DataFolder {
public:
    DataFolder();

    /// Nothing is there but the file, its new copy, its saved copy and an older broken text: the
    /// pieces of the input between record separators, of which there may be fewer. What was there
    /// before is gone, so that every input stands for itself.
    void fill(const QString& path, const FuzzInput& input) const;

private:
    QTemporaryDir m_home;
};

/// Lets the program start with the file and requires that no text of it goes lost.
void start(const KeptFile& file, const QString& path);

/// Ends what saves have left to be done, so that it does not reach the next input.
void waitForDisk();

}  // namespace sayloft::fuzz
