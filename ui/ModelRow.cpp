// SPDX-License-Identifier: MIT
#include "ui/ModelRow.h"

#include "models/ModelCatalogue.h"
#include "ui/ElidingLabel.h"
#include "ui/GlyphText.h"
#include "ui/SmallButton.h"
#include "ui/SteadyLabel.h"
#include "ui/TextLook.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>

#include <algorithm>
#include <initializer_list>

namespace sayloft {
namespace {

constexpr int rowWidth = 400;
constexpr int rowSpacing = 10;
constexpr int stateSpacing = 6;
constexpr int barWidth = 90;
constexpr int barHeight = 12;
/// Of the bar, which counts in whole numbers.
constexpr int barSteps = 1000;

QString onDiskMark() {
    return displayable(QStringLiteral("✓"), QStringLiteral("•"));
}

QString absentMark() {
    return displayable(QStringLiteral("○"), QStringLiteral("–"));
}

}  // namespace

ModelRow::ModelRow(const ModelInfo& model)
    : m_isBundled(model.url.isEmpty()),
      m_mark(new SteadyLabel({onDiskMark(), absentMark()})),
      m_markLook(new TextLook(m_mark, {.weight = QFont::Bold, .role = TextRole::tertiary})),
      m_name(new ElidingLabel(model.label)),
      m_bar(new QProgressBar),
      m_percent(new SteadyLabel({QStringLiteral("100%")})),
      m_progress(makeProgress(model.label)),
      m_active(new QLabel(QStringLiteral("Active"))),
      m_download(new SmallButton(QStringLiteral("Download"))),
      m_use(new SmallButton(QStringLiteral("Use"))),
      m_delete(new SmallButton(QStringLiteral("Delete"))) {
    new TextLook(m_active, {.size = 11, .weight = QFont::Medium, .role = TextRole::secondary});
    layOut();
    describe(model.label);
    connect(m_download, &QPushButton::clicked, this, &ModelRow::useOrDownload);
    connect(m_use, &QPushButton::clicked, this, &ModelRow::useOrDownload);
    connect(m_delete, &QPushButton::clicked, this, &ModelRow::deleteRequested);
    setOnDisk(false);
    setState(State::missing);
}

void ModelRow::layOut() {
    new TextLook(m_name, {.size = 12});
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(rowSpacing);
    row->addWidget(m_mark);
    row->addWidget(m_name, 1);
    auto* states = new QHBoxLayout;
    states->setSpacing(stateSpacing);
    for (QWidget* const state :
         std::initializer_list<QWidget*>{m_progress, m_active, m_download, m_use, m_delete})
        states->addWidget(state);
    row->addLayout(states);
}

QWidget* ModelRow::makeProgress(const QString& label) {
    auto* progress = new QWidget;
    auto* layout = new QHBoxLayout(progress);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(stateSpacing);
    m_bar->setRange(0, barSteps);
    m_bar->setFixedSize(barWidth, barHeight);
    m_bar->setTextVisible(false);
    m_bar->setAccessibleName(QStringLiteral("Download of ") + label);
    new TextLook(
        m_percent,
        {.size = 11, .role = TextRole::secondary, .digits = TextStyle::Digits::equallyWide});
    m_percent->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    layout->addWidget(m_bar);
    layout->addWidget(m_percent);
    return progress;
}

void ModelRow::describe(const QString& label) {
    m_active->setAccessibleDescription(label);
    m_percent->setAccessibleDescription(QStringLiteral("Download of ") + label);
    m_bar->setAccessibleDescription(QStringLiteral("How much of the model is there"));
    m_download->setAccessibleName(QStringLiteral("Download ") + label);
    m_download->setAccessibleDescription(
        m_isBundled ? QStringLiteral("Not for download: this model comes with Sayloft, but its "
                                     "file is missing in this copy")
                    : QStringLiteral("Downloads this model and then transcribes with it"));
    if (m_isBundled)
        m_download->setToolTip(m_download->accessibleDescription());
    m_use->setAccessibleName(QStringLiteral("Use ") + label);
    m_use->setAccessibleDescription(QStringLiteral("Transcribes with this model from now on"));
    m_delete->setAccessibleName(QStringLiteral("Delete ") + label);
    m_delete->setAccessibleDescription(QStringLiteral("Removes the file of this model"));
}

QSize ModelRow::sizeHint() const {
    const auto widthOf = [](const QWidget* widget) { return widget->sizeHint().width(); };
    int state = std::max(widthOf(m_download), widthOf(m_use));
    if (!m_isBundled)
        state = std::max(
            {state, widthOf(m_progress), widthOf(m_use) + stateSpacing + widthOf(m_delete)});
    const int width = widthOf(m_mark) + rowSpacing + widthOf(m_name) + rowSpacing + state;
    return {std::max(rowWidth, width), m_download->sizeHint().height()};
}

QSize ModelRow::minimumSizeHint() const {
    return {rowWidth, m_download->sizeHint().height()};
}

void ModelRow::setOnDisk(bool isOnDisk) {
    m_mark->setText(isOnDisk ? onDiskMark() : absentMark());
    m_mark->setAccessibleName(isOnDisk ? QStringLiteral("Downloaded")
                                       : QStringLiteral("Not downloaded"));
    m_markLook->setRole(isOnDisk ? TextRole::good : TextRole::tertiary);
}

// What comes with the program can be neither fetched nor removed.
void ModelRow::setState(State state) {
    m_progress->setVisible(state == State::downloading);
    m_active->setVisible(state == State::active);
    m_download->setVisible(state == State::missing);
    m_download->setEnabled(!m_isBundled);
    m_use->setVisible(state == State::present);
    m_delete->setVisible(state == State::present && !m_isBundled);
}

void ModelRow::setProgress(double progress) {
    m_bar->setValue(static_cast<int>(progress * barSteps));
    m_percent->setText(QString::number(static_cast<int>(progress * 100)) + u'%');
}

}  // namespace sayloft
