// SPDX-License-Identifier: MIT
#include "ui/SettingsForm.h"

#include "models/ModelCatalogue.h"
#include "ui/ChipList.h"
#include "ui/GlyphText.h"
#include "ui/ModelRow.h"
#include "ui/PermissionRow.h"
#include "ui/PopUpButton.h"
#include "ui/RoomyButton.h"
#include "ui/TextLabel.h"
#include "ui/TextLook.h"
#include "ui/TimingRow.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

#include <utility>

namespace sayloft {
namespace {

constexpr int margin = 16;
constexpr int rowSpacing = 9;
constexpr int columnSpacing = 16;
constexpr int blockSpacing = 12;
constexpr int modelSpacing = 8;

QLabel* rowLabel(const QString& text, QWidget* control) {
    auto* label = new QLabel(text);
    new TextLook(label, {.size = 13, .role = TextRole::secondary});
    if (!text.isEmpty())
        label->setBuddy(control);
    return label;
}

void addTo(QBoxLayout& row, QLayout* content) {
    row.addLayout(content);
}

void addTo(QBoxLayout& row, QWidget* content) {
    row.addWidget(content);
}

/// An alignment would do as well, but for content that is higher where it is narrower.
template <typename Content>
QLayout* centred(Content* content) {
    auto* row = new QHBoxLayout;
    row->addStretch();
    addTo(*row, content);
    row->addStretch();
    return row;
}

void describe(QWidget& control, const QString& name, const QString& meaning) {
    control.setAccessibleName(name);
    control.setAccessibleDescription(meaning);
}

}  // namespace

SettingsForm::SettingsForm()
    : accStatus(new PermissionRow(
          {.name = QStringLiteral("Accessibility"),
           .meaning = QStringLiteral(
               "Seeing your chords and typing into other programs, through the X server"),
           .settings = QStringLiteral("Opens the desktop's accessibility settings, or where those "
                                      "cannot help a page that says what to do")})),
      micStatus(new PermissionRow(
          {.name = QStringLiteral("Microphone"),
           .meaning = QStringLiteral("Recording while you hold a chord, through the sound server, "
                                     "PipeWire or PulseAudio"),
           .settings = QStringLiteral("Opens the desktop's sound settings, or where there are none "
                                      "a page that says what to do")})),
      dictateChips(new ChipList(QStringLiteral("Dictate"))),
      enterChips(new ChipList(QStringLiteral("Dictate + Enter"))),
      dictateAddBtn(dictateChips->addButton()),
      enterAddBtn(enterChips->addButton()),
      micPopup(new PopUpButton),
      boostCheck(new QCheckBox(QStringLiteral("Boost quiet microphone"))),
      clipboardCheck(new QCheckBox(QStringLiteral("Leave transcript in clipboard"))),
      dictBtn(new RoomyButton(QStringLiteral("Edit dictionary…"))),
      loginCheck(new QCheckBox(QStringLiteral("Launch Sayloft at login"))),
      soundCheck(new QCheckBox(QStringLiteral("Play start / stop sound"))),
      stylePopup(new PopUpButton),
      appear(new TimingRow({.name = QStringLiteral("Appear speed"),
                            .meaning = QStringLiteral("How fast the pill appears")},
                           speedTiming())),
      hide(new TimingRow({.name = QStringLiteral("Hide speed"),
                          .meaning = QStringLiteral("How fast the pill goes away")},
                         speedTiming())),
      hold(new TimingRow({.name = QStringLiteral("Show after release"),
                          .meaning = QStringLiteral("How long the pill stays afterwards")},
                         holdTiming())),
      appearSlider(appear->slider()),
      hideSlider(hide->slider()),
      holdSlider(hold->slider()),
      appearVal(appear->field()),
      hideVal(hide->field()),
      holdVal(hold->field()),
      resetButton(new RoomyButton(QStringLiteral("Reset to defaults"))) {
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(columnSpacing);
    grid->setVerticalSpacing(rowSpacing);
    fillGrid(*grid);
    describeControls();

    auto* form = new QVBoxLayout;
    form->setSpacing(blockSpacing);
    form->addLayout(centred(grid));
    form->addLayout(centred(helpLabel()));
    form->addWidget(resetButton, 0, Qt::AlignHCenter);
    auto* content = new QVBoxLayout(this);
    content->setContentsMargins(margin, margin, margin, margin);
    content->addStretch();
    content->addLayout(centred(form));
    content->addStretch();
}

void SettingsForm::fillGrid(QGridLayout& grid) {
    const std::pair<const char16_t*, QWidget*> rows[] = {
        {u"Accessibility", accStatus},
        {u"Microphone", micStatus},
        {u"Model", makeModelList()},
        {u"Dictate", dictateChips},
        {u"Dictate + Enter", enterChips},
        {u"Input device", micPopup},
        {u"", boostCheck},
        {u"Clipboard", clipboardCheck},
        {u"Dictionary", dictBtn},
        {u"Startup", loginCheck},
        {u"Sound", soundCheck},
        {u"Overlay", stylePopup},
        {u"Appear speed", appear},
        {u"Hide speed", hide},
        {u"Show after release", hold},
    };
    int row = 0;
    for (const auto& [title, control] : rows) {
        grid.addWidget(rowLabel(QString::fromUtf16(title), control), row, 0,
                       Qt::AlignRight | Qt::AlignVCenter);
        const bool wraps = control->hasHeightForWidth();
        grid.addWidget(control, row, 1, wraps ? Qt::Alignment() : Qt::AlignLeft | Qt::AlignVCenter);
        ++row;
    }
}

void SettingsForm::describeControls() {
    describe(*micPopup, QStringLiteral("Input device"),
             QStringLiteral("The microphone that dictations are recorded with"));
    describe(*boostCheck, boostCheck->text(), QStringLiteral("Amplifies quiet voices"));
    describe(*clipboardCheck, clipboardCheck->text(),
             QStringLiteral("Otherwise the clipboard gets back what it had before the dictation"));
    describe(*dictBtn, dictBtn->text(),
             QStringLiteral("Opens the words that are replaced in transcripts"));
    describe(*loginCheck, loginCheck->text(), QStringLiteral("Starts the program when you log in"));
    describe(*soundCheck, soundCheck->text(),
             QStringLiteral("At the beginning and the end of a recording"));
    describe(*stylePopup, QStringLiteral("Overlay"),
             QStringLiteral("What the pill shows while you dictate"));
    describe(*resetButton, resetButton->text(),
             QStringLiteral("Restores all settings after asking"));
}

QWidget* SettingsForm::makeModelList() {
    auto* list = new QWidget;
    auto* rows = new QVBoxLayout(list);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(modelSpacing);
    for (const ModelInfo& model : MODELS) {
        modelList.push_back(new ModelRow(model));
        rows->addWidget(modelList.back());
    }
    return list;
}

QWidget* SettingsForm::helpLabel() {
    const QString combos = displayable(QStringLiteral("⌥, ⌘⇧, ⌃⌥, Fn…"),
                                       QStringLiteral("Alt, Shift+Super, Ctrl+Alt, Fn…"));
    return new TextLabel(
        QStringLiteral("Hotkeys: add modifier combos (") + combos +
            QStringLiteral(") — any starts dictation; “Dictate + Enter” also presses Return. "
                           "Parakeet auto-detects the language and adds punctuation. Microphone: "
                           "built-in keeps Bluetooth output in high quality. Click a chip to "
                           "remove it."),
        {.look = {.size = 11, .role = TextRole::tertiary}, .width = 560, .wraps = true});
}

}  // namespace sayloft
