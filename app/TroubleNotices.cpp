// SPDX-License-Identifier: MIT
#include "app/TroubleNotices.h"

#include "platform/Notifier.h"

#include <QTimer>

#include <utility>

namespace sayloft {
namespace {

QString keyOf(Trouble trouble) {
    return QStringLiteral("trouble %1").arg(static_cast<int>(trouble));
}

}  // namespace

TroubleNotices::TroubleNotices(Notifier& notifier, std::chrono::milliseconds settle)
    : m_notifier(notifier), m_settle(settle) {}

TroubleNotices::~TroubleNotices() = default;

void TroubleNotices::raise(Trouble trouble) {
    const auto [notice, isNew] = m_notices.try_emplace(trouble);
    if (!isNew && notice->second.holds)
        return;
    notice->second.holds = true;
    if (isNew)
        tell(trouble);
    changed();
}

void TroubleNotices::clear(Trouble trouble) {
    const auto notice = m_notices.find(trouble);
    if (notice == m_notices.end() || !notice->second.holds)
        return;
    notice->second.holds = false;
    const int absence = ++notice->second.absences;
    QTimer::singleShot(m_settle, this, [this, trouble, absence] { settled(trouble, absence); });
    changed();
}

std::vector<Trouble> TroubleNotices::current() const {
    std::vector<Trouble> holding;
    for (const auto& [trouble, notice] : m_notices) {
        if (notice.holds)
            holding.push_back(trouble);
    }
    return holding;
}

void TroubleNotices::tell(Trouble trouble) {
    TroubleText text = troubleText(trouble);
    Notification notification{
        .key = keyOf(trouble), .summary = std::move(text.summary), .body = std::move(text.remedy)};
    if (onAction && !text.action.isEmpty()) {
        notification.actionLabel = std::move(text.action);
        notification.onActivated = [this, trouble] {
            if (onAction)
                onAction(trouble);
        };
    }
    m_notifier.show(std::move(notification));
}

void TroubleNotices::settled(Trouble trouble, int absence) {
    const auto notice = m_notices.find(trouble);
    if (notice == m_notices.end() || notice->second.holds || notice->second.absences != absence)
        return;
    m_notices.erase(notice);
    m_notifier.withdraw(keyOf(trouble));
}

void TroubleNotices::changed() const {
    if (onChange)
        onChange();
}

}  // namespace sayloft
