// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <string>
#include <vector>

namespace sayloft::test {

/// The modes of a folder ("0700 .") and of all folders and files in it ("0600 name/of/file"); links
/// are left out.
[[nodiscard]] std::vector<std::string> modesIn(const QString& folder);

}  // namespace sayloft::test
