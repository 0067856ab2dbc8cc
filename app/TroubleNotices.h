// SPDX-License-Identifier: MIT
#pragma once

#include "app/Trouble.h"

#include <QObject>

#include <chrono>
#include <functional>
#include <map>
#include <vector>

namespace sayloft {

class Notifier;

/// Tells the user of hard failures that the icon alone cannot explain, once per cause. Main thread;
/// the notifier must outlive it.
class TroubleNotices : public QObject {
public:
    /// A cause that comes back within `settle` has never been away: it is not told again.
    explicit TroubleNotices(Notifier& notifier,
                            std::chrono::milliseconds settle = std::chrono::seconds(3));
    ~TroubleNotices() override;
    TroubleNotices(const TroubleNotices&) = delete;
    TroubleNotices& operator=(const TroubleNotices&) = delete;

    /// The cause holds. May be called as often as that is noticed.
    void raise(Trouble trouble);

    /// The cause does not hold, or no longer. Its notification goes when it has stayed away.
    void clear(Trouble trouble);

    /// The causes that hold, the most severe first.
    [[nodiscard]] std::vector<Trouble> current() const;

    /// Called when `current()` has changed.
    std::function<void()> onChange;

    /// Called when the user takes the action that the notification offers; without it none does.
    std::function<void(Trouble)> onAction;

private:
    struct Notice {
        bool holds = true;
        int absences = 0;  ///< tells the newest absence from earlier ones
    };

    void tell(Trouble trouble);
    void settled(Trouble trouble, int absence);
    void changed() const;

    Notifier& m_notifier;
    std::chrono::milliseconds m_settle;
    std::map<Trouble, Notice> m_notices;  ///< of the causes that have been told
};

}  // namespace sayloft
