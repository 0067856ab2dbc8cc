// SPDX-License-Identifier: MIT
#include "models/Sha256.h"

#include <cstddef>

namespace sayloft {

// The calls fail only without memory or without an OpenSSL to speak of; the result is that of no
// file then.
Sha256::Sha256() : m_context(EVP_MD_CTX_new()) {
    reset();
}

void Sha256::add(QByteArrayView bytes) {
    EVP_DigestUpdate(m_context.get(), bytes.data(), static_cast<std::size_t>(bytes.size()));
}

void Sha256::reset() {
    EVP_DigestInit_ex(m_context.get(), EVP_sha256(), nullptr);
}

QByteArray Sha256::hex() {
    QByteArray digest(EVP_MAX_MD_SIZE, '\0');
    unsigned int size = 0;
    EVP_DigestFinal_ex(m_context.get(), reinterpret_cast<unsigned char*>(digest.data()), &size);
    return digest.first(size).toHex();
}

}  // namespace sayloft
