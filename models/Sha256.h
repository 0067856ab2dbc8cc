// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <openssl/evp.h>

#include <memory>

namespace sayloft {

/// The SHA-256 of bytes that come one after another, at the speed of the processor's own
/// instructions for it where it has them; Qt's has not.
class Sha256 {
public:
    Sha256();

    void add(QByteArrayView bytes);
    /// Forgets all that was added.
    void reset();
    /// 64 lower-case hexadecimal digits. Nothing but `reset` may follow.
    [[nodiscard]] QByteArray hex();

private:
    struct Free {
        void operator()(EVP_MD_CTX* context) const { EVP_MD_CTX_free(context); }
    };

    std::unique_ptr<EVP_MD_CTX, Free> m_context;
};

}  // namespace sayloft
