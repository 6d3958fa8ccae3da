// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "checksum.h"

#include <QCryptographicHash>

namespace AdminEventsHelper {

QString checksum(const QByteArray &content)
{
    return QString::fromLatin1(QCryptographicHash::hash(content, QCryptographicHash::Sha256).toHex());
}

} // namespace AdminEventsHelper
