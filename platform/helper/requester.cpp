// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "requester.h"

#include <KLocalizedString>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusReply>

namespace AdminEventsHelper {

Result<uid_t> findRequester()
{
    const QDBusConnection bus = QDBusConnection::systemBus();
    QObject *const proxy = bus.objectRegisteredAt(QStringLiteral("/"));
    // The way in which the toolkit itself finds the object's context; the framework does not publish the
    // class.
    const auto *const context
        = proxy == nullptr ? nullptr : static_cast<const QDBusContext *>(proxy->qt_metacast("QDBusContext"));
    if (context == nullptr || !context->calledFromDBus() || bus.interface() == nullptr) {
        return Outcome::failure(i18n("The user who sent the request cannot be found out."));
    }
    const QDBusReply<uint> user = bus.interface()->serviceUid(context->message().service());
    if (!user.isValid()) {
        return Outcome::failure(
            i18n("The user who sent the request cannot be found out: %1", user.error().message()));
    }
    return uid_t(user.value());
}

} // namespace AdminEventsHelper
