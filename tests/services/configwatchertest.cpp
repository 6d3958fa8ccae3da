// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "configwatcher.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>

namespace {

// Longer than the watcher collects notifications, short enough for a test that sees nothing happen.
constexpr int silence = 150; // ms

bool put(const QString &path, const QByteArray &content)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

bool replaceByRename(const QString &path, const QByteArray &content)
{
    const QString fresh = path + QLatin1String(".new");
    return put(fresh, content)
        && std::rename(QFile::encodeName(fresh).constData(), QFile::encodeName(path).constData()) == 0;
}

} // namespace

class ConfigWatcherTest : public QObject
{
    Q_OBJECT

private:
    [[nodiscard]] bool changedOnce(const QString &path)
    {
        if (m_changes->isEmpty() && !m_changes->wait(3000))
            return false;
        QTest::qWait(silence);
        const bool once = m_changes->size() == 1 && m_changes->first().first().toString() == path;
        if (!once)
            qWarning() << "reported:" << *m_changes;
        m_changes->clear();
        return once;
    }
    [[nodiscard]] bool nothingChanged()
    {
        QTest::qWait(silence);
        const bool nothing = m_changes->isEmpty();
        m_changes->clear();
        return nothing;
    }
    [[nodiscard]] QString event(const char *name) const
    {
        return m_directory + QLatin1Char('/') + QLatin1String(name);
    }

    std::unique_ptr<QTemporaryDir> m_root;
    QString m_directory;
    QString m_file;
    std::unique_ptr<ConfigWatcher> m_watcher;
    std::unique_ptr<QSignalSpy> m_changes;

private Q_SLOTS:
    void init()
    {
        m_root = std::make_unique<QTemporaryDir>();
        const QDir root(m_root->path());
        QVERIFY(root.mkpath(QStringLiteral("usr/share/mod/settings/logins")));
        QVERIFY(root.mkpath(QStringLiteral("etc")));
        m_directory = root.filePath(QStringLiteral("usr/share/mod/settings"));
        m_file = root.filePath(QStringLiteral("etc/settings.conf"));
        QVERIFY(put(event("logins/login.json"), "{}"));
        QVERIFY(put(m_file, "{}"));
        m_watcher = std::make_unique<ConfigWatcher>(m_directory, m_file, nullptr);
        m_changes = std::make_unique<QSignalSpy>(m_watcher.get(), &ConfigWatcher::changed);
    }
    void cleanup()
    {
        m_changes.reset();
        m_watcher.reset();
        m_root.reset();
    }

    void theStateAtTheFirstStartIsKnown()
    {
        m_watcher->start();
        QVERIFY(nothingChanged());
    }

    void everyReplacementByRenameIsNoticed()
    {
        m_watcher->start();
        for (int i = 0; i < 10; ++i) {
            QVERIFY(replaceByRename(m_file, "{\"n\": \"" + QByteArray::number(i) + "\"}"));
            QVERIFY2(changedOnce(m_file), qPrintable(QStringLiteral("change %1").arg(i + 1)));
        }
    }

    void everyChangeInPlaceIsNoticed()
    {
        m_watcher->start();
        for (int i = 0; i < 3; ++i) {
            QVERIFY(put(m_file, "{\"n\": \"" + QByteArray::number(i) + "\"}"));
            QVERIFY(changedOnce(m_file));
        }
    }

    void aChangeInPlaceAfterAReplacementIsNoticedEvenWhileTheOldFileIsHeldOpen()
    {
        QFile holder(m_file);
        QVERIFY(holder.open(QIODevice::ReadOnly));
        m_watcher->start();
        QVERIFY(replaceByRename(m_file, "{\"a\": \"1\"}"));
        QVERIFY(changedOnce(m_file));
        QVERIFY(put(m_file, "{\"a\": \"2\"}"));
        QVERIFY(changedOnce(m_file));
        holder.close();
        QVERIFY(put(m_file, "{\"a\": \"3\"}"));
        QVERIFY(changedOnce(m_file));
    }

    void aFileThatAppearsLaterIsWatchedFromThenOn()
    {
        QVERIFY(QFile::remove(m_file));
        m_watcher->start();
        QVERIFY(nothingChanged());
        QVERIFY(put(m_file, "{}"));
        QVERIFY(changedOnce(m_file));
        QVERIFY(put(m_file, "{\"a\": \"1\"}"));
        QVERIFY(changedOnce(m_file));
        QVERIFY(QFile::remove(m_file));
        QVERIFY(changedOnce(m_file));
        QVERIFY(replaceByRename(m_file, "{\"a\": \"1\"}"));
        QVERIFY(changedOnce(m_file));
    }

    void aFileBelowAMissingDirectoryIsNoticedWhenItAppears()
    {
        QVERIFY(QDir(m_root->filePath(QStringLiteral("etc"))).removeRecursively());
        m_watcher->start();
        QVERIFY(nothingChanged());
        QVERIFY(QDir(m_root->path()).mkdir(QStringLiteral("etc")));
        QVERIFY(nothingChanged());
        QVERIFY(put(m_file, "{}"));
        QVERIFY(changedOnce(m_file));
    }

    void whatDoesNotConcernTheFileIsIgnored()
    {
        m_watcher->start();
        QVERIFY(put(m_root->filePath(QStringLiteral("etc/other")), "x"));
        QVERIFY(QFile::remove(m_root->filePath(QStringLiteral("etc/other"))));
        QVERIFY(put(m_root->filePath(QStringLiteral("usr/share/other")), "x"));
        QVERIFY(put(m_file, "{}"));
        QVERIFY(replaceByRename(m_file, "{}"));
        QVERIFY(nothingChanged());
    }

    void changesOfTheCatalogAreNoticed_data()
    {
        QTest::addColumn<QString>("action");
        for (const char *action : {"edit", "replace", "add", "remove", "rename", "add group", "remove group",
                                   "add in new group", "rename group", "touch"})
            QTest::newRow(action) << QString::fromLatin1(action);
    }
    void changesOfTheCatalogAreNoticed()
    {
        QFETCH(QString, action);
        QVERIFY(QDir().mkdir(event("empty")));
        m_watcher->start();
        const QString file = event("logins/login.json");
        if (action == QLatin1String("edit")) {
            QVERIFY(put(file, "{\"a\": 1}"));
        } else if (action == QLatin1String("replace")) {
            QVERIFY(replaceByRename(file, "{}"));
        } else if (action == QLatin1String("add")) {
            QVERIFY(put(event("logins/logout.json"), "{}"));
        } else if (action == QLatin1String("remove")) {
            QVERIFY(QFile::remove(file));
        } else if (action == QLatin1String("rename")) {
            QVERIFY(QFile::rename(file, event("logins/other.json")));
        } else if (action == QLatin1String("add group")) {
            QVERIFY(QDir().mkdir(event("mounts")));
        } else if (action == QLatin1String("remove group")) {
            QVERIFY(QDir().rmdir(event("empty")));
        } else if (action == QLatin1String("add in new group")) {
            QVERIFY(QDir().mkdir(event("mounts")));
            QVERIFY(put(event("mounts/mount.json"), "{}"));
        } else if (action == QLatin1String("rename group")) {
            QVERIFY(QDir().rename(event("logins"), event("sessions")));
        } else {
            const timespec times[2] = {{1000, 1}, {1000, 2}};
            QCOMPARE(::utimensat(AT_FDCWD, QFile::encodeName(file).constData(), times, 0), 0);
        }
        QVERIFY(changedOnce(m_directory));
    }

    void aPassingTemporaryFileInTheCatalogIsIgnored()
    {
        m_watcher->start();
        QVERIFY(put(event("logins/.swap"), "x"));
        QVERIFY(QFile::remove(event("logins/.swap")));
        QVERIFY(nothingChanged());
    }

    void aGroupThatAppearsLaterIsWatchedFromThenOn()
    {
        m_watcher->start();
        QVERIFY(QDir().mkdir(event("mounts")));
        QVERIFY(changedOnce(m_directory));
        QVERIFY(put(event("mounts/mount.json"), "{}"));
        QVERIFY(changedOnce(m_directory));
        QVERIFY(put(event("mounts/mount.json"), "{\"a\": 1}"));
        QVERIFY(changedOnce(m_directory));
    }

    void theCatalogMayBeDeletedAndCreatedAgain()
    {
        m_watcher->start();
        for (int i = 0; i < 3; ++i) {
            QVERIFY(QDir(m_root->filePath(QStringLiteral("usr/share/mod"))).removeRecursively());
            QVERIFY(changedOnce(m_directory));
            QVERIFY(QDir().mkpath(m_directory));
            QVERIFY(changedOnce(m_directory));
            QVERIFY(put(event("login.json"), "{}"));
            QVERIFY(changedOnce(m_directory));
            QVERIFY(put(event("login.json"), "{\"a\": 1}"));
            QVERIFY(changedOnce(m_directory));
        }
    }

    void theDirectoryAboveTheCatalogMayBeMovedAway()
    {
        m_watcher->start();
        const QString above = m_root->filePath(QStringLiteral("usr/share/mod"));
        QVERIFY(QDir().rename(above, above + QLatin1String(".old")));
        QVERIFY(changedOnce(m_directory));
        QVERIFY(QDir().mkpath(m_directory));
        QVERIFY(changedOnce(m_directory));
        QVERIFY(put(event("login.json"), "{}"));
        QVERIFY(changedOnce(m_directory));
        QVERIFY(put(above + QLatin1String(".old/settings/new.json"), "{}"));
        QVERIFY(nothingChanged());
    }

    void aBurstOfChangesIsReportedFarLessOften()
    {
        m_watcher->start();
        const int burst = 30;
        for (int i = 0; i < burst; ++i) {
            QVERIFY(replaceByRename(event("logins/login.json"), QByteArray::number(i)));
            QVERIFY(replaceByRename(m_file, QByteArray::number(i)));
            QTest::qWait(5);
        }
        QTRY_VERIFY(!m_changes->isEmpty());
        QTest::qWait(silence);
        // Once on an idle machine; on a busy one the pauses between the changes grow.
        QVERIFY2(m_changes->size() <= burst / 3, qPrintable(QString::number(m_changes->size())));
        QCOMPARE(m_changes->first().first().toString(), m_directory);
    }

    void changesWithoutAPauseAreReportedInTheEnd()
    {
        m_watcher->start();
        QElapsedTimer timer;
        timer.start();
        int n = 0;
        while (m_changes->isEmpty() && timer.elapsed() < 5000) {
            QVERIFY(put(m_file, QByteArray::number(++n)));
            QTest::qWait(10);
        }
        QVERIFY(!m_changes->isEmpty());
    }

    void nothingIsReportedWhileStopped()
    {
        m_watcher->start();
        m_watcher->stop();
        QVERIFY(put(m_file, "{\"a\": \"1\"}"));
        QVERIFY(put(event("logins/new.json"), "{}"));
        QVERIFY(nothingChanged());
    }

    void aNotificationUnderWayIsNotReportedAfterTheStop()
    {
        m_watcher->start();
        QVERIFY(put(m_file, "{\"a\": \"1\"}"));
        QTest::qWait(10);
        m_watcher->stop();
        QVERIFY(nothingChanged());
    }

    void anOwnChangeIsNeverReported_data()
    {
        QTest::addColumn<bool>("existed");
        QTest::addColumn<bool>("delivered");
        for (const bool existed : {true, false}) {
            for (const bool delivered : {true, false})
                QTest::addRow("file %s, notification %s", existed ? "there" : "new",
                              delivered ? "early" : "late")
                    << existed << delivered;
        }
    }
    void anOwnChangeIsNeverReported()
    {
        QFETCH(bool, existed);
        QFETCH(bool, delivered);
        if (!existed)
            QVERIFY(QFile::remove(m_file));
        m_watcher->start();
        for (int i = 0; i < 3; ++i) {
            m_watcher->stop();
            QVERIFY(replaceByRename(m_file, "{\"own\": \"" + QByteArray::number(i) + "\"}"));
            if (delivered)
                QTest::qWait(20);
            m_watcher->acknowledge();
            m_watcher->start();
            QVERIFY(nothingChanged());
        }
        QVERIFY(put(m_file, "{\"foreign\": \"1\"}"));
        QVERIFY(changedOnce(m_file));
    }

    void anAcknowledgedChangeIsNotReportedWhileRunningEither()
    {
        m_watcher->start();
        QVERIFY(put(m_file, "{\"own\": \"1\"}"));
        m_watcher->acknowledge();
        QVERIFY(nothingChanged());
    }

    void aForeignChangeAfterTheAcknowledgementIsReportedAtTheStart()
    {
        m_watcher->start();
        m_watcher->stop();
        QVERIFY(put(m_file, "{\"own\": \"1\"}"));
        m_watcher->acknowledge();
        QVERIFY(put(m_file, "{\"foreign\": \"1\"}"));
        QVERIFY(nothingChanged());
        m_watcher->start();
        QVERIFY(changedOnce(m_file));
    }

    void aStateAcknowledgedBeforeTheFirstStartIsComparedWith()
    {
        m_watcher->acknowledge();
        QVERIFY(put(m_file, "{\"foreign\": \"1\"}"));
        m_watcher->start();
        QVERIFY(changedOnce(m_file));
    }

    void aChangeUndoneInTimeIsNoChange()
    {
        m_watcher->start();
        QVERIFY(put(m_file, "{\"a\": \"1\"}"));
        QVERIFY(put(m_file, "{}"));
        QVERIFY(nothingChanged());
    }

    void thePageMayStopAndStartInAnswerToAChange()
    {
        m_watcher->start();
        connect(m_watcher.get(), &ConfigWatcher::changed, this, [this] {
            m_watcher->stop();
            m_watcher->acknowledge();
            m_watcher->start();
        });
        for (int i = 0; i < 3; ++i) {
            QVERIFY(replaceByRename(m_file, QByteArray::number(i)));
            QVERIFY(changedOnce(m_file));
        }
    }

    void aPipeInPlaceOfTheFileDoesNotBlock()
    {
        m_watcher->start();
        QVERIFY(QFile::remove(m_file));
        QCOMPARE(::mkfifo(QFile::encodeName(m_file).constData(), 0600), 0);
        QVERIFY(changedOnce(m_file));
    }
};

QTEST_GUILESS_MAIN(ConfigWatcherTest)

#include "configwatchertest.moc"
