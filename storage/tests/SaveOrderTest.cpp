// SPDX-License-Identifier: MIT
// In which order a save reaches the disk, as the kernel saw it.
#include "storage/tests/SavingProgram.h"

#include <algorithm>
#include <string>
#include <vector>

namespace sayloft {
namespace {

/// "rename config.json.new config.json.saved", for example; of an opening only what empties a file.
std::string inShort(const test::TracedCall& call) {
    QStringList words{call.name};
    for (const QString& path : call.paths())
        words.append(path.section(QLatin1Char('/'), -1));
    if (words.front() == QStringLiteral("openat"))
        words.front() = call.arguments.at(1).word.contains(QStringLiteral("O_TRUNC"))
                            ? QStringLiteral("empty")
                            : QStringLiteral("open");
    return words.join(QLatin1Char(' ')).toStdString();
}

class ASave : public test::SavingProgram {
protected:
    ASave() { renewState(); }

    void traceIt() {
        for (const test::TracedCall& call :
             traceSaves(transcriptsBefore + 1, transcriptsBefore + 1,
                        {QStringLiteral("-e"), QStringLiteral("trace=openat,write,rename,fsync")}))
            m_calls.push_back(inShort(call));
    }

    /// The calls come in that order, and whatever replaces or empties a file then does so for the
    /// first time. Others may come between them: two threads save.
    void expectOrder(const std::vector<std::string>& calls) const {
        auto next = m_calls.begin();
        for (const std::string& call : calls) {
            const auto found = std::find(next, m_calls.end(), call);
            ASSERT_NE(found, m_calls.end()) << call << " is too early or not in\n"
                                            << trace().toStdString();
            if (call.starts_with("rename") || call.starts_with("empty")) {
                EXPECT_EQ(std::find(m_calls.begin(), found, call), found)
                    << call << " is too early in\n"
                    << trace().toStdString();
            }
            next = found + 1;
        }
    }

    std::vector<std::string> m_calls;
};

class ASaveOf : public ASave, public testing::WithParamInterface<std::string> {};

TEST_P(ASaveOf, completesTheCopyBeforeItTouchesTheFile) {
    traceIt();
    const std::string& file = GetParam();
    expectOrder({"empty " + file + ".new.part", "write " + file + ".new.part",
                 "rename " + file + ".new.part " + file + ".new", "empty " + file,
                 "write " + file});
}

TEST_P(ASaveOf, bringsTheCopyToTheDiskBeforeThatReplacesTheOlderOne) {
    traceIt();
    const std::string& file = GetParam();
    expectOrder({"write " + file + ".new.part", "rename " + file + ".new.part " + file + ".new",
                 "fsync " + file + ".new", "fsync .sayloft",
                 "rename " + file + ".new " + file + ".saved", "fsync .sayloft", "fsync " + file});
}

TEST_P(ASaveOf, bringsTheVeryFirstCopyToTheDiskBeforeItTouchesTheFile) {
    test::removeCopies();
    traceIt();
    const std::string& file = GetParam();
    expectOrder({"write " + file + ".new.part", "rename " + file + ".new.part " + file + ".new",
                 "fsync " + file + ".new", "fsync .sayloft",
                 "rename " + file + ".new " + file + ".saved", "empty " + file, "write " + file});
}

INSTANTIATE_TEST_SUITE_P(Either, ASaveOf, testing::Values("config.json", "history.json"),
                         [](const auto& row) {
                             return row.param == "config.json" ? "settings" : "history";
                         });

}  // namespace
}  // namespace sayloft
