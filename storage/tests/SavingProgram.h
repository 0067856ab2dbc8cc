// SPDX-License-Identifier: MIT
#pragma once

#include "models/Paths.h"
#include "storage/Config.h"
#include "storage/History.h"
#include "storage/tests/NumberedState.h"
#include "tests/support/ChildProgram.h"
#include "tests/support/Strace.h"
#include "tests/support/TempHome.h"

#include <QDir>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <chrono>

#include <gtest/gtest.h>

namespace sayloft::test {

/// A home with settings, history and log in it, and a program that saves once, run by another one.
class SavingProgram : public testing::Test {
protected:
    static constexpr int transcriptSize = 400;
    static constexpr int transcriptsBefore = 3;

    /// As if the program had been used before, and all of that were on the disk.
    static void renewState() {
        QDir(DATA_DIR).removeRecursively();
        History history;
        for (int number = 1; number <= transcriptsBefore; ++number) {
            settingsOf(number).save();
            history.add(transcriptOf(number, transcriptSize));
        }
        KeptFile::waitForDisk(std::chrono::seconds(10));
        writeFile(LOG_URL, "an older line\n");
    }

    /// As an older version has left it.
    static void removeCopies() {
        QFile::remove(Config::url() + QStringLiteral(".saved"));
        QFile::remove(History::url() + QStringLiteral(".saved"));
    }

    /// What is saved has this number.
    void save(int number, const QStringList& runBy = {}) {
        QStringList command = runBy;
        command << QStringLiteral(SAVE_ONCE) << m_home.path() << QString::number(number)
                << QString::number(transcriptSize);
        run(command.takeFirst(), command);
    }

    /// A command that traces the calls that concern the stored files; see `trace`.
    [[nodiscard]] QStringList strace(const QStringList& options) const {
        QStringList command = test::strace(m_traces.filePath(QStringLiteral("trace")), options);
        for (const QString& path : storedFiles())
            command << QStringLiteral("-P") << path;
        return command;
    }
    [[nodiscard]] QByteArray trace() const {
        return readFile(m_traces.filePath(QStringLiteral("trace")));
    }

    static QStringList storedFiles() {
        QStringList paths{LOG_URL, DATA_DIR};
        for (const QString& file : {Config::url(), History::url()}) {
            for (const char* suffix : {"", ".new.part", ".new", ".saved", ".broken", ".last-good"})
                paths.append(file + QString::fromLatin1(suffix));
        }
        return paths;
    }

    TempHome m_home;

private:
    QTemporaryDir m_traces;
};

}  // namespace sayloft::test
