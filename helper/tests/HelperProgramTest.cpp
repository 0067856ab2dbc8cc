// SPDX-License-Identifier: MIT
#include "helper/tests/HelperBundle.h"
#include "tests/support/RawHttp.h"
#include "tests/support/TempHome.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

namespace sayloft::helper {
namespace {

using namespace std::chrono_literals;
using sayloft::test::ChildProgram;
using sayloft::test::freePort;
using sayloft::test::writeFile;
using test::expectFailure;
using test::HelperBundle;
using test::installProgram;

class HelperProgram : public testing::Test {
protected:
    [[nodiscard]] QString modelFile(const QByteArray& content) const {
        QString path = m_bundle.root() + QStringLiteral("/some.gguf");
        writeFile(path, content);
        return path;
    }

    HelperBundle m_bundle;
};

TEST_F(HelperProgram, explainsItsUse) {
    const QString usage =
        QStringLiteral("usage: parakeet-server --model PATH --host 127.0.0.1 --port PORT");
    expectFailure(m_bundle.run({}), usage);
    expectFailure(m_bundle.run({QStringLiteral("--help")}), usage);
}

TEST_F(HelperProgram, isForThisMachineAlone) {
    QStringList arguments = HelperBundle::arguments(m_bundle.starterModel(), freePort());
    arguments[3] = QStringLiteral("0.0.0.0");
    expectFailure(
        m_bundle.run(arguments),
        QStringLiteral("--host must be 127.0.0.1, this server is for this machine alone"));
}

TEST_F(HelperProgram, saysThatTheModelCannotBeRead) {
    expectFailure(
        m_bundle.runWith(QStringLiteral("/nowhere/x.gguf")),
        QStringLiteral("cannot read the model /nowhere/x.gguf: No such file or directory"));
    expectFailure(m_bundle.runWith(m_bundle.root()),
                  QStringLiteral("the model %1 is not a file").arg(m_bundle.root()));
}

TEST_F(HelperProgram, keepsItsMessageToOneLineWhateverThePath) {
    expectFailure(m_bundle.runWith(QStringLiteral("/no\nwhere")),
                  QStringLiteral("cannot read the model /no?where: No such file or directory"));
}

TEST_F(HelperProgram, refusesAModelOfAnUnknownKind) {
    for (const QByteArray& content : {QByteArray(), QByteArray("\x7f"
                                                               "ELF\x02\x01\x01\0",
                                                               8)}) {
        const QString path = modelFile(content);
        expectFailure(
            m_bundle.runWith(path),
            QStringLiteral("the model %1 is neither a GGUF file nor a starter model").arg(path));
    }
}

TEST_F(HelperProgram, saysWhereItLookedForAGgufServer) {
    expectFailure(m_bundle.runWith(modelFile("GGUF\3\0\0\0")),
                  QStringLiteral("this is a GGUF model, and no server for it was found at %1 or %2")
                      .arg(m_bundle.serverBesideUs(), m_bundle.serverInSourceTree()));
}

// Runs the helper on a GGUF model and expects the fake server at `place` in its stead.
void expectHandOver(const HelperBundle& bundle, const QString& model, const QString& place) {
    const QStringList arguments = HelperBundle::arguments(model, 8090);
    ChildProgram helper(bundle.program(), arguments);
    const qint64 pid = helper.pid();
    ASSERT_TRUE(helper.waitForEnd(20s));
    EXPECT_EQ(helper.exitCode(), 0) << helper.standardError().toStdString();
    const QStringList said =
        QString::fromUtf8(helper.standardOutput()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    const QStringList expected =
        QStringList{QString::number(pid), QStringLiteral("parakeet-server"), place} + arguments;
    EXPECT_EQ(said, expected) << said.join(QLatin1Char('\n')).toStdString();
}

TEST_F(HelperProgram, becomesTheServerBesideItWithTheSameProcessIdAndName) {
    installProgram(QStringLiteral(FAKE_GGUF_SERVER), m_bundle.serverBesideUs());
    expectHandOver(m_bundle, modelFile("GGUF"), m_bundle.serverBesideUs());
}

TEST_F(HelperProgram, becomesTheServerInTheSourceTreeWhenThereIsNoneBesideIt) {
    installProgram(QStringLiteral(FAKE_GGUF_SERVER), m_bundle.serverInSourceTree());
    expectHandOver(m_bundle, modelFile("GGUF"), m_bundle.serverInSourceTree());
}

TEST_F(HelperProgram, prefersTheServerBesideIt) {
    installProgram(QStringLiteral(FAKE_GGUF_SERVER), m_bundle.serverBesideUs());
    installProgram(QStringLiteral(FAKE_GGUF_SERVER), m_bundle.serverInSourceTree());
    expectHandOver(m_bundle, modelFile("GGUF"), m_bundle.serverBesideUs());
}

TEST_F(HelperProgram, keepsItsNameWhenTheServerIsALinkToAnotherName) {
    const QString elsewhere = m_bundle.root() + QStringLiteral("/some-other-name");
    installProgram(QStringLiteral(FAKE_GGUF_SERVER), elsewhere);
    QDir().mkpath(QFileInfo(m_bundle.serverBesideUs()).path());
    ASSERT_TRUE(QFile::link(elsewhere, m_bundle.serverBesideUs()));
    expectHandOver(m_bundle, modelFile("GGUF"), m_bundle.serverBesideUs());
}

TEST_F(HelperProgram, looksBesideItsRealSelfWhenStartedThroughALink) {
    installProgram(QStringLiteral(FAKE_GGUF_SERVER), m_bundle.serverBesideUs());
    const QString link = m_bundle.root() + QStringLiteral("/link");
    ASSERT_TRUE(QFile::link(m_bundle.program(), link));
    ChildProgram helper(link, HelperBundle::arguments(modelFile("GGUF"), 8090));
    ASSERT_TRUE(helper.waitForEnd(20s));
    EXPECT_TRUE(helper.standardOutput().contains(m_bundle.serverBesideUs().toUtf8()));
}

TEST_F(HelperProgram, goesOnToTheSecondPlaceWhenTheFirstCannotBeRun) {
    installProgram(QStringLiteral(FAKE_GGUF_SERVER), m_bundle.serverInSourceTree());
    const QString model = modelFile("GGUF");
    QDir().mkpath(m_bundle.serverBesideUs());
    expectHandOver(m_bundle, model, m_bundle.serverInSourceTree());
    QDir().rmdir(m_bundle.serverBesideUs());
    writeFile(m_bundle.serverBesideUs(), "not executable");
    expectHandOver(m_bundle, model, m_bundle.serverInSourceTree());
    QFile::setPermissions(m_bundle.serverBesideUs(), QFile::ReadOwner | QFile::ExeOwner);
    expectHandOver(m_bundle, model, m_bundle.serverInSourceTree());
}

TEST_F(HelperProgram, saysThatTheGgufServerCannotBeStarted) {
    writeFile(m_bundle.serverBesideUs(), QByteArray(100, '\x01'));
    QFile::setPermissions(m_bundle.serverBesideUs(), QFile::ReadOwner | QFile::ExeOwner);
    expectFailure(m_bundle.runWith(modelFile("GGUF")),
                  QStringLiteral("cannot start the server for GGUF models: %1: Exec format error")
                      .arg(m_bundle.serverBesideUs()));
}

TEST_F(HelperProgram, neverTakesItselfForTheGgufServer) {
    QDir().mkpath(QFileInfo(m_bundle.serverBesideUs()).path());
    ASSERT_TRUE(QFile::link(m_bundle.program(), m_bundle.serverBesideUs()));
    expectFailure(m_bundle.runWith(modelFile("GGUF")),
                  QStringLiteral("this is a GGUF model, and no server for it was found at %1 or %2")
                      .arg(m_bundle.serverBesideUs(), m_bundle.serverInSourceTree()));
}

TEST_F(HelperProgram, doesNotHandOverInARingOfCopies) {
    installProgram(m_bundle.program(), m_bundle.serverBesideUs());
    const QString back = QFileInfo(m_bundle.serverBesideUs()).path() +
                         QStringLiteral("/parakeet.cpp/parakeet-server");
    QDir().mkpath(QFileInfo(back).path());
    ASSERT_TRUE(QFile::link(m_bundle.program(), back));
    expectFailure(m_bundle.runWith(modelFile("GGUF")),
                  QStringLiteral("the server found for GGUF models is a copy of this program"));
}

}  // namespace
}  // namespace sayloft::helper
