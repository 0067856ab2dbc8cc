// SPDX-License-Identifier: MIT
#include "app/PatientRestart.h"

#include <utility>

namespace sayloft {

PatientRestart::PatientRestart(std::function<bool()> isAnswering, std::function<void()> restart,
                               std::chrono::milliseconds patience)
    : m_isAnswering(std::move(isAnswering)), m_restart(std::move(restart)) {
    m_patience.setSingleShot(true);
    m_patience.setInterval(patience);
    QObject::connect(&m_patience, &QTimer::timeout, &m_patience, [this] { now(); });
}

void PatientRestart::request() {
    if (!m_isAnswering())
        now();
    else if (!m_patience.isActive())
        m_patience.start();
}

void PatientRestart::review() {
    if (m_patience.isActive() && !m_isAnswering())
        now();
}

void PatientRestart::now() {
    m_patience.stop();
    m_restart();
}

}  // namespace sayloft
