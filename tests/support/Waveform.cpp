// SPDX-License-Identifier: MIT
#include "tests/support/Waveform.h"

#include "tests/support/ChildProgram.h"

#include <QStringList>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <random>

namespace sayloft::test {
namespace {

constexpr std::size_t anchorLength = 400;

QStringList rawFormat(int rate) {
    return {QStringLiteral("-t"),     QStringLiteral("raw"), QStringLiteral("-e"),
            QStringLiteral("signed"), QStringLiteral("-b"),  QStringLiteral("16"),
            QStringLiteral("-c"),     QStringLiteral("1"),   QStringLiteral("-r"),
            QString::number(rate)};
}

double correlation(std::span<const std::int16_t> a, std::span<const std::int16_t> b) {
    double product = 0;
    double energyA = 0;
    double energyB = 0;
    for (std::size_t i = 0; i < a.size(); ++i) {
        product += static_cast<double>(a[i]) * b[i];
        energyA += static_cast<double>(a[i]) * a[i];
        energyB += static_cast<double>(b[i]) * b[i];
    }
    return energyA > 0 && energyB > 0 ? product / std::sqrt(energyA * energyB) : 0;
}

std::size_t loudestPart(std::span<const std::int16_t> sound, std::size_t length) {
    double energy = 0;
    double most = -1;
    std::size_t where = 0;
    for (std::size_t i = 0; i < sound.size(); ++i) {
        energy += static_cast<double>(sound[i]) * sound[i];
        if (i >= length)
            energy -= static_cast<double>(sound[i - length]) * sound[i - length];
        if (i + 1 >= length && energy > most) {
            most = energy;
            where = i + 1 - length;
        }
    }
    return where;
}

std::size_t likestPlace(std::span<const std::int16_t> anchor,
                        std::span<const std::int16_t> recording) {
    double best = -1;
    std::size_t where = 0;
    for (std::size_t i = 0; i + anchor.size() <= recording.size(); ++i) {
        const double likeness = correlation(anchor, recording.subspan(i, anchor.size()));
        if (likeness > best) {
            best = likeness;
            where = i;
        }
    }
    return where;
}

}  // namespace

Samples readSound(const QString& path) {
    const QByteArray raw = run(QStringLiteral("sox"), QStringList{path} + rawFormat(16000) +
                                                          QStringList{QStringLiteral("-")});
    Samples samples(static_cast<std::size_t>(raw.size()) / sizeof(std::int16_t));
    if (!samples.empty())
        std::memcpy(samples.data(), raw.constData(), samples.size() * sizeof(std::int16_t));
    return samples;
}

void writeSound(const QString& path, std::span<const std::int16_t> samples, int rate) {
    const QByteArray raw(reinterpret_cast<const char*>(samples.data()),
                         static_cast<qsizetype>(samples.size_bytes()));
    run(QStringLiteral("sox"), rawFormat(rate) + QStringList{QStringLiteral("-"), path}, raw);
}

void speak(const QString& sentence, const QString& path) {
    run(QStringLiteral("flite"), {QStringLiteral("-voice"), QStringLiteral("rms"),
                                  QStringLiteral("-t"), sentence, QStringLiteral("-o"), path});
}

Samples noise(std::size_t count, std::int16_t peak) {
    std::mt19937 generator(1);
    std::uniform_int_distribution<int> values(-peak, peak);
    Samples samples(count);
    std::generate(samples.begin(), samples.end(),
                  [&] { return static_cast<std::int16_t>(values(generator)); });
    return samples;
}

Match find(std::span<const std::int16_t> sound, std::span<const std::int16_t> recording) {
    const std::size_t length = std::min({anchorLength, sound.size(), recording.size()});
    const std::size_t anchor = loudestPart(sound, length);
    const std::size_t place = likestPlace(sound.subspan(anchor, length), recording);

    Match match;
    match.offset = static_cast<std::ptrdiff_t>(place) - static_cast<std::ptrdiff_t>(anchor);
    const auto missing = static_cast<std::size_t>(std::max<std::ptrdiff_t>(0, -match.offset));
    const auto begin = static_cast<std::size_t>(std::max<std::ptrdiff_t>(0, match.offset));
    match.heard = std::min(sound.size() - missing, recording.size() - begin);
    const auto said = sound.subspan(missing, match.heard);
    const auto heard = recording.subspan(begin, match.heard);
    for (std::size_t i = 0; i < match.heard; ++i)
        match.equal += said[i] == heard[i] ? 1U : 0U;
    match.likeness = correlation(said, heard);
    return match;
}

}  // namespace sayloft::test
