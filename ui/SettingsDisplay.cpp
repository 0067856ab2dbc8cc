// SPDX-License-Identifier: MIT
#include "ui/SettingsDisplay.h"

#include "app/AppDelegate.h"
#include "models/ModelCatalogue.h"
#include "platform/LoginItem.h"
#include "ui/AnimationTimes.h"
#include "ui/ChipList.h"
#include "ui/ModelRow.h"
#include "ui/PermissionRow.h"
#include "ui/PopUpItems.h"
#include "ui/SettingsForm.h"
#include "ui/TimingRow.h"
#include "ui/ValueSlider.h"

#include <QCheckBox>
#include <QPushButton>
#include <QSignalBlocker>

#include <algorithm>

namespace sayloft {
namespace {

ChipList::Capture captureFor(Capturing list, Capturing capturing) {
    if (capturing == Capturing::none)
        return ChipList::Capture::none;
    return capturing == list ? ChipList::Capture::here : ChipList::Capture::elsewhere;
}

ModelRow::State stateOf(const ModelInfo& model, AppDelegate* app, bool isOnDisk) {
    if (app && app->models().downloadingKey() == model.key)
        return ModelRow::State::downloading;
    if (app && app->cfg.model == model.key)
        return ModelRow::State::active;
    return isOnDisk ? ModelRow::State::present : ModelRow::State::missing;
}

/// Nobody has switched it.
void showChecked(QCheckBox& box, bool isOn) {
    const QSignalBlocker blocker(box);
    box.setChecked(isOn);
}

}  // namespace

void SettingsDisplay::refresh(AppDelegate* app) {
    showHotkeys(app);
    showStyle(app);
    showPreferences(app);
    showPermissions(app);
    showModels(app);
    updateAnimLabels();
    showMicrophones(app);
}

void SettingsDisplay::showHotkeys(AppDelegate* app) {
    const Capturing capturing = app ? app->chords().capturing() : Capturing::none;
    const std::vector<std::int64_t> none;
    m_form.dictateChips->setChords(app ? app->cfg.dictateChords : none);
    m_form.dictateChips->setCapture(captureFor(Capturing::dictate, capturing));
    m_form.enterChips->setChords(app ? app->cfg.dictateEnterChords : none);
    m_form.enterChips->setCapture(captureFor(Capturing::dictateEnter, capturing));
}

// A style that nobody knows shows as the first one, as it does on the screen.
void SettingsDisplay::showStyle(AppDelegate* app) {
    const QString minimal = QStringLiteral("minimal");
    showItems(*m_form.stylePopup,
              {{QStringLiteral("Full — waveform + words/min"), QStringLiteral("full")},
               {QStringLiteral("Minimal — voice indicator only"), minimal}},
              app && app->cfg.pillStyle == minimal ? 1 : 0);
}

void SettingsDisplay::showPreferences(AppDelegate* app) {
    const AnimationTimes times =
        app ? AnimationTimes{app->cfg.animAppear, app->cfg.animHide, app->cfg.holdDuration}
            : AnimationTimes{};
    m_form.appearSlider->setNumber(times.appear);
    m_form.hideSlider->setNumber(times.hide);
    m_form.holdSlider->setNumber(times.hold);
    showChecked(*m_form.clipboardCheck, app && app->cfg.leaveInClipboard);
    showChecked(*m_form.loginCheck, app && app->loginItem().isEnabled());
    showChecked(*m_form.boostCheck, !app || app->cfg.boostMic);
    showChecked(*m_form.soundCheck, app && app->cfg.playSounds);
}

void SettingsDisplay::showPermissions(AppDelegate* app) {
    m_form.accStatus->setPermLabel(app && app->permissions().accessibilityGranted());
    m_form.micStatus->setPermLabel(app && app->permissions().micGranted());
}

void SettingsDisplay::showModels(AppDelegate* app) {
    const std::size_t count = std::min(MODELS.size(), m_form.modelList.size());
    for (std::size_t index = 0; index < count; ++index) {
        const ModelInfo& model = MODELS[index];
        ModelRow& row = *m_form.modelList[index];
        const bool isOnDisk = existingModelPath(model.file).has_value();
        row.setOnDisk(isOnDisk);
        row.setState(stateOf(model, app, isOnDisk));
        row.setProgress(app ? app->models().downloadProgress() : 0);
    }
}

void SettingsDisplay::updateAnimLabels() {
    for (TimingRow* const row : {m_form.appear, m_form.hide, m_form.hold})
        row->showMilliseconds();
}

// A microphone that is not connected shows as the built-in one and stays configured.
void SettingsDisplay::showMicrophones(AppDelegate* app) {
    std::vector<PopUpItem> items{{QStringLiteral("Built-in mic (recommended)"), {}}};
    int selected = 0;
    for (const InputDevice& device : app ? app->inputDeviceList() : std::vector<InputDevice>()) {
        if (selected == 0 && app->cfg.inputDeviceUID == device.uid)
            selected = static_cast<int>(items.size());
        items.push_back({device.name, device.uid});
    }
    showItems(*m_form.micPopup, items, selected);
}

}  // namespace sayloft
