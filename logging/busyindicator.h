// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QPointer>
#include <QWidget>

/**
 * Shows, for as long as it lives, that a window is at work: a waiting cursor, the window's QProgressBar
 * "busyBar" where it has one, and no input, so that what runs in a nested event loop cannot be started twice.
 * End it before a message box opens. The window may be destroyed meanwhile.
 */
class BusyIndicator
{
public:
    /// @param widget any widget of the window
    explicit BusyIndicator(QWidget *widget);
    ~BusyIndicator();
    BusyIndicator(const BusyIndicator &) = delete;
    BusyIndicator &operator=(const BusyIndicator &) = delete;

    [[nodiscard]] static bool isBusy(const QWidget *window);

private:
    void showBar(bool visible) const;

    QPointer<QWidget> m_window;
    QPointer<QWidget> m_focus;
    bool m_outermost;
};
