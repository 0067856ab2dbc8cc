// SPDX-License-Identifier: MIT
// The power fails before, between and after the calls of saves, and whatever the disk may hold then
// is read.
#include "storage/StoredFiles.h"
#include "storage/tests/SavingProgram.h"
#include "storage/tests/UncertainDisk.h"
#include "tests/support/TempHome.h"

#include <QFile>

#include <gmock/gmock.h>

#include <map>
#include <ostream>
#include <set>
#include <string>
#include <tuple>
#include <vector>

namespace sayloft {
namespace {

using test::Before;
using test::UncertainDisk;
using testing::AllOf;
using testing::Ge;
using testing::Le;

using namespace std::chrono_literals;

using Texts = std::map<QString, QByteArray>;  ///< by path

struct Kind {
    std::string name;
    KeptFile (*file)();
    int (*read)();  ///< the number of what is read, 0 when that is not complete
};

void PrintTo(const Kind& kind, std::ostream* out) {
    *out << kind.name;
}

std::string inShort(const test::TracedCall& call) {
    return (QStringList{call.name} + call.paths()).join(QLatin1Char(' ')).toStdString();
}

std::string inShort(const UncertainDisk::Folder& folder) {
    QString files;
    for (const auto& [path, text] : folder)
        files += QStringLiteral("%1: %2 bytes, %3 of them zero\n")
                     .arg(path)
                     .arg(text->size())
                     .arg(text->count('\0'));
    return files.toStdString();
}

class APowerCut : public test::SavingProgram,
                  public testing::WithParamInterface<std::tuple<Kind, Before>> {
public:
    static int readSettings() { return test::numberOf(Config::load()); }
    static int readHistory() { return test::numberOf(History(), transcriptSize); }

protected:
    APowerCut() {
        renewState();
        std::get<Before>(GetParam()).make();
    }

    /// What is read afterwards is one of these states or that before, and in the end the last one.
    void cutPowerDuringSaves(int first, int last, const QStringList& options = {}) {
        UncertainDisk disk(path());
        const std::vector<test::TracedCall> calls = traceInOrder(first, last, options);
        const Texts there = UncertainDisk(path()).now();
        std::set<UncertainDisk::Folder> seen;
        for (const test::TracedCall& call : calls) {
            disk.apply(call);
            for (const UncertainDisk::Folder& folder : disk.afterPowerCut()) {
                if (!seen.insert(folder).second)
                    continue;
                put(textsIn(folder));
                ASSERT_NO_FATAL_FAILURE(expectOneOf(first - 1, last))
                    << "after " << inShort(call) << "\n"
                    << inShort(folder);
            }
        }
        EXPECT_EQ(disk.now(), there) << "some calls were not seen, or in another order";
        ASSERT_EQ(disk.afterPowerCut().size(), 1U);
        put(textsIn(disk.afterPowerCut().front()));
        EXPECT_EQ(kind().read(), last);
    }

    void TearDown() override {
        RecordProperty("states", m_states);
        RecordProperty("readFromCopy", m_readFromCopy);
        EXPECT_GT(m_readFromCopy, 0) << "no state was one that matters";
    }

private:
    static const Kind& kind() { return std::get<Kind>(GetParam()); }
    static QString path() { return kind().file().path(); }

    static QStringList changes() {
        return {QStringLiteral("-e"),
                QStringLiteral("trace=openat,creat,close,write,pwrite64,writev,pwritev,truncate,"
                               "ftruncate,rename,renameat,renameat2,link,linkat,unlink,unlinkat,"
                               "fallocate,copy_file_range,sendfile,fsync,fdatasync")};
    }

    /// Tells the order of the calls for certain: otherwise they are made once more.
    std::vector<test::TracedCall> traceInOrder(int first, int last, const QStringList& options) {
        const Texts before = UncertainDisk(path()).now();
        for (int attempt = 1; attempt <= 10; ++attempt) {
            put(before);
            auto calls = traceSaves(first, last, changes() + options);
            if (!test::isOrderInDoubt(calls))
                return calls;
        }
        ADD_FAILURE() << "the order of the calls was never certain";
        return {};
    }

    static Texts textsIn(const UncertainDisk::Folder& folder) {
        Texts texts;
        for (const auto& [path, text] : folder)
            texts[path] = *text;
        return texts;
    }

    static void put(const Texts& texts) {
        for (const auto& [path, text] : UncertainDisk(path()).now())
            QFile::remove(path);
        for (const auto& [path, text] : texts)
            test::writeFile(path, text);
    }

    void expectOneOf(int first, int last) {
        ++m_states;
        m_readFromCopy += kind().file().read().source == KeptFile::Source::copy ? 1 : 0;
        ASSERT_THAT(kind().read(), AllOf(Ge(first), Le(last)));
        // As the next start of the program does.
        mendStoredFiles();
        KeptFile::waitForDisk(10s);
        ASSERT_THAT(kind().read(), AllOf(Ge(first), Le(last)));
    }

    int m_states = 0;
    int m_readFromCopy = 0;
};

TEST_P(APowerCut, leavesWhatWasSavedBeforeOrWhatIsBeingSaved) {
    for (int number = transcriptsBefore + 1; number <= transcriptsBefore + 3; ++number)
        ASSERT_NO_FATAL_FAILURE(cutPowerDuringSaves(number, number));
}

TEST_P(APowerCut, leavesOneOfManyThatAreSavedFasterThanTheDiskIs) {
    cutPowerDuringSaves(transcriptsBefore + 1, transcriptsBefore + 3,
                        {QStringLiteral("-e"), QStringLiteral("inject=fsync:delay_enter=20000")});
}

INSTANTIATE_TEST_SUITE_P(
    Of, APowerCut,
    testing::Combine(testing::Values(Kind{"settings", &Config::file, &APowerCut::readSettings},
                                     Kind{"history", &History::file, &APowerCut::readHistory}),
                     test::everyStart()),
    [](const auto& row) {
        return std::get<Kind>(row.param).name + "_" + std::get<Before>(row.param).name;
    });

}  // namespace
}  // namespace sayloft
