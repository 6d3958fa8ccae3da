// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "inputguard.h"

#include <QApplication>
#include <QEvent>
#include <QWindow>

namespace KCMGS {

namespace {

bool isInput(QEvent::Type type)
{
    switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::NonClientAreaMouseButtonPress:
    case QEvent::Wheel:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::Shortcut:
    case QEvent::ShortcutOverride:
    case QEvent::InputMethod:
    case QEvent::ContextMenu:
    case QEvent::TabletPress:
    case QEvent::TabletRelease:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::DragEnter:
    case QEvent::Drop:
    case QEvent::Close:
        return true;
    default:
        return false;
    }
}

QWidget *widgetOf(const QWindow *window)
{
    const QWidgetList widgets = QApplication::topLevelWidgets();
    for (QWidget *widget : widgets) {
        if (widget->windowHandle() == window) {
            return widget;
        }
    }
    return nullptr;
}

} // namespace

InputGuard::InputGuard(QWidget *page)
    : m_page(page)
{
    qApp->installEventFilter(this);
}

bool InputGuard::eventFilter(QObject *watched, QEvent *event)
{
    if (!isInput(event->type()) || !isGuarded(watched)) {
        return false;
    }
    if (event->type() == QEvent::ShortcutOverride) {
        // Accepted, the key comes again as an ordinary key press, which ends here too.
        event->accept();
    } else {
        event->ignore();
    }
    return true;
}

bool InputGuard::isGuarded(const QObject *receiver) const
{
    if (!m_page) {
        return false;
    }
    const QWidget *shell = m_page->window();
    if (const auto *window = qobject_cast<const QWindow *>(receiver)) {
        receiver = widgetOf(window);
    }
    for (const QObject *object = receiver; object; object = object->parent()) {
        if (object == m_page || object == shell) {
            return true;
        }
        const auto *widget = qobject_cast<const QWidget *>(object);
        if (widget && widget->isWindow() && widget->isModal()) {
            return false;
        }
    }
    return false;
}

} // namespace KCMGS
