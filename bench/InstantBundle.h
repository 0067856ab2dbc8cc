// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <chrono>

namespace sayloft::bench {

/// The build's bundle with a server that answers at once in place of its helper.
class InstantBundle {
public:
    using Clock = std::chrono::steady_clock;

    /// Installs it at `root`; throws std::runtime_error when that fails.
    explicit InstantBundle(const QString& root);

    [[nodiscard]] QString root() const { return m_root; }
    /// The first recording that the server got.
    [[nodiscard]] QString recording() const;

    struct Request {
        Clock::time_point arrived;
        Clock::time_point answered;
    };
    /// The one that the server has answered as its `number`th, from 1; throws unless it is the
    /// last.
    [[nodiscard]] Request lastRequest(int number) const;

private:
    [[nodiscard]] QString model() const;

    QString m_root;
};

}  // namespace sayloft::bench
