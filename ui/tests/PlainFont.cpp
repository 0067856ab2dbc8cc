// SPDX-License-Identifier: MIT
#include "ui/tests/PlainFont.h"

#include "tests/support/TempHome.h"

#include <QByteArray>
#include <QString>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <stdexcept>
#include <vector>

namespace sayloft::test {
namespace {

constexpr const char* fullFont = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";

/// Characters that follow each other and whose glyphs do, as a font lists them.
struct Run {
    quint32 first;
    quint32 last;
    quint32 glyph;
};

constexpr std::array ordinary{Run{0x20, 0x7E, 0},     Run{0xA0, 0xFF, 0},
                              Run{0x2013, 0x2014, 0}, Run{0x201C, 0x201D, 0},
                              Run{0x2022, 0x2022, 0}, Run{0x2026, 0x2026, 0}};

constexpr qsizetype headerOfFont = 12;
constexpr qsizetype entryOfTable = 16;
constexpr qsizetype headerOfMap = 4;
constexpr qsizetype entryOfMap = 8;
constexpr qsizetype headerOfRuns = 16;
constexpr qsizetype sizeOfRun = 12;
constexpr quint16 longRuns = 12;  ///< the format of a list of runs with 32 bits

template <typename Number>
Number read(const QByteArray& font, qsizetype at) {
    return qFromBigEndian<Number>(font.sliced(at, sizeof(Number)).constData());
}

template <typename Number>
void append(QByteArray& bytes, Number number) {
    const Number bigEndian = qToBigEndian(number);
    bytes.append(reinterpret_cast<const char*>(&bigEndian), sizeof(bigEndian));
}

qsizetype placeOfMap(const QByteArray& font) {
    for (qsizetype i = 0; i < read<quint16>(font, 4); ++i) {
        const qsizetype entry = headerOfFont + i * entryOfTable;
        if (font.sliced(entry, 4) == "cmap")
            return read<quint32>(font, entry + 8);
    }
    throw std::runtime_error("a font without a map of characters");
}

std::vector<Run> runsOf(const QByteArray& font, qsizetype map) {
    for (qsizetype i = 0; i < read<quint16>(font, map + 2); ++i) {
        const qsizetype list = map + read<quint32>(font, map + headerOfMap + i * entryOfMap + 4);
        if (read<quint16>(font, list) != longRuns)
            continue;
        std::vector<Run> runs;
        for (quint32 run = 0; run < read<quint32>(font, list + 12); ++run) {
            const qsizetype at = list + headerOfRuns + run * sizeOfRun;
            runs.push_back({read<quint32>(font, at), read<quint32>(font, at + 4),
                            read<quint32>(font, at + 8)});
        }
        return runs;
    }
    throw std::runtime_error("a font without a list of runs");
}

std::vector<Run> ordinaryOnes(const std::vector<Run>& runs) {
    std::vector<Run> kept;
    for (const Run& wanted : ordinary) {
        for (const Run& run : runs) {
            const quint32 first = std::max(wanted.first, run.first);
            const quint32 last = std::min(wanted.last, run.last);
            if (first <= last)
                kept.push_back({first, last, run.glyph + first - run.first});
        }
    }
    return kept;
}

QByteArray mapOf(const std::vector<Run>& runs) {
    const auto count = static_cast<quint32>(runs.size());
    QByteArray map;
    for (const quint16 number : std::array<quint16, 4>{0, 1, 3, 10})  // one list, of all of Unicode
        append(map, number);
    append(map, static_cast<quint32>(headerOfMap + entryOfMap));
    append(map, longRuns);
    append(map, quint16{0});
    append(map, static_cast<quint32>(headerOfRuns + count * sizeOfRun));
    append(map, quint32{0});
    append(map, count);
    for (const Run& run : runs) {
        append(map, run.first);
        append(map, run.last);
        append(map, run.glyph);
    }
    return map;
}

QByteArray plainFont() {
    QByteArray font = readFile(QString::fromLatin1(fullFont));
    const qsizetype map = placeOfMap(font);
    const QByteArray plainer = mapOf(ordinaryOnes(runsOf(font, map)));
    return font.replace(map, plainer.size(), plainer);
}

}  // namespace

PlainFont::PlainFont() {
    writeFile(m_directory.filePath(QStringLiteral("plain.ttf")), plainFont());
    const QByteArray directory = m_directory.path().toUtf8();
    const QString configuration = m_directory.filePath(QStringLiteral("fonts.conf"));
    writeFile(configuration, "<fontconfig><dir>" + directory + "</dir><cachedir>" + directory +
                                 "</cachedir></fontconfig>");
    qputenv("FONTCONFIG_FILE", configuration.toUtf8());
}

}  // namespace sayloft::test
