// SPDX-License-Identifier: MIT
#include "models/BodyDecoder.h"

#include "models/ResponseHead.h"

#include <algorithm>
#include <utility>

namespace sayloft {

constexpr qsizetype longestLine = 8192;

BodyDecoder::BodyDecoder(const ResponseHead& head)
    : m_isChunked(head.isChunked), m_left(head.length) {}

bool BodyDecoder::decode(QByteArrayView bytes, const Sink& sink) {
    if (m_isChunked)
        return decodeChunks(bytes, sink);
    if (!m_left)
        return bytes.isEmpty() || sink(bytes);
    // What follows belongs to nothing that we have asked for.
    return *m_left == 0 || bytes.isEmpty() || take(bytes, sink);
}

bool BodyDecoder::isComplete() const {
    return m_isChunked ? m_expected == Expected::nothing : m_left == 0;
}

bool BodyDecoder::decodeChunks(QByteArrayView bytes, const Sink& sink) {
    while (!bytes.isEmpty() && m_expected != Expected::nothing) {
        const bool isWell = m_expected == Expected::data ? take(bytes, sink) : takeLine(bytes);
        if (!isWell)
            return false;
        if (m_expected == Expected::data && *m_left == 0)
            m_expected = Expected::endOfData;
    }
    return true;
}

bool BodyDecoder::take(QByteArrayView& bytes, const Sink& sink) {
    const qsizetype count = std::min<qint64>(*m_left, bytes.size());
    const QByteArrayView piece = bytes.first(count);
    *m_left -= count;
    bytes = bytes.sliced(count);
    return sink(piece);
}

bool BodyDecoder::takeLine(QByteArrayView& bytes) {
    const qsizetype end = bytes.indexOf('\n');
    const qsizetype count = end < 0 ? bytes.size() : end + 1;
    m_line.append(bytes.first(count));
    bytes = bytes.sliced(count);
    if (m_line.size() > longestLine)
        return false;
    return end < 0 || understand(std::exchange(m_line, {}).trimmed());
}

bool BodyDecoder::understand(const QByteArray& line) {
    if (m_expected == Expected::endOfData) {
        m_expected = Expected::size;
        return line.isEmpty();
    }
    if (m_expected == Expected::trailer) {
        if (line.isEmpty())
            m_expected = Expected::nothing;
        return true;
    }
    bool isNumber = false;
    // What follows a semicolon is an extension of the chunk.
    const qint64 size = line.split(';').front().trimmed().toLongLong(&isNumber, 16);
    m_left = size;
    m_expected = size == 0 ? Expected::trailer : Expected::data;
    return isNumber && size >= 0;
}

}  // namespace sayloft
