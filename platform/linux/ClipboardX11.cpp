// SPDX-License-Identifier: MIT
#include "platform/linux/ClipboardX11.h"

#include "platform/linux/ClipboardAgentX11.h"
#include "platform/linux/SelectionThreadX11.h"
#include "platform/linux/XcbHandles.h"
#include "storage/Log.h"

#include <QHash>
#include <QMetaObject>
#include <QObject>
#include <QTimer>

#include <future>
#include <memory>
#include <utility>

namespace sayloft {
namespace {

using namespace std::chrono_literals;

// Longer than the agent needs in the worst case: these end waiting for a server that hangs.
constexpr auto LONGEST_SNAPSHOT = 1500ms;
constexpr auto LONGEST_OFFER = 1500ms;
constexpr auto LONGEST_HAND_OVER = 1000ms;

}  // namespace

// The main thread's side. Callbacks stay here, under a number, so that they are called and
// destroyed on the main thread; the agent only gets the number.
class ClipboardX11::Private : public QObject {
public:
    using Answer = std::optional<ClipboardSnapshot>;
    using Answered = std::function<void(Answer)>;
    using Question = std::function<void(ClipboardAgentX11&, Answered)>;

    Private();
    ~Private() override;

    void tell(std::function<void(ClipboardAgentX11&)> command);

    /// `answered` is called once: with what the agent answers, or after `deadline` with nothing.
    void ask(std::chrono::milliseconds deadline, Question question, const Answered& answered);
    void askWithoutResult(std::chrono::milliseconds deadline,
                          std::function<void(ClipboardAgentX11&, std::function<void()>)> question,
                          std::function<void()> answered);

    [[nodiscard]] bool hasServer() const { return m_thread != nullptr; }

private:
    void answer(quint64 number, Answer answer);

    std::unique_ptr<SelectionThreadX11> m_thread;  // null: no X server
    std::unique_ptr<ClipboardAgentX11> m_agent;    // made and used on the thread
    QHash<quint64, Answered> m_open;
    quint64 m_lastNumber = 0;
};

ClipboardX11::Private::Private() {
    XcbConnection connection = connectToXServer();
    if (!connection) {
        logf(QStringLiteral("clipboard: no X server"));
        return;
    }
    m_thread = std::make_unique<SelectionThreadX11>(std::move(connection));
    m_thread->start({.event = [this](const auto& event) { m_agent->handle(event); },
                     .connectionLost = [this] { m_agent->connectionLost(); }},
                    [this] { m_agent = std::make_unique<ClipboardAgentX11>(*m_thread); });
}

ClipboardX11::Private::~Private() {
    if (m_thread)
        m_thread->stop();
    m_agent = nullptr;
}

void ClipboardX11::Private::tell(std::function<void(ClipboardAgentX11&)> command) {
    if (m_thread)
        m_thread->post([this, command = std::move(command)] { command(*m_agent); });
}

void ClipboardX11::Private::ask(std::chrono::milliseconds deadline, Question question,
                                const Answered& answered) {
    const quint64 number = ++m_lastNumber;
    m_open.insert(number, answered);
    QTimer::singleShot(hasServer() ? deadline : 0ms, Qt::PreciseTimer, this,
                       [this, number] { answer(number, std::nullopt); });
    tell([this, number, question = std::move(question)](ClipboardAgentX11& agent) {
        question(agent, [this, number](Answer result) {
            QMetaObject::invokeMethod(
                this, [this, number, result = std::move(result)] { answer(number, result); },
                Qt::QueuedConnection);
        });
    });
}

void ClipboardX11::Private::askWithoutResult(
    std::chrono::milliseconds deadline,
    std::function<void(ClipboardAgentX11&, std::function<void()>)> question,
    std::function<void()> answered) {
    ask(
        deadline,
        [question = std::move(question)](ClipboardAgentX11& agent, Answered ready) {
            question(agent, [ready = std::move(ready)] { ready(std::nullopt); });
        },
        [answered = std::move(answered)](const Answer&) { answered(); });
}

void ClipboardX11::Private::answer(quint64 number, Answer answer) {
    if (const Answered answered = m_open.take(number))
        answered(std::move(answer));
}

ClipboardX11::ClipboardX11() : m_private(std::make_unique<Private>()) {}

ClipboardX11::~ClipboardX11() = default;

void ClipboardX11::prepareSnapshot() {
    m_private->tell([](ClipboardAgentX11& agent) { agent.prepareSnapshot(); });
}

void ClipboardX11::takeSnapshot(SnapshotTaken taken) {
    m_private->ask(
        LONGEST_SNAPSHOT,
        [](ClipboardAgentX11& agent, Private::Answered answered) {
            agent.takeSnapshot(std::move(answered));
        },
        taken);
}

void ClipboardX11::setText(const QString& text, ClipboardStay stay) {
    m_private->tell([text, stay](ClipboardAgentX11& agent) { agent.setText(text, stay); });
}

void ClipboardX11::whenTextFetched(std::chrono::milliseconds deadline, TextFetched fetched) {
    m_private->askWithoutResult(
        deadline,
        [](ClipboardAgentX11& agent, std::function<void()> answered) {
            agent.whenTextFetched(std::move(answered));
        },
        std::move(fetched));
}

void ClipboardX11::restore(const ClipboardSnapshot& snapshot) {
    m_private->tell([snapshot](ClipboardAgentX11& agent) { agent.restore(snapshot); });
}

void ClipboardX11::handOver() {
    if (!m_private->hasServer())
        return;
    auto handedOver = std::make_shared<std::promise<void>>();
    const std::future<void> done = handedOver->get_future();
    m_private->tell([handedOver](ClipboardAgentX11& agent) {
        agent.handOver([handedOver] { handedOver->set_value(); });
    });
    done.wait_for(LONGEST_HAND_OVER);
}

void ClipboardX11::whenOffered(std::function<void()> ready) {
    m_private->askWithoutResult(
        LONGEST_OFFER,
        [](ClipboardAgentX11&, const std::function<void()>& answered) { answered(); },
        std::move(ready));
}

void ClipboardX11::offerOnPrimary(std::function<void()> ready) {
    m_private->askWithoutResult(
        LONGEST_OFFER,
        [](ClipboardAgentX11& agent, std::function<void()> answered) {
            agent.offerOnPrimary(std::move(answered));
        },
        std::move(ready));
}

}  // namespace sayloft
