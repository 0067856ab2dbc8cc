// SPDX-License-Identifier: MIT
// A dictionary of 1,000 entries over a transcript of 10,000 characters, in turns with the same by
// Qt and by Python's regular expressions. Those are compiled before: ours prepares nothing.
#include "bench/BenchMain.h"
#include "bench/Result.h"
#include "speech/Replacements.h"
#include "tests/support/ChildProgram.h"

#include <chrono>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace sayloft::bench {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int entries = 1000;
constexpr int characters = 10000;
constexpr int rounds = 15;

/// Every word is in the dictionary, in another case.
QString transcript() {
    QString text;
    for (int word = 0; text.size() < characters; ++word)
        text += QStringLiteral("SAID%1 ").arg((word * 7) % entries, 3, 10, QLatin1Char('0'));
    return text.left(characters);
}

std::vector<std::vector<QString>> dictionary() {
    std::vector<std::vector<QString>> pairs;
    pairs.reserve(entries);
    for (int i = 0; i < entries; ++i) {
        const QString number = QStringLiteral("%1").arg(i, 3, 10, QLatin1Char('0'));
        pairs.push_back({QStringLiteral("said") + number, QStringLiteral("Written ") + number});
    }
    return pairs;
}

constexpr const char* peerProgram = R"(
import re, sys, time
text = sys.stdin.read()
pairs = [(re.compile('said%03d' % i, re.IGNORECASE), 'Written %03d' % i) for i in range(1000)]
def run():
    result = text
    for heard, written in pairs:
        result = heard.sub(lambda match: written, result)
    return result
run()
begin = time.perf_counter()
result = run()
print(1000 * (time.perf_counter() - begin))
print(result)
)";

/// What a way of doing it took in every round, and what it made of the text.
struct Way {
    std::vector<double> milliseconds;
    QString result;
};

using Replace = std::function<QString()>;

void time(Way& way, const Replace& replace) {
    const auto begin = Clock::now();
    way.result = replace();
    way.milliseconds.push_back(
        std::chrono::duration<double, std::milli>(Clock::now() - begin).count());
}

void runPython(Way& way, const QString& text) {
    const QByteArray answer =
        test::run(QStringLiteral("python3"),
                  {QStringLiteral("-c"), QString::fromLatin1(peerProgram)}, text.toUtf8());
    const qsizetype end = answer.indexOf('\n');
    way.milliseconds.push_back(answer.first(end).toDouble());
    way.result = QString::fromUtf8(answer.mid(end + 1)).chopped(1);
}

QString replacedByQt(QString text, const std::vector<std::vector<QString>>& pairs) {
    for (const auto& pair : pairs)
        text.replace(pair.front(), pair.back(), Qt::CaseInsensitive);
    return text;
}

void report(const Way& ours, const char* peer, const Way& theirs) {
    if (ours.result != theirs.result)
        throw std::runtime_error(std::string("another result: ") + peer);
    printMilliseconds("1,000 replacements over 10,000 characters", ours.milliseconds, peer,
                      theirs.milliseconds);
}

void runBench() {
    const QString text = transcript();
    const auto pairs = dictionary();
    Way ours;
    Way qt;
    Way python;
    for (int round = 0; round < rounds; ++round) {
        time(ours, [&] { return applyReplacements(text, pairs); });
        time(qt, [&] { return replacedByQt(text, pairs); });
        runPython(python, text);
    }
    report(ours, "QString::replace", qt);
    report(ours, "python3, re, compiled", python);
}

}  // namespace
}  // namespace sayloft::bench

int main(int argc, char** argv) {
    return sayloft::bench::benchMain(argc, argv, &sayloft::bench::runBench);
}
