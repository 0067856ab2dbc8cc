// SPDX-License-Identifier: MIT
// Every call to the kernel that a save makes fails in its turn, or the room ends at any byte, and
// what that leaves is read.
#include "storage/tests/SavingProgram.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <functional>
#include <ostream>
#include <string>
#include <tuple>
#include <vector>

namespace sayloft {
namespace {

using test::Before;
using test::SavingProgram;
using testing::AnyOf;

struct Fault {
    std::string name;
    QString calls;
    QString error;
};

void PrintTo(const Fault& fault, std::ostream* out) {
    *out << fault.name;
}

class AFaultySave : public SavingProgram {
protected:
    /// Whether a call has failed.
    bool saveWithFault(const Fault& fault, const QString& when) {
        save(transcriptsBefore + 1,
             strace({QStringLiteral("-e"), QStringLiteral("trace=") + fault.calls,
                     QStringLiteral("-e"),
                     QStringLiteral("inject=%1:error=%2:when=%3")
                         .arg(fault.calls, fault.error, when)}));
        return trace().contains("(INJECTED)");
    }

    /// Both are complete and those from before the fault or after it.
    static void expectOldOrNew() {
        EXPECT_THAT(test::numberOf(Config::load()),
                    AnyOf(transcriptsBefore, transcriptsBefore + 1));
        EXPECT_THAT(test::numberOf(History(), transcriptSize),
                    AnyOf(transcriptsBefore, transcriptsBefore + 1));
    }

    void expectNextSaveWorks() {
        constexpr int next = transcriptsBefore + 2;
        save(next);
        EXPECT_EQ(Config::load(), test::settingsOf(next));
        ASSERT_FALSE(History().items().empty());
        EXPECT_EQ(History().items().front(), test::transcriptOf(next, transcriptSize));
        EXPECT_GE(History().items().size(), std::size_t{transcriptsBefore + 1});
        for (const QString& file : {Config::url(), History::url()})
            EXPECT_EQ(test::readFile(file + QStringLiteral(".saved")), test::readFile(file));
        EXPECT_TRUE(m_home.log().startsWith(QStringLiteral("an older line\n")));
        EXPECT_TRUE(m_home.log().endsWith(QStringLiteral("saved %1\n").arg(next)));
    }

    void expectNothingLost() {
        expectOldOrNew();
        expectNextSaveWorks();
    }
};

class AFaultyCall : public AFaultySave,
                    public testing::WithParamInterface<std::tuple<Before, Fault>> {
protected:
    /// Lets the first call fail, the second one and so on, until no more than that are made.
    void failEveryCall(const QString& andTheNext) {
        for (int call = 1;; ++call) {
            SCOPED_TRACE(testing::Message() << "call " << call);
            renewState();
            std::get<Before>(GetParam()).make();
            if (!saveWithFault(std::get<Fault>(GetParam()), QString::number(call) + andTheNext)) {
                EXPECT_GT(call, 1) << "no call was seen";
                RecordProperty("calls", call - 1);
                return;
            }
            expectNothingLost();
            ASSERT_FALSE(HasFailure());
        }
    }
};

TEST_P(AFaultyCall, losesNothing) {
    failEveryCall({});
}

TEST_P(AFaultyCall, losesNothingWhereAllFailFromThenOn) {
    failEveryCall(QStringLiteral("+"));
}

INSTANTIATE_TEST_SUITE_P(
    By, AFaultyCall,
    testing::Combine(
        test::everyStart(),
        testing::Values(
            Fault{"aFullDiskAtAWrite", QStringLiteral("write"), QStringLiteral("ENOSPC")},
            Fault{"anErrorAtAWrite", QStringLiteral("write"), QStringLiteral("EIO")},
            Fault{"aFullDiskAtAnOpening", QStringLiteral("openat"), QStringLiteral("ENOSPC")},
            Fault{"aFullDiskAtARenaming", QStringLiteral("rename"), QStringLiteral("ENOSPC")},
            Fault{"anErrorAtASynchronisation", QStringLiteral("fsync"), QStringLiteral("EIO")},
            Fault{"aFullDiskAtAll", QStringLiteral("write,openat,rename,fsync"),
                  QStringLiteral("ENOSPC")})),
    [](const auto& row) {
        return std::get<Before>(row.param).name + "_" + std::get<Fault>(row.param).name;
    });

/// A text of the user's that is no settings, in place of what was saved before.
class ABrokenFile : public AFaultySave, public testing::WithParamInterface<Fault> {
protected:
    /// Whether it is in one of the files that the program reads or keeps aside.
    static bool isSomewhere(const QByteArray& text) {
        const QDir folder(DATA_DIR);
        const QStringList files = folder.entryList({QStringLiteral("config.json*")}, QDir::Files);
        return std::any_of(files.begin(), files.end(), [&](const QString& file) {
            return test::readFile(folder.filePath(file)) == text;
        });
    }

    void expectBothKept() const {
        EXPECT_TRUE(isSomewhere(m_slip));
        EXPECT_TRUE(isSomewhere(test::settingsOf(transcriptsBefore).encode()));
    }

    void failEveryCall(const QString& andTheNext) {
        for (int call = 1;; ++call) {
            SCOPED_TRACE(testing::Message() << "call " << call);
            renewState();
            test::writeFile(Config::url(), m_slip);
            const bool hasFailed = saveWithFault(GetParam(), QString::number(call) + andTheNext);
            expectBothKept();
            save(transcriptsBefore + 2);
            expectBothKept();
            EXPECT_EQ(Config::load(), test::settingsOf(transcriptsBefore + 2));
            if (!hasFailed || HasFailure()) {
                EXPECT_GT(call, 1);
                return;
            }
        }
    }

    /// Longer than the settings, so that they find room in its place.
    const QByteArray m_slip = QByteArray(20'000, ' ') + "model = starter";
};

TEST_P(ABrokenFile, losesNeitherItsTextNorWhatWasSavedBefore) {
    failEveryCall({});
}

TEST_P(ABrokenFile, losesNeitherWhereAllCallsFailFromThenOn) {
    failEveryCall(QStringLiteral("+"));
}

INSTANTIATE_TEST_SUITE_P(By, ABrokenFile,
                         testing::Values(Fault{"aFullDiskAtAWrite", QStringLiteral("write"),
                                               QStringLiteral("ENOSPC")},
                                         Fault{"aFullDiskAtARenaming", QStringLiteral("rename"),
                                               QStringLiteral("ENOSPC")},
                                         Fault{"anErrorAtASynchronisation", QStringLiteral("fsync"),
                                               QStringLiteral("EIO")}),
                         [](const auto& row) { return row.param.name; });

class TheEndOfTheRoom : public AFaultySave {
protected:
    void endItEverywhere(const std::function<void()>& before) {
        renewState();
        const qsizetype largest = test::readFile(Config::url()).size();
        constexpr int step = 97;
        for (int room = 0; room < largest + step; room += step) {
            SCOPED_TRACE(testing::Message() << room << " bytes of room");
            renewState();
            before();
            save(transcriptsBefore + 1,
                 {QStringLiteral("prlimit"), QStringLiteral("--fsize=%1").arg(room)});
            expectNothingLost();
            ASSERT_FALSE(HasFailure());
        }
    }
};

TEST_F(TheEndOfTheRoom, losesNothingWhereverItIs) {
    endItEverywhere([] {});
}

TEST_F(TheEndOfTheRoom, losesNothingOfFilesWithoutCopiesWhereverItIs) {
    endItEverywhere(test::removeCopies);
}

}  // namespace
}  // namespace sayloft
