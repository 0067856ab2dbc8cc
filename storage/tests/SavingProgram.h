// SPDX-License-Identifier: MIT
#pragma once

#include "models/Paths.h"
#include "storage/Config.h"
#include "storage/History.h"
#include "storage/tests/NumberedState.h"
#include "storage/tests/TracedCalls.h"
#include "tests/support/ChildProgram.h"
#include "tests/support/Strace.h"
#include "tests/support/TempHome.h"

#include <QDir>
#include <QFile>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <chrono>
#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace sayloft::test {

/// What the program finds when it starts.
struct Before {
    std::string name;
    void (*make)();  ///< of settings and history that were saved and are on the disk
};

inline void PrintTo(const Before& before, std::ostream* out) {
    *out << before.name;
}

/// As an older version has left it.
inline void removeCopies() {
    for (const QString& file : {Config::url(), History::url()})
        QFile::remove(file + QStringLiteral(".saved"));
}

inline void cutFilesOff() {
    for (const QString& file : {Config::url(), History::url()}) {
        const QByteArray text = readFile(file);
        writeFile(file, text.first(text.size() / 2));
    }
}

inline auto everyStart() {
    return testing::Values(Before{"savedFiles", [] {}}, Before{"filesWithoutCopies", removeCopies},
                           Before{"filesThatAreCutOff", cutFilesOff});
}

/// A home with settings, history and log in it, and a program that saves, run by another one.
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

    /// What is saved has this number, or every one up to a last one.
    void save(int number, const QStringList& runBy = {}) { saveEach(number, number, runBy); }
    void saveEach(int first, int last, const QStringList& runBy) {
        QStringList command = runBy;
        command << QStringLiteral(SAVE_STATES) << m_home.path() << QString::number(first)
                << QString::number(last) << QString::number(transcriptSize);
        run(command.takeFirst(), command);
    }

    /// The calls of a program that saves these states; `options` say which.
    std::vector<TracedCall> traceSaves(int first, int last, const QStringList& options) {
        saveEach(first, last, test::strace(traceFile(), callsInFull() + options));
        return tracedCalls(trace());
    }

    /// A command that traces the calls that concern the stored files; see `trace`.
    [[nodiscard]] QStringList strace(const QStringList& options) const {
        QStringList command = test::strace(traceFile(), options);
        for (const QString& path : storedFiles())
            command << QStringLiteral("-P") << path;
        return command;
    }
    [[nodiscard]] QByteArray trace() const { return readFile(traceFile()); }

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
    [[nodiscard]] QString traceFile() const { return m_traces.filePath(QStringLiteral("trace")); }

    QTemporaryDir m_traces;
};

}  // namespace sayloft::test
