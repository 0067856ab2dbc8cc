// SPDX-License-Identifier: MIT
#include "models/LinkedEntity.h"

#include <gtest/gtest.h>

namespace sayloft {
namespace {

const QByteArray digest = QByteArray("0123456789abcdef").repeated(4);

TEST(LinkedEntity, takesADigestWithAndWithoutQuotesInEitherCase) {
    EXPECT_EQ(LinkedEntity::fromHeaders('"' + digest + '"', {}).sha256, digest);
    EXPECT_EQ(LinkedEntity::fromHeaders(digest, {}).sha256, digest);
    EXPECT_EQ(LinkedEntity::fromHeaders(" \"" + digest.toUpper() + "\" ", {}).sha256, digest);
}

TEST(LinkedEntity, takesNothingElseForADigest) {
    for (const QByteArray& tag :
         {QByteArray(), QByteArray("\""), QByteArray("\"\""), digest.chopped(2), digest + "00",
          digest.chopped(1) + 'g', "W/\"" + digest + '"', QByteArray("\"5f3c-17\"")})
        EXPECT_EQ(LinkedEntity::fromHeaders(tag, {}).sha256, QByteArray()) << tag.constData();
}

TEST(LinkedEntity, takesASizeThatIsANumber) {
    EXPECT_EQ(LinkedEntity::fromHeaders({}, "1234567890123").size, 1234567890123);
    EXPECT_EQ(LinkedEntity::fromHeaders({}, "0").size, 0);
    for (const char* size : {"", "-1", "12 MB", "0x10"})
        EXPECT_EQ(LinkedEntity::fromHeaders({}, size).size, std::nullopt) << size;
}

TEST(LinkedEntity, keepsWhatALaterRedirectDoesNotSay) {
    LinkedEntity entity{.sha256 = digest, .size = 7};
    entity.updateFrom({});
    EXPECT_EQ(entity, (LinkedEntity{.sha256 = digest, .size = 7}));
    entity.updateFrom({.sha256 = {}, .size = 8});
    EXPECT_EQ(entity, (LinkedEntity{.sha256 = digest, .size = 8}));
}

}  // namespace
}  // namespace sayloft
