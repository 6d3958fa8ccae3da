// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QDateTime>
#include <QList>
#include <QPair>
#include <QString>

namespace NivraWatcher {

/** An event as the logging service hands it over. */
struct Event
{
    QString key; ///< the notification key
    QString title;
    QString icon; ///< icon name, or empty
    QString text;
    QList<QPair<QString, QString>> values; ///< names and what the record has for them
    QDateTime time;
};

} // namespace NivraWatcher
