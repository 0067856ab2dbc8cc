// SPDX-License-Identifier: MIT
#include "models/Sha256.h"

#include <QCryptographicHash>

#include <gtest/gtest.h>

namespace sayloft {
namespace {

// The first of the examples that came with the standard, and that of nothing at all.
TEST(Sha256, isThatOfTheStandard) {
    Sha256 hash;
    hash.add("abc");
    EXPECT_EQ(hash.hex(), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    EXPECT_EQ(Sha256().hex(), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
}

TEST(Sha256, isTheSameHoweverTheBytesAreCut) {
    const QByteArray bytes(100'000, 'x');
    const QByteArray expected = QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex();
    for (const qsizetype piece : {1, 63, 64, 65, 4096, 99'999}) {
        Sha256 hash;
        for (qsizetype at = 0; at < bytes.size(); at += piece)
            hash.add(QByteArrayView(bytes).sliced(at).first(qMin(piece, bytes.size() - at)));
        EXPECT_EQ(hash.hex(), expected) << piece;
    }
}

TEST(Sha256, beginsAnew) {
    Sha256 hash;
    hash.add("something else");
    hash.reset();
    hash.add("abc");
    EXPECT_EQ(hash.hex().first(8), "ba7816bf");
    hash.reset();
    hash.add("abc");
    EXPECT_EQ(hash.hex().first(8), "ba7816bf");
}

}  // namespace
}  // namespace sayloft
