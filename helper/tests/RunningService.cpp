// SPDX-License-Identifier: MIT
#include "helper/tests/RunningService.h"

#include "tests/support/RawHttp.h"

#include <stdexcept>
#include <utility>

namespace sayloft::helper::test {

RunningService::RunningService(const RequestLimits& limits, HttpService::Recognise recognise)
    : m_port(sayloft::test::freePort()), m_service(limits) {
    const auto bound = m_service.bind(m_port);
    if (std::holds_alternative<Problem>(bound))
        throw std::runtime_error(std::get<Problem>(bound).reason);
    m_thread =
        std::jthread([this, recognise = std::move(recognise)] { m_service.serve(recognise); });
    static_cast<void>(sayloft::test::exchange(m_port, "GET / HTTP/1.1\r\n\r\n"));  // it is running
}

RunningService::~RunningService() {
    m_service.stop();
}

}  // namespace sayloft::helper::test
