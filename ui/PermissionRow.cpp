// SPDX-License-Identifier: MIT
#include "ui/PermissionRow.h"

#include "ui/GlyphText.h"
#include "ui/SmallButton.h"
#include "ui/TextLabel.h"

#include <QHBoxLayout>

namespace sayloft {
namespace {

constexpr int spacing = 10;

}  // namespace

PermissionRow::PermissionRow(const Texts& texts)
    : m_name(texts.name),
      m_status(new TextLabel(QString(),
                             {.look = {.size = 12, .role = TextRole::warning}, .width = 110})) {
    auto* button = new SmallButton(QStringLiteral("Open Settings"));
    button->setAccessibleName(QStringLiteral("Open Settings: ") + texts.name);
    button->setAccessibleDescription(texts.settings);
    button->setToolTip(texts.settings);
    m_status->setToolTip(texts.meaning);
    m_status->setAccessibleDescription(texts.meaning);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(spacing);
    row->addWidget(m_status);
    row->addWidget(button);
    row->addStretch();
    connect(button, &QPushButton::clicked, this, &PermissionRow::openSettings);
    setPermLabel(false);
}

void PermissionRow::setPermLabel(bool isGranted) {
    const QString state = isGranted ? QStringLiteral("Granted") : QStringLiteral("Not granted");
    const QString sign = isGranted ? QStringLiteral("✓ ") : QStringLiteral("✕ ");
    m_status->setText(displayable(sign + state, state, m_status->font()));
    m_status->setAccessibleName(m_name + QStringLiteral(": ") + state);
    m_status->setRole(isGranted ? TextRole::good : TextRole::warning);
}

}  // namespace sayloft
