// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QByteArray>
#include <QStringList>
#include <QVector>

/**
 * A catalog library that answers what a test wants it to answer and writes
 * down how it is called. Linked in place of the real one.
 */
struct FakeLibrary
{
    int initResult = 0;
    QVector<const char *> groups; ///< a null pointer is a missing entry
    QVector<const char *> events;
    QByteArray json; ///< the answer of every look-up, null for none
    QStringList calls; ///< the functions called, in order, without the counts
    QVector<QByteArray> identifiers; ///< as the look-ups received them
    int groupsCounted = 0;
    int eventsCounted = 0;

    static FakeLibrary &instance();
    /// Back to an empty library.
    static void reset() { instance() = FakeLibrary(); }
};
