// SPDX-License-Identifier: MIT
#pragma once

#include "helper/HttpService.h"

#include <cstdint>
#include <thread>

namespace sayloft::helper::test {

/// An HTTP service that answers on a free port when the constructor returns.
class RunningService {
public:
    /// `recognise` must be able to return when this object ends.
    RunningService(const RequestLimits& limits, HttpService::Recognise recognise);
    ~RunningService();
    RunningService(const RunningService&) = delete;
    RunningService& operator=(const RunningService&) = delete;

    [[nodiscard]] std::uint16_t port() const { return m_port; }

private:
    std::uint16_t m_port;
    HttpService m_service;
    std::jthread m_thread;
};

}  // namespace sayloft::helper::test
