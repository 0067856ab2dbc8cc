// SPDX-License-Identifier: MIT
#include "models/DownloadAddress.h"

#include <gtest/gtest.h>

namespace sayloft {
namespace {

TEST(DownloadAddress, isAnywhereOverHttpsAndThisMachineOverHttp) {
    for (const char* address :
         {"https://models.example/a", "https://127.0.0.1/a", "http://localhost:8080/a",
          "http://127.0.0.1/a", "http://127.9.9.9/a", "http://[::1]:80/a",
          "HTTPS://models.example/a"})
        EXPECT_TRUE(mayDownloadFrom(QUrl(QString::fromUtf8(address)))) << address;
}

TEST(DownloadAddress, isNowhereElse) {
    for (const char* address :
         {"http://models.example/a", "http://localhost.models.example/a", "http://192.168.0.1/a",
          "http://127.0.0.1.models.example/a", "http://localhost@models.example/a",
          "ftp://localhost/a", "file:///etc/hostname", "https:///a", "/a", ""})
        EXPECT_FALSE(mayDownloadFrom(QUrl(QString::fromUtf8(address)))) << address;
}

}  // namespace
}  // namespace sayloft
