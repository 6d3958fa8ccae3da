// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "busyindicator.h"

#include <QApplication>
#include <QProgressBar>

namespace {
constexpr char busyProperty[] = "_adminevents_busy";
}

BusyIndicator::BusyIndicator(QWidget *widget)
    : m_window(widget->window())
    , m_focus(m_window->focusWidget())
    , m_outermost(!isBusy(m_window))
{
    QApplication::setOverrideCursor(Qt::WaitCursor);
    if (m_outermost) {
        m_window->setProperty(busyProperty, true);
        showBar(true);
        m_window->setEnabled(false);
    }
}

BusyIndicator::~BusyIndicator()
{
    QApplication::restoreOverrideCursor();
    if (!m_window || !m_outermost) {
        return;
    }
    m_window->setProperty(busyProperty, false);
    m_window->setEnabled(true);
    showBar(false);
    if (m_focus) {
        m_focus->setFocus(); // taken from it when the window went out of use
    }
}

bool BusyIndicator::isBusy(const QWidget *window)
{
    return window->property(busyProperty).toBool();
}

void BusyIndicator::showBar(bool visible) const
{
    if (auto *bar = m_window->findChild<QProgressBar *>(QStringLiteral("busyBar"))) {
        bar->setVisible(visible);
    }
}
