// SPDX-License-Identifier: MIT
// A dictionary of 1,000 entries over a transcript of 10,000 characters, and the same by Python's
// regular expressions.
#include "bench/BenchMain.h"
#include "bench/Result.h"
#include "speech/Replacements.h"
#include "tests/support/ChildProgram.h"

#include <chrono>
#include <stdexcept>
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
text, pairs = sys.stdin.read(), [('said%03d' % i, 'Written %03d' % i) for i in range(1000)]
def run():
    result = text
    for heard, written in pairs:
        result = re.sub(re.escape(heard), lambda match: written, result, flags=re.IGNORECASE)
    return result
for i in range(15):
    re.purge()
    begin = time.perf_counter()
    result = run()
    print(1000 * (time.perf_counter() - begin))
print(result)
)";

void runBench() {
    const QString text = transcript();
    const auto pairs = dictionary();
    std::vector<double> ours;
    QString result;
    for (int round = 0; round < rounds; ++round) {
        const auto begin = Clock::now();
        result = applyReplacements(text, pairs);
        ours.push_back(std::chrono::duration<double, std::milli>(Clock::now() - begin).count());
    }
    const QByteArray answer =
        test::run(QStringLiteral("python3"),
                  {QStringLiteral("-c"), QString::fromLatin1(peerProgram)}, text.toUtf8());
    QList<QByteArray> lines = answer.chopped(1).split('\n');
    if (QString::fromUtf8(lines.takeLast()) != result)
        throw std::runtime_error("the results differ");
    std::vector<double> theirs;
    for (const QByteArray& line : lines)
        theirs.push_back(line.toDouble());
    print({.name = "1,000 replacements over 10,000 characters",
           .value = describeMilliseconds(ours),
           .peer = "python3, re",
           .peerValue = describeMilliseconds(theirs)});
}

}  // namespace
}  // namespace sayloft::bench

int main(int argc, char** argv) {
    return sayloft::bench::benchMain(argc, argv, &sayloft::bench::runBench);
}
