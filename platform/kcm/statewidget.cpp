// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "statewidget.h"

#include <KLocalizedString>
#include <QEvent>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QPushButton>
#include <QStyle>

namespace KCMNV {

namespace {

QString stateText(StateWidget::State state)
{
    switch (state) {
    case StateWidget::State::Changed:
        return i18nc("@info:status state of the page", "There are unsaved changes");
    case StateWidget::State::Saved:
        return i18nc("@info:status state of the page", "All changes are saved");
    case StateWidget::State::Unchanged:
        break;
    }
    return i18nc("@info:status state of the page", "No unsaved changes");
}

QString stateIcon(StateWidget::State state)
{
    switch (state) {
    case StateWidget::State::Changed:
        return QStringLiteral("document-edit");
    case StateWidget::State::Saved:
        return QStringLiteral("dialog-ok-apply");
    case StateWidget::State::Unchanged:
        break;
    }
    return QStringLiteral("dialog-information");
}

} // namespace

StateWidget::StateWidget(QWidget *parent)
    : QWidget(parent)
    , m_icon(new QLabel(this))
    , m_text(new QLabel(this))
    , m_reset(new QPushButton(QIcon::fromTheme(QStringLiteral("edit-undo")), i18nc("@action:button", "Reset"),
                              this))
{
    setObjectName(QStringLiteral("stateWidget"));
    m_icon->setObjectName(QStringLiteral("stateIcon"));
    m_text->setObjectName(QStringLiteral("stateText"));
    m_reset->setObjectName(QStringLiteral("resetButton"));
    m_reset->setToolTip(i18nc("@info:tooltip", "Drop all unsaved changes"));
    m_reset->setAutoDefault(false);
    m_reset->hide();

    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_icon);
    layout->addWidget(m_text);
    layout->addStretch();
    layout->addWidget(m_reset);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);

    connect(m_reset, &QPushButton::clicked, this, &StateWidget::resetRequested);
    showState();
}

StateWidget::State StateWidget::state() const
{
    return m_state;
}

void StateWidget::resetState()
{
    setState(State::Unchanged);
}

void StateWidget::setChanged(bool changed)
{
    if (changed) {
        setState(State::Changed);
    } else if (m_state == State::Changed) {
        setState(State::Unchanged);
    }
}

void StateWidget::setSaved()
{
    setState(State::Saved);
}

void StateWidget::setResetButtonVisible(bool visible)
{
    m_reset->setVisible(visible);
}

void StateWidget::changeEvent(QEvent *event)
{
    // Symbolic icons are drawn in the colours of the palette.
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange) {
        showState();
    }
    QWidget::changeEvent(event);
}

void StateWidget::setState(State state)
{
    if (m_state != state) {
        m_state = state;
        showState();
    }
}

void StateWidget::showState()
{
    const int size = style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, this);
    m_icon->setPixmap(QIcon::fromTheme(stateIcon(m_state)).pixmap(size));
    m_text->setText(stateText(m_state));
    setAccessibleName(m_text->text());
    m_reset->setEnabled(m_state == State::Changed);
}

} // namespace KCMNV
