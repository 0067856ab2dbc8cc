// SPDX-License-Identifier: MIT
#pragma once

#include "app/StatusItem.h"
#include "app/Windows.h"
#include "overlay/Overlay.h"

#include <string>
#include <vector>

namespace sayloft::test {

/// What a user would have seen, in order: one word or two per call.
using Seen = std::vector<std::string>;

class FakeStatusItem : public StatusItem {
public:
    explicit FakeStatusItem(Seen& seen) : m_seen(seen) {}
    void setState(IconState state) override;
    void setReason(const QString& reason) override {
        m_seen.push_back("reason " + reason.toStdString());
    }
    void buildMenu() override { m_seen.push_back("menu"); }

private:
    Seen& m_seen;
};

class FakeOverlay : public Overlay {
public:
    explicit FakeOverlay(Seen& seen) : m_seen(seen) {}
    void setActive(bool active) override { m_seen.push_back(active ? "pill on" : "pill off"); }
    void stopTimer() override { m_seen.push_back("timer stopped"); }
    void showStats(int wpm) override { m_seen.push_back("wpm " + std::to_string(wpm)); }
    void holdThenHide() override { m_seen.push_back("hold then hide"); }
    void configure(bool minimal, double appear, double hide, double hold) override;

private:
    Seen& m_seen;
};

class FakeWindows : public Windows {
public:
    explicit FakeWindows(Seen& seen) : m_seen(seen) {}
    void openOnboarding() override { m_seen.push_back("onboarding"); }
    void openSettings() override { m_seen.push_back("settings"); }
    void openDict() override { m_seen.push_back("dictionary"); }
    void refreshSettings() override { m_seen.push_back("settings refreshed"); }
    void refreshOnboarding() override { m_seen.push_back("onboarding refreshed"); }

private:
    Seen& m_seen;
};

}  // namespace sayloft::test
