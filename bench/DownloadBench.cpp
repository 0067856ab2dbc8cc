// SPDX-License-Identifier: MIT
// What it takes to download a large model from nginx on this machine, against curl on the same file
// in the same run. Ours is a program that does nothing else; it waits until the file is on the
// disk, which curl leaves to the system, so that curl is also measured together with sync.
#include "bench/BenchMain.h"
#include "bench/Result.h"
#include "tests/support/ChildProgram.h"
#include "tests/support/Nginx.h"
#include "tests/support/ProcessFigures.h"
#include "tests/support/TempHome.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace sayloft::bench {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr qint64 modelSize = 1'200'000'000;
constexpr int rounds = 3;

/// What some rounds took.
struct Row {
    std::vector<double> seconds;
    std::vector<double> peakMiB;
};

/// 0 when it has just ended.
long peakKbOf(qint64 pid) {
    try {
        return test::peakKilobytesOf(pid);
    } catch (const std::runtime_error&) {
        return 0;
    }
}

/// The largest of a program and of those that it has started.
long peakKbOfAll(qint64 pid) {
    const QString children = QStringLiteral("/proc/%1/task/%1/children").arg(pid);
    long most = peakKbOf(pid);
    for (const QByteArray& child : test::readFile(children).simplified().split(' '))
        most = std::max(most, child.isEmpty() ? 0 : peakKbOf(child.toLongLong()));
    return most;
}

class Bench {
public:
    Bench() : m_nginx(redirect(digest())) {
        QFile model(m_nginx.root() + QStringLiteral("/model"));
        if (!model.open(QIODevice::WriteOnly) || !model.resize(modelSize))
            throw std::runtime_error("the model cannot be made");
    }

    void run() {
        for (int round = 0; round < rounds; ++round) {
            measure(m_ours, QStringLiteral(DOWNLOAD_ONCE), {url("/model"), m_destination});
            measure(m_verified, QStringLiteral(DOWNLOAD_ONCE), {url("/link"), m_destination});
            measure(m_curl, QStringLiteral("curl"), curlArguments());
            measure(m_synced, QStringLiteral("sh"), curlAnd("sync \"$4\""));
            measure(m_summed, QStringLiteral("sh"),
                    curlAnd("sync \"$4\" && sha256sum \"$4\" >/dev/null"));
        }
    }

    void report() const {
        print({.name = "download of 1.2 GB, on the disk at the end",
               .value = seconds(m_ours),
               .peer = "curl; sync",
               .peerValue = seconds(m_synced)});
        print({.name = "download of 1.2 GB with its SHA-256, likewise",
               .value = seconds(m_verified),
               .peer = "curl; sync; sha256sum",
               .peerValue = seconds(m_summed)});
        print({.name = "download of 1.2 GB, likewise",
               .value = seconds(m_ours),
               .peer = "curl alone",
               .peerValue = seconds(m_curl)});
        print({.name = "peak memory of the download",
               .value = peak(m_ours),
               .peer = "curl",
               .peerValue = peak(m_curl)});
        print({.name = "peak memory of the download with its SHA-256",
               .value = peak(m_verified),
               .peer = "curl; sync; sha256sum",
               .peerValue = peak(m_summed)});
    }

private:
    static QByteArray redirect(const QByteArray& digest) {
        return "location = /link { add_header X-Linked-ETag '\"" + digest +
               "\"' always; return 302 /model; }";
    }

    // As another program computes it.
    static QByteArray digest() {
        return test::run(QStringLiteral("sh"),
                         {QStringLiteral("-c"),
                          QStringLiteral("head -c %1 /dev/zero | sha256sum").arg(modelSize)},
                         {}, QProcessEnvironment::systemEnvironment(), 120s)
            .left(64);
    }

    [[nodiscard]] QString url(const char* path) const {
        return m_nginx.url(QString::fromUtf8(path)).toString();
    }

    [[nodiscard]] QStringList curlArguments() const {
        return {QStringLiteral("--silent"), QStringLiteral("--fail"), QStringLiteral("--output"),
                m_destination, url("/model")};
    }

    /// Arguments of a shell that runs curl and then `commands`, which know the file as $4.
    [[nodiscard]] QStringList curlAnd(const char* commands) const {
        return QStringList{QStringLiteral("-c"),
                           QStringLiteral("curl \"$@\" && ") + QString::fromUtf8(commands),
                           QStringLiteral("sh")} +
               curlArguments();
    }

    void measure(Row& row, const QString& program, const QStringList& arguments) const {
        QFile::remove(m_destination);
        // What the round before has left to be written is no part of this one.
        test::run(QStringLiteral("sync"), {}, {}, QProcessEnvironment::systemEnvironment(), 120s);
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("HOME"), m_directory.path());
        const auto begin = Clock::now();
        test::ChildProgram child(program, arguments, environment);
        long peakKb = 0;
        while (!child.waitForEnd(5ms))
            peakKb = std::max(peakKb, peakKbOfAll(child.pid()));
        row.seconds.push_back(std::chrono::duration<double>(Clock::now() - begin).count());
        row.peakMiB.push_back(static_cast<double>(peakKb) / 1024.0);
        if (child.exitCode() != 0 || QFileInfo(m_destination).size() != modelSize)
            throw std::runtime_error(program.toStdString() + " failed");
    }

    [[nodiscard]] static std::string seconds(const Row& row) {
        const auto [least, most] = std::minmax_element(row.seconds.begin(), row.seconds.end());
        return describe(medianOf(row.seconds), 2, "s") + " (" + describe(*least, 2, "to ") +
               describe(*most, 2, "s") + ")";
    }

    [[nodiscard]] static std::string peak(const Row& row) {
        return describe(*std::max_element(row.peakMiB.begin(), row.peakMiB.end()), 1, "MiB");
    }

    const QTemporaryDir m_directory;
    const QString m_destination = m_directory.filePath(QStringLiteral("model"));
    const test::Nginx m_nginx;
    Row m_ours;
    Row m_verified;
    Row m_curl;
    Row m_synced;
    Row m_summed;
};

}  // namespace
}  // namespace sayloft::bench

int main(int argc, char** argv) {
    return sayloft::bench::benchMain(argc, argv, [] {
        sayloft::bench::Bench bench;
        bench.run();
        bench.report();
    });
}
