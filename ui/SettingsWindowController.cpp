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
#include "ui/ValueField.h"
#include "ui/ValueSlider.h"

#include <QCheckBox>
#include <QComboBox>
#include <QPushButton>

#include <algorithm>
#include <optional>
#include <utility>

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
    connect(m_window.get(), &SettingsWindow::becameKey, this,
            &SettingsWindowController::windowDidBecomeKey);
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

void SettingsWindowController::windowDidBecomeKey() {
    refresh();
}

void SettingsWindowController::connectPermissions() {
    connect(m_form->accStatus, &PermissionRow::openSettings, this,
            &SettingsWindowController::openAcc);
    connect(m_form->micStatus, &PermissionRow::openSettings, this,
            &SettingsWindowController::openMic);
}

void SettingsWindowController::connectHotkeys() {
    connect(m_form->dictateAddBtn, &QPushButton::clicked, this,
            &SettingsWindowController::recordDictate);
    connect(m_form->enterAddBtn, &QPushButton::clicked, this,
            &SettingsWindowController::recordEnter);
    connect(m_form->dictateChips, &ChipList::removeRequested, this,
            [this](std::int64_t chord) { removeKey(&Config::dictateChords, chord); });
    connect(m_form->enterChips, &ChipList::removeRequested, this,
            [this](std::int64_t chord) { removeKey(&Config::dictateEnterChords, chord); });
}

void SettingsWindowController::connectModels() {
    for (std::size_t index = 0; index < m_form->modelList.size(); ++index) {
        connect(m_form->modelList[index], &ModelRow::useOrDownload, this,
                [this, index] { useOrDownload(index); });
        connect(m_form->modelList[index], &ModelRow::deleteRequested, this,
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
    connect(m_form->dictBtn, &QPushButton::clicked, this,
            &SettingsWindowController::openDictionary);
    connect(m_form->resetButton, &QPushButton::clicked, this,
            &SettingsWindowController::resetDefaults);
}

void SettingsWindowController::connectTimes() {
    for (ValueSlider* const slider : {m_form->appearSlider, m_form->hideSlider, m_form->holdSlider})
        connect(slider, &ValueSlider::numberChanged, this, &SettingsWindowController::changeAnim);
    const std::pair<ValueField*, TimingRow*> fields[] = {{m_form->appearVal, m_form->appear},
                                                         {m_form->hideVal, m_form->hide},
                                                         {m_form->holdVal, m_form->hold}};
    for (const auto& [field, timing] : fields) {
        TimingRow& row = *timing;
        connect(field, &ValueField::entered, this, [this, &row] { editAnimValue(row); });
        connect(field, &ValueField::editingEnded, this,
                [this, &row] { controlTextDidEndEditing(row); });
        connect(m_window.get(), &SettingsWindow::closing, field, &ValueField::endEditing);
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

void SettingsWindowController::recordDictate() {
    if (app)
        app->startCapture(Capturing::dictate);
}

void SettingsWindowController::recordEnter() {
    if (app)
        app->startCapture(Capturing::dictateEnter);
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

void SettingsWindowController::openDictionary() {
    if (app)
        app->openDict();
}

void SettingsWindowController::changeAnim() {
    commitAnim();
}

void SettingsWindowController::editAnimValue(TimingRow& row) {
    if (!app)
        return;
    row.takeTyped();
    commitAnim();
}

void SettingsWindowController::controlTextDidEndEditing(TimingRow& row) {
    editAnimValue(row);
}

// All three, so that each is saved as it is shown.
void SettingsWindowController::commitAnim() {
    if (!app)
        return;
    for (TimingRow* const row : {m_form->appear, m_form->hide, m_form->hold})
        row->snap();
    app->cfg.animAppear = m_form->appearSlider->number();
    app->cfg.animHide = m_form->hideSlider->number();
    app->cfg.holdDuration = m_form->holdSlider->number();
    app->cfg.save();
    app->models().applyOverlayConfig();
    m_display.updateAnimLabels();
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
