// SPDX-License-Identifier: MIT
#include "helper/ModelFile.h"

#include "tests/support/TempHome.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <random>

#include <sys/stat.h>

namespace sayloft::helper {
namespace {

const std::string starter =
    "sayloft starter model 1\n"
    "# a comment\n\n"
    "acoustic-model = /a b/hmm\n"
    "  language-model=/lm.bin \r\n"
    "dictionary = /words.dict";

class ModelFileOnDisk : public testing::Test {
protected:
    [[nodiscard]] std::string path() const {
        return m_directory.filePath(QStringLiteral("some.model")).toStdString();
    }

    [[nodiscard]] Result<ModelFile> inspect(const std::string& content) const {
        sayloft::test::writeFile(QString::fromStdString(path()),
                                 QByteArray::fromStdString(content));
        return inspectModelFile(path());
    }

    [[nodiscard]] std::string reasonAgainst(const std::string& content) const {
        return std::get<Problem>(inspect(content)).reason;
    }

    QTemporaryDir m_directory;
};

TEST_F(ModelFileOnDisk, knowsAGgufFileByItsFirstFourBytes) {
    for (const std::string& content : {std::string("GGUF"), "GGUF" + std::string(100000, '\x7f')}) {
        const auto inspected = inspect(content);
        ASSERT_TRUE(std::holds_alternative<ModelFile>(inspected));
        EXPECT_TRUE(std::holds_alternative<GgufModel>(std::get<ModelFile>(inspected)));
    }
}

TEST_F(ModelFileOnDisk, readsTheStarterModel) {
    const auto inspected = inspect(starter);
    ASSERT_TRUE(std::holds_alternative<ModelFile>(inspected));
    const auto* model = std::get_if<StarterModel>(&std::get<ModelFile>(inspected));
    ASSERT_NE(model, nullptr);
    EXPECT_EQ(model->acousticModel, "/a b/hmm");
    EXPECT_EQ(model->languageModel, "/lm.bin");
    EXPECT_EQ(model->dictionary, "/words.dict");
}

TEST_F(ModelFileOnDisk, refusesWhatIsNeither) {
    const std::string reason =
        "the model " + path() + " is neither a GGUF file nor a starter model";
    EXPECT_EQ(reasonAgainst(""), reason);
    EXPECT_EQ(reasonAgainst("G"), reason);
    EXPECT_EQ(reasonAgainst("gguf"), reason);
    EXPECT_EQ(reasonAgainst("{\"json\": 1}"), reason);
    EXPECT_EQ(reasonAgainst(std::string(300000, '\0')), reason);
    EXPECT_EQ(reasonAgainst("sayloft starter model"), reason);
}

TEST_F(ModelFileOnDisk, namesThePlaceOfADamagedStarterModel) {
    const std::string damaged = "the starter model " + path() + " is damaged: ";
    EXPECT_EQ(reasonAgainst("sayloft starter model 1"), damaged + "it names no acoustic-model");
    EXPECT_EQ(reasonAgainst("sayloft starter model 12\n"),
              damaged + "it does not begin with \"sayloft starter model 1\"");
    EXPECT_EQ(reasonAgainst(starter.substr(0, starter.rfind('\n'))),
              damaged + "it names no dictionary");
    EXPECT_EQ(reasonAgainst(starter + "\ndictionary = /again"),
              damaged + "its line 7 is not understood");
    EXPECT_EQ(reasonAgainst("sayloft starter model 1\nnonsense"),
              damaged + "its line 2 is not understood");
    EXPECT_EQ(reasonAgainst("sayloft starter model 1\ndictionary = relative/path"),
              damaged + "its line 2 is not understood");
    EXPECT_EQ(reasonAgainst("sayloft starter model 1\nother = /path"),
              damaged + "its line 2 is not understood");
}

TEST_F(ModelFileOnDisk, refusesAStarterModelWithoutEnd) {
    EXPECT_EQ(reasonAgainst("sayloft starter model 1\n" + std::string(100000, '#')),
              "the starter model " + path() + " is too long");
}

TEST_F(ModelFileOnDisk, readsOnlyTheBeginningOfAHugeFile) {
    QFile file(QString::fromStdString(path()));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_TRUE(file.resize(qint64{1} << 40)) << "a sparse file of 1 TiB";
    EXPECT_EQ(std::get<Problem>(inspectModelFile(path())).reason,
              "the model " + path() + " is neither a GGUF file nor a starter model");
}

TEST_F(ModelFileOnDisk, refusesWhatIsNotAFileWithoutWaitingOnIt) {
    const std::string directory = m_directory.path().toStdString();
    EXPECT_EQ(std::get<Problem>(inspectModelFile(directory)).reason,
              "the model " + directory + " is not a file");
    ASSERT_EQ(::mkfifo(path().c_str(), 0600), 0);
    EXPECT_EQ(std::get<Problem>(inspectModelFile(path())).reason,
              "the model " + path() + " is not a file");
    EXPECT_EQ(std::get<Problem>(inspectModelFile("/dev/zero")).reason,
              "the model /dev/zero is not a file");
}

TEST_F(ModelFileOnDisk, saysWhyAFileCannotBeRead) {
    EXPECT_EQ(std::get<Problem>(inspectModelFile(path())).reason,
              "cannot read the model " + path() + ": No such file or directory");
    EXPECT_EQ(std::get<Problem>(inspectModelFile("/proc/self/mem")).reason,
              "cannot read the model /proc/self/mem: Input/output error");
}

TEST(StarterModelText, survivesRandomChanges) {
    std::mt19937 random(42);  // NOLINT(bugprone-*): the same run every time
    int taken = 0;
    for (int round = 0; round < 50000; ++round) {
        std::string text = starter;
        for (auto changes = random() % 4; changes > 0; --changes)
            text[random() % text.size()] = static_cast<char>(random());
        text.resize(random() % 3 == 0 ? random() % text.size() : text.size());
        taken += std::holds_alternative<StarterModel>(parseStarterModel(text)) ? 1 : 0;
    }
    EXPECT_GT(taken, 5000);
    EXPECT_LT(taken, 49000);
}

TEST(StarterModelFiles, areReportedWhenOneIsMissing) {
    const auto checked = checkStarterModel({"/nowhere", "/nowhere.lm", "/nowhere.dict"});
    EXPECT_EQ(std::get<Problem>(checked).reason,
              "/nowhere/mdef is missing or unreadable, install the package pocketsphinx-en-us");
}

}  // namespace
}  // namespace sayloft::helper
