// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

/** A root directory of its own for the catalog library and the recorder. */
class RecorderRoot
{
public:
    /** Takes away the one before and makes it the root that the catalog library reads. */
    void renew()
    {
        m_directory = std::make_unique<QTemporaryDir>();
        qputenv("ADMINEVENTS_ROOT", m_directory->path().toUtf8());
    }
    /** @param path relative to the root */
    void put(const QString &path, const QByteArray &text) const
    {
        QFile file(m_directory->filePath(path));
        QVERIFY(QDir().mkpath(QFileInfo(file).path()));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(text), text.size());
    }
    /** A group "g" of the catalog with one event, "e". */
    void putCatalog(const QByteArray &group, const QByteArray &event) const
    {
        put(QStringLiteral("usr/share/syslog-ng-mod-nivra/event-settings/g.json"), group);
        put(QStringLiteral("usr/share/syslog-ng-mod-nivra/event-settings/g/e.json"), event);
    }
    /** Puts the shipped catalog into its place. */
    void linkCatalog(const QString &shippedData) const
    {
        const QString share = m_directory->filePath(QStringLiteral("usr/share/syslog-ng-mod-nivra"));
        QVERIFY(QDir().mkpath(share));
        QVERIFY(QFile::link(shippedData + QLatin1String("/event-settings"),
                            share + QLatin1String("/event-settings")));
    }
    QString settingsFile() const { return m_directory->filePath(QStringLiteral("etc/nivra-syslog.conf")); }

private:
    std::unique_ptr<QTemporaryDir> m_directory;
};
