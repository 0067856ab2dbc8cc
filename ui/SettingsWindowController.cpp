// SPDX-License-Identifier: MIT
#include "ui/SettingsWindowController.h"

#include "app/AppDelegate.h"
#include "models/ModelCatalogue.h"
#include "platform/LoginItem.h"
#include "storage/Log.h"
#include "ui/Alert.h"
#include "ui/ChipList.h"
#include "ui/ModelRow.h"
#include "ui/PermissionRow.h"
#include "ui/PlainWindow.h"
#include "ui/SettingsForm.h"
#include "ui/SettingsWindow.h"
#include "ui/TimingRow.h"

#include <QCheckBox>
#include <QComboBox>
#include <QPushButton>

#include <algorithm>
#include <array>
#include <optional>

namespace sayloft {

SettingsWindowController::SettingsWindowController(AppDelegate& theApp)
    : app(&theApp),
      m_form(new SettingsForm),
      m_window(std::make_unique<SettingsWindow>(m_form)),
      m_display(*m_form) {
    connectPermissions();
    connectHotkeys();
    connectModels();
    connectPreferences();
    connectTimes();
    connect(m_window.get(), &SettingsWindow::becameKey, this, &SettingsWindowController::refresh);
    refresh();
    m_window->centre();
}

// The window ends what is being typed when it goes, and nobody may hear of it any more.
SettingsWindowController::~SettingsWindowController() {
    app.clear();
}

void SettingsWindowController::show() {
    bringToFront(*m_window);
}

void SettingsWindowController::refresh() {
    m_display.refresh(app);
}

void SettingsWindowController::connectPermissions() {
    connect(m_form->accessibility, &PermissionRow::openSettings, this,
            &SettingsWindowController::openAcc);
    connect(m_form->microphone, &PermissionRow::openSettings, this,
            &SettingsWindowController::openMic);
}

void SettingsWindowController::connectHotkeys() {
    connect(m_form->dictateChips, &ChipList::addRequested, this,
            [this] { record(Capturing::dictate); });
    connect(m_form->enterChips, &ChipList::addRequested, this,
            [this] { record(Capturing::dictateEnter); });
    connect(m_form->dictateChips, &ChipList::removeRequested, this,
            [this](std::int64_t chord) { removeKey(&Config::dictateChords, chord); });
    connect(m_form->enterChips, &ChipList::removeRequested, this,
            [this](std::int64_t chord) { removeKey(&Config::dictateEnterChords, chord); });
}

void SettingsWindowController::connectModels() {
    for (std::size_t index = 0; index < m_form->models.size(); ++index) {
        connect(m_form->models[index], &ModelRow::useOrDownload, this,
                [this, index] { useOrDownload(index); });
        connect(m_form->models[index], &ModelRow::deleteRequested, this,
                [this, index] { deleteModelRow(index); });
    }
}

void SettingsWindowController::connectPreferences() {
    connect(m_form->micPopup, &QComboBox::activated, this, &SettingsWindowController::pickMic);
    connect(m_form->stylePopup, &QComboBox::activated, this, &SettingsWindowController::pickStyle);
    // Assistive technology toggles without a click.
    connect(m_form->clipboardCheck, &QCheckBox::toggled, this,
            &SettingsWindowController::toggleClipboard);
    connect(m_form->boostCheck, &QCheckBox::toggled, this, &SettingsWindowController::toggleBoost);
    connect(m_form->soundCheck, &QCheckBox::toggled, this, &SettingsWindowController::toggleSound);
    connect(m_form->loginCheck, &QCheckBox::toggled, this, &SettingsWindowController::toggleLogin);
    connect(m_form->dictBtn, &QPushButton::clicked, this, [this] {
        if (app)
            app->openDict();
    });
    connect(m_form->resetButton, &QPushButton::clicked, this,
            &SettingsWindowController::resetDefaults);
}

void SettingsWindowController::connectTimes() {
    for (TimingRow* const row : {m_form->appear, m_form->hide, m_form->hold}) {
        connect(row, &TimingRow::changed, this, &SettingsWindowController::commitAnim);
        connect(m_window.get(), &SettingsWindow::closing, row, &TimingRow::endEditing);
    }
}

void SettingsWindowController::openAcc() {
    if (app)
        app->permissions().openPrivacyPane(QStringLiteral("Privacy_Accessibility"));
}

void SettingsWindowController::openMic() {
    if (!app)
        return;
    const QPointer<SettingsWindowController> self(this);
    app->permissions().grantMic([self] {
        if (self)
            self->refresh();
    });
}

void SettingsWindowController::record(Capturing list) {
    if (app)
        app->startCapture(list);
}

void SettingsWindowController::removeKey(Chords Config::*list, std::int64_t chord) {
    if (!app)
        return;
    Chords& chords = app->cfg.*list;
    chords.erase(std::remove(chords.begin(), chords.end(), chord), chords.end());
    app->cfg.save();
    app->buildMenu();
    refresh();
}

void SettingsWindowController::pickMic() {
    if (!app)
        return;
    const QVariant uid = m_form->micPopup->currentData();
    app->cfg.inputDeviceUID = uid.isValid() ? std::optional(uid.toString()) : std::nullopt;
    app->cfg.save();
    app->recorder().deviceUID = app->cfg.inputDeviceUID;
}

void SettingsWindowController::pickStyle() {
    if (!app)
        return;
    app->cfg.pillStyle = m_form->stylePopup->currentData().toString();
    app->cfg.save();
    app->models().applyOverlayConfig();
    app->buildMenu();
}

void SettingsWindowController::toggleClipboard(bool isOn) {
    if (!app)
        return;
    app->cfg.leaveInClipboard = isOn;
    app->cfg.save();
}

void SettingsWindowController::toggleBoost(bool isOn) {
    if (!app)
        return;
    app->cfg.boostMic = isOn;
    app->cfg.save();
    app->recorder().boost = isOn;
}

void SettingsWindowController::toggleSound(bool isOn) {
    if (!app)
        return;
    app->cfg.playSounds = isOn;
    app->cfg.save();
}

void SettingsWindowController::toggleLogin(bool isOn) {
    if (!app)
        return;
    const std::optional<QString> error = app->loginItem().setEnabled(isOn);
    if (!error)
        return;
    logf(QStringLiteral("login item toggle failed: ") + *error);
    refresh();
}

void SettingsWindowController::commitAnim() {
    if (!app)
        return;
    for (TimingRow* const row : {m_form->appear, m_form->hide, m_form->hold})
        row->snap();
    app->cfg.animAppear = m_form->appear->number();
    app->cfg.animHide = m_form->hide->number();
    app->cfg.holdDuration = m_form->hold->number();
    app->cfg.save();
    app->models().applyOverlayConfig();
}

void SettingsWindowController::useOrDownload(std::size_t index) {
    if (app && index < MODELS.size())
        app->models().setModel(MODELS[index].key);
}

void SettingsWindowController::deleteModelRow(std::size_t index) {
    if (!app || index >= MODELS.size())
        return;
    const ModelInfo& model = MODELS[index];
    ask(m_window.get(),
        {.message = QStringLiteral("Delete “") + model.label + QStringLiteral("”?"),
         .informative =
             QStringLiteral("The model file is removed. You can download it again later."),
         .button = QStringLiteral("Delete")},
        [this, key = model.key] {
            if (app)
                app->models().deleteModel(key);
        });
}

void SettingsWindowController::resetDefaults() {
    if (!app)
        return;
    ask(m_window.get(),
        {.message = QStringLiteral("Reset all settings to defaults?"),
         .informative =
             QStringLiteral("Hotkeys, microphone, overlay and other preferences will be restored."),
         .button = QStringLiteral("Reset")},
        [this] {
            if (app)
                app->models().resetConfig();
        });
}

}  // namespace sayloft
