// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "popups.h"

#include "messagetext.h"

#include <KLocalizedString>
#include <KNotification>

namespace NivraWatcher {

namespace {
constexpr int textLimit = 1000;
}

Popups::Popups(QObject *parent)
    : QObject(parent)
{
}

KNotification *Popups::make(const Event &event, bool stays)
{
    auto *popup = new KNotification(QStringLiteral("securityEvent"),
                                    stays ? KNotification::Persistent : KNotification::CloseOnTimeout);
    popup->setComponentName(QStringLiteral("nivra-event-watcher"));
    popup->setIconName(event.icon.isEmpty() ? QStringLiteral("preferences-security-events") : event.icon);
    popup->setTitle(event.title);
    // A text is markup here, and what a record holds is none.
    popup->setText(MessageText::cut(event.text, textLimit).toHtmlEscaped());
    return popup;
}

void Popups::show(const Event &event)
{
    make(event, false)->sendEvent();
}

void Popups::showAgain(const Event &event)
{
    takeDown(event.key);
    KNotification *popup = make(event, true);
    m_repeated.insert(event.key, popup);
    popup->setActions({i18n("Stop Repeating")});
    const auto acknowledge = [this, key = event.key] {
        m_repeated.remove(key);
        Q_EMIT acknowledged(key);
    };
    connect(popup, &KNotification::action1Activated, this, acknowledge);
    connect(popup, &KNotification::closed, this, acknowledge);
    popup->sendEvent();
}

void Popups::takeDown(const QString &key)
{
    if (KNotification *popup = m_repeated.take(key)) {
        popup->disconnect(this);
        popup->close();
    }
}

} // namespace NivraWatcher
