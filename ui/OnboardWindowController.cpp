// SPDX-License-Identifier: MIT
#include "ui/OnboardWindowController.h"

#include "app/AppDelegate.h"
#include "models/ModelCatalogue.h"
#include "models/StarterModel.h"
#include "ui/GlyphText.h"
#include "ui/PlainWindow.h"
#include "ui/RoomyButton.h"
#include "ui/TextLabel.h"

#include <QDialog>
#include <QEvent>
#include <QGridLayout>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

#include <chrono>
#include <initializer_list>

namespace sayloft {
namespace {

constexpr std::chrono::seconds pollInterval(1);

TextLabel* makeStatus() {
    return new TextLabel(QString(), {.width = 110});
}

void setStatus(TextLabel& label, bool isMet) {
    label.setText(
        isMet ? displayable(QStringLiteral("✓ Ready"), QStringLiteral("Ready"), label.font())
              : displayable(QStringLiteral("✕ Not yet"), QStringLiteral("Not yet"), label.font()));
    label.setRole(isMet ? TextRole::good : TextRole::warning);
}

struct StepRow {
    const char* title;  ///< null for a line that belongs to the step above
    QWidget* middle;
    QPushButton* button;
};

QGridLayout* makeGrid(std::initializer_list<StepRow> steps) {
    auto* grid = new QGridLayout;
    grid->setVerticalSpacing(16);
    grid->setHorizontalSpacing(14);
    int row = 0;
    for (const StepRow& step : steps) {
        if (step.title)
            grid->addWidget(new TextLabel(QString::fromUtf8(step.title),
                                          {.look = {.weight = QFont::Medium}, .width = 130}),
                            row, 0, Qt::AlignLeading | Qt::AlignVCenter);
        grid->addWidget(step.middle, row, 1, Qt::AlignLeading | Qt::AlignVCenter);
        grid->addWidget(step.button, row, 2, Qt::AlignVCenter);
        // Return is for "Done", wherever the keyboard is.
        step.button->setAutoDefault(false);
        ++row;
    }
    return grid;
}

void explain(QWidget& control, const QString& name, const QString& description) {
    control.setAccessibleName(name);
    control.setAccessibleDescription(description);
    control.setToolTip(description);
}

void centre(QWidget& window) {
    QRect frame({}, window.sizeHint());
    frame.moveCenter(window.screen()->availableGeometry().center());
    window.setGeometry(frame);
}

}  // namespace

OnboardWindowController::OnboardWindowController(AppDelegate& theApp)
    : app(&theApp),
      m_window(std::make_unique<QDialog>()),
      micStatus(makeStatus()),
      accStatus(makeStatus()),
      modelStatus(makeStatus()),
      m_starterOffer(new TextLabel(
          QStringLiteral("The small starter model works at once, in English."),
          {.look = {.size = 11, .role = TextRole::secondary}, .width = 210, .wraps = true})),
      m_hotkeys(new TextLabel(
          displayable(QStringLiteral("Hold ⌘⇧ to dictate. “Dictate + Enter” is off — add or change "
                                     "either combo anytime."),
                      QStringLiteral("Hold Shift+Super to dictate. “Dictate + Enter” is off — add "
                                     "or change either combo anytime.")),
          {.look = {.size = 11, .role = TextRole::secondary}, .width = 210, .wraps = true})),
      m_tray(new TextLabel(
          QStringLiteral(
              "No tray here: add one to your panel (GNOME: the AppIndicator extension)."),
          {.look = {.size = 11, .role = TextRole::secondary}, .width = 430, .wraps = true})),
      micBtn(new RoomyButton(QStringLiteral("Grant"))),
      accBtn(new RoomyButton(QStringLiteral("Grant"))),
      modelBtn(new RoomyButton(QStringLiteral("Download"))),
      m_useStarter(new RoomyButton(QStringLiteral("Use Starter"))),
      hotkeyBtn(new RoomyButton(QStringLiteral("Customize…"))),
      m_done(new RoomyButton(QStringLiteral("Done"))) {
    build();
    describe();
    connectActions();
    refresh();
    centre(*m_window);
}

OnboardWindowController::~OnboardWindowController() {
    m_window->removeEventFilter(this);
}

QWidget& OnboardWindowController::window() {
    return *m_window;
}

void OnboardWindowController::build() {
    auto* content = new QWidget;
    auto* layout = new QVBoxLayout(content);
    layout->setContentsMargins(24, 24, 24, 24);
    layout->setSpacing(16);
    layout->addWidget(new TextLabel(QStringLiteral("Welcome to Sayloft"),
                                    {.look = {.size = 18, .weight = QFont::Bold}}));
    layout->addWidget(
        new TextLabel(QStringLiteral("Grant two permissions — the model downloads automatically."),
                      {.look = {.size = 12, .role = TextRole::secondary}}));
    layout->addLayout(makeGrid({{"1. Microphone", micStatus, micBtn},
                                {"2. Accessibility", accStatus, accBtn},
                                {"3. Model", modelStatus, modelBtn},
                                {nullptr, m_starterOffer, m_useStarter},
                                {"4. Hotkeys", m_hotkeys, hotkeyBtn}}));
    layout->addWidget(m_tray);
    layout->addWidget(m_done, 0, Qt::AlignLeading);
    layout->addStretch();
    makePlainWindow(*m_window);
    fillWindow(*m_window, content, {480, 360});
    m_window->setWindowTitle(QStringLiteral("Welcome to Sayloft"));
    m_window->installEventFilter(this);
}

// What the steps are called comes from a system that asks for permissions; here the tooltips say
// what stands behind them.
void OnboardWindowController::describe() {
    explain(*micBtn, QStringLiteral("Grant microphone"),
            QStringLiteral("Lets Sayloft record through the sound server, PipeWire or PulseAudio"));
    explain(*accBtn, QStringLiteral("Grant accessibility"),
            QStringLiteral("Lets Sayloft see through the X server which modifier keys are held, "
                           "and press the keys that paste"));
    explain(*modelBtn, QStringLiteral("Download model"),
            QStringLiteral("Downloads the speech model that is selected in the settings"));
    explain(*m_useStarter, m_useStarter->text(),
            QStringLiteral("Transcribes with the starter model from now on; the other model stays "
                           "in the settings, to be used once it is there"));
    explain(*hotkeyBtn, QStringLiteral("Customize hotkeys…"),
            QStringLiteral("Opens the settings, where hotkeys are added and removed"));
    explain(*m_done, QStringLiteral("Done"), QStringLiteral("Closes this window"));
    m_done->setToolTip(QString());
    micStatus->setAccessibleDescription(QStringLiteral("State of the microphone"));
    accStatus->setAccessibleDescription(QStringLiteral("State of the keyboard's reach"));
    modelStatus->setAccessibleDescription(QStringLiteral("State of the speech model"));
    m_hotkeys->setToolTip(displayable(QStringLiteral("⌘ is the Super key, ⇧ is Shift"), QString()));
}

void OnboardWindowController::connectActions() {
    connect(micBtn, &QPushButton::clicked, this, [this] { grantMic(); });
    connect(accBtn, &QPushButton::clicked, this, [this] { grantAcc(); });
    connect(modelBtn, &QPushButton::clicked, this, [this] { downloadStep(); });
    connect(m_useStarter, &QPushButton::clicked, this, [this] { useStarter(); });
    connect(hotkeyBtn, &QPushButton::clicked, this, [this] { customizeHotkeys(); });
    connect(m_done, &QPushButton::clicked, this, [this] { finish(); });
    m_done->setDefault(true);
    timer.setInterval(pollInterval);
    connect(&timer, &QTimer::timeout, this, [this] { refresh(); });
}

void OnboardWindowController::show() {
    refresh();
    if (app && !app->models().downloading() && !modelDownloaded(app->cfg.model))
        app->models().setModel(app->cfg.model);
    if (!timer.isActive())
        timer.start();
    bringToFront(*m_window);
}

void OnboardWindowController::refresh() {
    const bool micGranted = app && app->permissions().micGranted();
    setStatus(*micStatus, micGranted);
    micBtn->setEnabled(!micGranted);
    const bool accessibilityGranted = app && app->permissions().accessibilityGranted();
    setStatus(*accStatus, accessibilityGranted);
    accBtn->setEnabled(!accessibilityGranted);
    m_tray->setVisible(app && app->trayMissing());
    refreshModel();
    refreshStarter();
}

void OnboardWindowController::refreshModel() {
    if (app && app->models().downloading()) {
        const int percent = static_cast<int>(app->models().downloadProgress() * 100);
        modelStatus->setText(QStringLiteral("Downloading… %1%").arg(percent));
        modelStatus->setRole(TextRole::secondary);
        modelBtn->setEnabled(false);
        return;
    }
    const bool isThere = modelDownloaded(app ? app->cfg.model : QStringLiteral("multilingual"));
    setStatus(*modelStatus, isThere);
    modelBtn->setEnabled(!isThere);
}

void OnboardWindowController::refreshStarter() {
    const auto starter = starterModel();
    const bool helps = app && !modelDownloaded(app->cfg.model) && starter &&
                       existingModelPath(starter->file).has_value();
    m_starterOffer->setVisible(helps);
    m_useStarter->setVisible(helps);
}

void OnboardWindowController::grantMic() {
    if (app)
        app->permissions().grantMic([self = QPointer(this)] {
            if (self)
                self->refresh();
        });
}

void OnboardWindowController::grantAcc() {
    if (app)
        app->permissions().openPrivacyPane(QStringLiteral("Privacy_Accessibility"));
}

void OnboardWindowController::downloadStep() {
    if (app)
        app->models().setModel(app->cfg.model);
}

// A download of the model that was configured goes on.
void OnboardWindowController::useStarter() {
    if (const auto starter = starterModel(); app && starter)
        app->models().setModel(starter->key);
}

void OnboardWindowController::customizeHotkeys() {
    if (app)
        app->openSettings();
}

void OnboardWindowController::finish() {
    m_window->close();
}

void OnboardWindowController::windowWillClose() {
    timer.stop();
}

// Also where the window is not closed but hidden, as Escape does.
bool OnboardWindowController::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_window.get() && event->type() == QEvent::Hide && !event->spontaneous())
        windowWillClose();
    return QObject::eventFilter(watched, event);
}

}  // namespace sayloft
