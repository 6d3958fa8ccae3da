// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "destinationsdictionary.h"

#include <KLocalizedString>

DestinationsDictionary::DestinationsDictionary()
    : m_entries{{fileParameter(), i18nc("kind of destination", "File")},
                {networkParameter(), i18nc("kind of destination", "Network")}}
{
}

const DestinationsDictionary &DestinationsDictionary::instance()
{
    static const DestinationsDictionary dictionary;
    return dictionary;
}

const DestinationsDictionary::Entry *DestinationsDictionary::findByParameter(const QString &parameter) const
{
    for (const Entry &entry : m_entries) {
        if (entry.parameter == parameter) {
            return &entry;
        }
    }
    return nullptr;
}
