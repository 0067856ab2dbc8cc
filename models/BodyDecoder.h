// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QtGlobal>

#include <functional>
#include <optional>

namespace sayloft {

struct ResponseHead;

/// Takes the file out of the body of an HTTP response and knows where it ends.
class BodyDecoder {
public:
    /// Gets a piece of the file; false when it wants no more.
    using Sink = std::function<bool(QByteArrayView)>;

    explicit BodyDecoder(const ResponseHead& head);

    /// `bytes` continue the body. False when they are no body, or the sink wants no more.
    [[nodiscard]] bool decode(QByteArrayView bytes, const Sink& sink);

    /// Whether everything has come that the host has announced.
    [[nodiscard]] bool isComplete() const;
    /// Whether only the end of the connection tells the end of the body.
    [[nodiscard]] bool endsWithTheConnection() const { return !m_isChunked && !m_left; }

private:
    enum class Expected { size, data, endOfData, trailer, nothing };

    [[nodiscard]] bool decodeChunks(QByteArrayView bytes, const Sink& sink);
    [[nodiscard]] bool take(QByteArrayView& bytes, const Sink& sink);
    [[nodiscard]] bool takeLine(QByteArrayView& bytes);
    [[nodiscard]] bool understand(const QByteArray& line);

    const bool m_isChunked;
    std::optional<qint64> m_left;  ///< of the body, or of the chunk
    Expected m_expected = Expected::size;
    QByteArray m_line;
};

}  // namespace sayloft
