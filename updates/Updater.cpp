// SPDX-License-Identifier: MIT
#include "updates/Updater.h"

#include <utility>

namespace sayloft {

Updater::Updater(UpdateSource source) : m_source(std::move(source)) {}

void Updater::checkForUpdates() {
    if (!m_check) {
        m_window.showChecking();
        m_check = std::make_unique<UpdateCheck>(m_source, [this](const UpdateAnswer& answer) {
            m_window.showAnswer(answer);
            m_check.reset();
        });
    }
    show();
}

void Updater::show() {
    m_window.show();
    m_window.raise();
    m_window.activateWindow();
}

}  // namespace sayloft
