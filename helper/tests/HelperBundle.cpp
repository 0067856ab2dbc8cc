// SPDX-License-Identifier: MIT
#include "helper/tests/HelperBundle.h"

#include "helper/tests/SampleRequests.h"
#include "tests/support/RawHttp.h"
#include "tests/support/WaitUntil.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <stdexcept>

namespace sayloft::helper::test {

using namespace std::chrono_literals;

void expectFailure(const Ending& ending, const QString& line) {
    EXPECT_EQ(ending.exitCode, 1);
    EXPECT_EQ(ending.standardOutput.toStdString(), "");
    EXPECT_EQ(ending.standardError.toStdString(),
              (QStringLiteral("parakeet-server: ") + line + QLatin1Char('\n')).toStdString());
}

void installProgram(const QString& program, const QString& place) {
    QDir().mkpath(QFileInfo(place).path());
    if (!QFile::copy(program, place))
        throw std::runtime_error("cannot copy " + program.toStdString());
}

HelperBundle::HelperBundle() {
    installProgram(QStringLiteral(HELPER_PROGRAM), program());
    installProgram(QStringLiteral(STARTER_MODEL), starterModel());
}

QString HelperBundle::program() const {
    return root() + QStringLiteral("/Sayloft.app/Contents/Helpers/parakeet-server");
}

QString HelperBundle::starterModel() const {
    return root() + QStringLiteral("/Sayloft.app/Contents/Resources/models/starter-en-us.model");
}

QString HelperBundle::serverBesideUs() const {
    return root() + QStringLiteral("/Sayloft.app/Contents/Helpers/parakeet.cpp/parakeet-server");
}

QString HelperBundle::serverInSourceTree() const {
    return root() + QStringLiteral("/parakeet.cpp/build/examples/server/parakeet-server");
}

QStringList HelperBundle::arguments(const QString& model, std::uint16_t port) {
    return {QStringLiteral("--model"), model,
            QStringLiteral("--host"),  QStringLiteral("127.0.0.1"),
            QStringLiteral("--port"),  QString::number(port)};
}

Ending HelperBundle::run(const QStringList& arguments) const {
    sayloft::test::ChildProgram helper(program(), arguments);
    EXPECT_TRUE(helper.waitForEnd(20s)) << "the helper did not end";
    const QString output = QString::fromUtf8(helper.standardOutput());
    return {helper.exitCode(), output, QString::fromUtf8(helper.standardError())};
}

Ending HelperBundle::runWith(const QString& model) const {
    return run(arguments(model, sayloft::test::freePort()));
}

StarterServer::StarterServer()
    : m_port(sayloft::test::freePort()),
      m_program(m_bundle.program(), HelperBundle::arguments(m_bundle.starterModel(), m_port)) {
    const bool up = sayloft::test::waitUntil(
        [this] { return !m_program.isRunning() || sayloft::test::isListening(m_port); }, 20s);
    // The answer comes once the model is loaded.
    if (!up || sayloft::test::exchange(m_port, "GET / HTTP/1.1\r\n\r\n").status != 200)
        throw std::runtime_error("the helper did not come up: " +
                                 m_program.standardError().toStdString());
}

std::string StarterServer::transcribe(const std::string& wav) const {
    sayloft::test::RawConnection connection(m_port);
    connection.send(postOf(appForm(wav)));
    const auto reply = connection.readReply(120s);
    EXPECT_EQ(reply.status, 200) << reply.body;
    return reply.body;
}

}  // namespace sayloft::helper::test
