// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "outcome.h"

#include <QByteArray>
#include <QMap>
#include <QStringList>
#include <QVariantMap>

namespace AdminEventsHelper {

/** What a request to write notification fragments asks for. */
struct FragmentWriteRequest
{
    /** The most fragments that one request may carry. */
    static constexpr int countLimit = 10000;

    /** Texts by file name. */
    QMap<QString, QByteArray> fragments;

    /**
     * Reads the argument "notifications" (a map from a fragment's path to its text, both strings); no others.
     * Every path and every text has passed FragmentCheck.
     */
    static Result<FragmentWriteRequest> read(const QVariantMap &arguments);
};

/** What a request to remove notification fragments asks for. */
struct FragmentRemoveRequest
{
    QStringList fileNames;

    /** Reads the argument "paths" (a list of the fragments' paths); no others. */
    static Result<FragmentRemoveRequest> read(const QVariantMap &arguments);
};

/** Writes and removes the notification fragments below a root directory, all of a request or none; what a
 * crash leaves half done is taken back with the next write (FileChanges). */
class FragmentStore
{
public:
    /** @param root the directory that stands for "/". */
    explicit FragmentStore(const QString &root);

    /** Replaces or makes the fragments. After a failure those already replaced are as they were. */
    Outcome write(const FragmentWriteRequest &request) const;

    /** Removes the fragments, keeping each as a backup; one that is not there counts as removed. */
    Outcome remove(const FragmentRemoveRequest &request) const;

private:
    QString m_root;
};

} // namespace AdminEventsHelper
