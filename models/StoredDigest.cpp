// SPDX-License-Identifier: MIT
#include "models/StoredDigest.h"

#include <algorithm>

namespace sayloft {

// No more than a hundredth of a second of hashing.
constexpr qint64 sliceSize = qint64{2} * 1024 * 1024;

StoredDigest::StoredDigest(const QString& path, qint64 length)
    : m_file(path), m_left(length), m_slice(sliceSize, Qt::Uninitialized) {
    static_cast<void>(m_file.open(QIODevice::ReadOnly | QIODevice::Unbuffered));
}

StoredDigest::Progress StoredDigest::feed(Sha256& hash) {
    const qint64 count = m_file.read(m_slice.data(), std::min(sliceSize, m_left));
    if (count <= 0)
        return m_left == 0 ? Progress::complete : Progress::failed;
    hash.add(QByteArrayView(m_slice).first(count));
    m_left -= count;
    return m_left == 0 ? Progress::complete : Progress::more;
}

}  // namespace sayloft
