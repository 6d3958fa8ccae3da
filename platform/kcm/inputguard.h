// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>

namespace KCMGS {

/**
 * While it lives, keeps input and close requests from a page, from the window that the page is in, and from
 * the page's own windows that are not modal. Modal dialogs and everything that belongs to them are left
 * alone.
 *
 * Disabling the page would do less (the shell's own buttons stay) and more (the page flickers and loses the
 * focus).
 */
class InputGuard : public QObject
{
    Q_OBJECT

public:
    /** @param page the page to guard; may be destroyed earlier than the guard */
    explicit InputGuard(QWidget *page);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    [[nodiscard]] bool isGuarded(const QObject *receiver) const;

    const QPointer<QWidget> m_page;
};

} // namespace KCMGS
