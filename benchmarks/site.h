// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "sitemaker.h"

#include <QByteArray>
#include <QStringList>
#include <QTemporaryDir>
#include <QVector>

/**
 * A private system root with a catalog, the node dictionary and saved
 * settings. select() makes it the root that the module reads.
 */
class Site
{
public:
    /// The shipped catalog, every third event of it with saved settings.
    [[nodiscard]] bool makeShipped(int subjects);
    /// A generated catalog, every second event of it with saved settings.
    [[nodiscard]] bool makeLarge(const SiteSize &size);

    void select() const;

    [[nodiscard]] const Accounts &accounts() const { return m_accounts; }
    /// Every JSON file that a load reads.
    [[nodiscard]] const QStringList &files() const { return m_files; }
    /// The content of each of them.
    [[nodiscard]] const QVector<QByteArray> &documents() const { return m_documents; }

private:
    [[nodiscard]] bool prepareRoot();
    [[nodiscard]] bool writeSettings(SiteMaker &maker, int everyNth);
    [[nodiscard]] bool readDocuments();

    QTemporaryDir m_root;
    Accounts m_accounts;
    QStringList m_files;
    QVector<QByteArray> m_documents;
};
