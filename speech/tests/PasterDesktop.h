// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Clipboard.h"
#include "platform/KeyPoster.h"

#include <QByteArray>
#include <QString>

#include <algorithm>
#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace sayloft::test {

/// Something that a user would see.
struct DesktopEvent {
    std::string what;
    std::chrono::steady_clock::time_point when;
};

/// What a user would see: everything that happens to the clipboard and the keyboard, in order.
struct Desktop {
    std::vector<DesktopEvent> events;

    void note(std::string what) {
        events.push_back({std::move(what), std::chrono::steady_clock::now()});
    }

    [[nodiscard]] std::vector<std::string> happened() const {
        std::vector<std::string> names;
        for (const DesktopEvent& event : events)
            names.push_back(event.what);
        return names;
    }

    [[nodiscard]] bool has(const std::string& what) const {
        return std::any_of(events.begin(), events.end(),
                           [&](const DesktopEvent& event) { return event.what == what; });
    }

    [[nodiscard]] std::chrono::milliseconds between(std::size_t one, std::size_t other) const {
        return std::chrono::duration_cast<std::chrono::milliseconds>(events.at(other).when -
                                                                     events.at(one).when);
    }
};

inline ClipboardSnapshot plainText(const QByteArray& text) {
    return {.items = {{{.type = "text/plain", .data = text}}}};
}

inline std::string describe(const ClipboardSnapshot& snapshot) {
    return snapshot.items.empty() ? "nothing" : snapshot.items[0][0].data.toStdString();
}

/// When a fake answers.
enum class Answer { atOnce, whenTold };

/// A clipboard that notes on the desktop what happens to it.
class DesktopClipboard : public Clipboard {
public:
    explicit DesktopClipboard(Desktop& desktop) : m_desktop(desktop) {}

    void prepareSnapshot() override { m_desktop.note("prepare"); }
    void takeSnapshot(SnapshotTaken taken) override {
        m_desktop.note("snapshot");
        const auto now = m_readable ? std::optional(m_content) : std::nullopt;
        if (snapshots == Answer::atOnce)
            return taken(now);
        m_answerSnapshot = [taken = std::move(taken), now] { taken(now); };
    }
    void setText(const QString& text, ClipboardStay stay) override {
        stays.push_back(stay);
        m_content = plainText(text.toUtf8());
        m_desktop.note("set " + text.toStdString());
    }
    void whenTextFetched(std::chrono::milliseconds deadline, TextFetched fetched) override {
        m_deadline = deadline;
        if (fetches == Answer::atOnce)
            return fetched();
        m_answerFetch = std::move(fetched);
    }
    void restore(const ClipboardSnapshot& snapshot) override {
        m_content = snapshot;
        m_desktop.note("restore " + describe(snapshot));
    }
    void handOver() override {}

    void putByUser(const ClipboardSnapshot& content) { m_content = content; }
    void hangOwner() { m_readable = false; }
    [[nodiscard]] const ClipboardSnapshot& content() const { return m_content; }
    [[nodiscard]] std::chrono::milliseconds fetchDeadline() const { return m_deadline; }
    void fetch() { std::exchange(m_answerFetch, nullptr)(); }
    void answerSnapshot() { std::exchange(m_answerSnapshot, nullptr)(); }

    Answer snapshots = Answer::atOnce;
    Answer fetches = Answer::atOnce;
    std::vector<ClipboardStay> stays;

private:
    Desktop& m_desktop;
    ClipboardSnapshot m_content;
    bool m_readable = true;
    std::chrono::milliseconds m_deadline{0};
    TextFetched m_answerFetch;
    std::function<void()> m_answerSnapshot;
};

/// A keyboard that notes on the desktop what is typed.
class DesktopKeyPoster : public KeyPoster {
public:
    explicit DesktopKeyPoster(Desktop& desktop) : m_desktop(desktop) {}

    void postKey(std::uint16_t virtualKey, std::uint64_t flags, Posted posted) override {
        m_desktop.note("key " + std::to_string(virtualKey) + " flags " + std::to_string(flags));
        if (keys == Answer::atOnce)
            return posted();
        m_posted = std::move(posted);
    }
    void whenReady(const Posted& ready) override {
        if (!isBusy)
            return ready();
        m_ready = ready;
    }
    void answer() { std::exchange(m_posted, nullptr)(); }
    void becomeReady() { std::exchange(m_ready, nullptr)(); }

    Answer keys = Answer::atOnce;
    bool isBusy = false;

private:
    Desktop& m_desktop;
    Posted m_posted;
    Posted m_ready;
};

}  // namespace sayloft::test
