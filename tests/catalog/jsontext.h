// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QByteArray>

/// JSON that is written with ' for ", to be readable between C++ quotes.
inline QByteArray json(const char *text)
{
    return QByteArray(text).replace('\'', '"');
}
