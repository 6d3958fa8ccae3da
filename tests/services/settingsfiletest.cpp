// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "settingsfile.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <memory>
#include <sys/stat.h>

class SettingsFileTest : public QObject
{
    Q_OBJECT

private:
    [[nodiscard]] bool put(const QByteArray &content) const
    {
        QFile file(m_path);
        return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
    }

    std::unique_ptr<QTemporaryDir> m_directory;
    QString m_path;

private Q_SLOTS:
    void init()
    {
        m_directory = std::make_unique<QTemporaryDir>();
        m_path = m_directory->filePath(QStringLiteral("settings.conf"));
    }
    void cleanup() { m_directory.reset(); }

    void noFileIsAbsentWithoutAReason()
    {
        const SettingsFile file = readSettingsFile(m_path);
        QCOMPARE(file.state, SettingsFile::Absent);
        QVERIFY(file.object.isEmpty());
        QVERIFY(file.reason.isEmpty());
        QVERIFY(file.contentHash.isEmpty());
        const SettingsFile below = readSettingsFile(m_directory->filePath(QStringLiteral("missing/file")));
        QCOMPARE(below.state, SettingsFile::Absent);
    }

    void anObjectIsGood_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("value");
        QTest::newRow("empty object") << QByteArray("{}") << QString();
        QTest::newRow("blanks around") << QByteArray(" \n{\"a\": \"b\"}\n\n") << QStringLiteral("b");
        QTest::newRow("Cyrillic") << QByteArray("{\"a\": \"событие\"}") << QString::fromUtf8("событие");
    }
    void anObjectIsGood()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, value);
        QVERIFY(put(content));
        const SettingsFile file = readSettingsFile(m_path);
        QCOMPARE(file.state, SettingsFile::Good);
        QCOMPARE(file.object.value(QLatin1String("a")).toString(), value);
        QVERIFY(file.reason.isEmpty());
        QCOMPARE(file.contentHash, QCryptographicHash::hash(content, QCryptographicHash::Sha256));
    }

    void anythingElseIsMalformed_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("mentions");
        QTest::newRow("empty") << QByteArray() << QStringLiteral("empty");
        QTest::newRow("blank") << QByteArray(" \n\t\r\n") << QStringLiteral("empty");
        QTest::newRow("not JSON") << QByteArray("key = value\n") << QStringLiteral("line 1");
        QTest::newRow("cut off") << QByteArray("{\n\"a\": {\n") << QStringLiteral("line 3");
        QTest::newRow("rest behind") << QByteArray("{}\n}") << QStringLiteral("line 2");
        QTest::newRow("array") << QByteArray("[{}]") << QStringLiteral("object");
        QTest::newRow("string") << QByteArray("\"a\"") << QString();
        QTest::newRow("zero bytes") << QByteArray(16, '\0') << QString();
    }
    void anythingElseIsMalformed()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, mentions);
        QVERIFY(put(content));
        const SettingsFile file = readSettingsFile(m_path);
        QCOMPARE(file.state, SettingsFile::Malformed);
        QVERIFY(file.object.isEmpty());
        QVERIFY2(file.reason.contains(m_path), qPrintable(file.reason));
        QVERIFY2(file.reason.contains(mentions), qPrintable(file.reason));
        QCOMPARE(file.contentHash, QCryptographicHash::hash(content, QCryptographicHash::Sha256));
    }

    void whatIsNotARegularFileIsUnreadable_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::newRow("directory") << QStringLiteral("directory");
        QTest::newRow("named pipe") << QStringLiteral("pipe");
        QTest::newRow("link to nowhere") << QStringLiteral("link");
        QTest::newRow("file as a directory") << QStringLiteral("below");
    }
    void whatIsNotARegularFileIsUnreadable()
    {
        QFETCH(QString, kind);
        if (kind == QLatin1String("directory")) {
            QVERIFY(QDir().mkdir(m_path));
        } else if (kind == QLatin1String("pipe")) {
            QCOMPARE(::mkfifo(QFile::encodeName(m_path).constData(), 0600), 0);
        } else if (kind == QLatin1String("link")) {
            QVERIFY(QFile::link(m_directory->filePath(QStringLiteral("nowhere")), m_path));
        } else {
            QVERIFY(put("{}"));
            m_path += QLatin1String("/below");
        }
        const SettingsFile file = readSettingsFile(m_path);
        QCOMPARE(file.state, SettingsFile::Unreadable);
        QVERIFY2(file.reason.contains(m_path), qPrintable(file.reason));
        QVERIFY(file.contentHash.isEmpty());
    }

    void aFileWhoseBytesCannotBeReadIsUnreadable()
    {
        // A regular file that can be opened, but not read at its beginning, by anybody.
        m_path = QStringLiteral("/proc/self/mem");
        if (!QFile::exists(m_path))
            QSKIP("no /proc here, and nothing else that opens but does not read");
        const SettingsFile file = readSettingsFile(m_path);
        QCOMPARE(file.state, SettingsFile::Unreadable);
        QVERIFY2(file.reason.contains(m_path), qPrintable(file.reason));
        QVERIFY(file.contentHash.isEmpty());
    }

    void aLinkToARegularFileIsRead()
    {
        const QString target = m_directory->filePath(QStringLiteral("target"));
        QVERIFY(put("{\"a\": \"b\"}"));
        QVERIFY(QFile::rename(m_path, target));
        QVERIFY(QFile::link(target, m_path));
        QCOMPARE(readSettingsFile(m_path).state, SettingsFile::Good);
    }

    void theHashTellsContentsApart()
    {
        QVERIFY(put("{}"));
        const QByteArray first = readSettingsFile(m_path).contentHash;
        QCOMPARE(first.size(), 32);
        QVERIFY(put("{ }"));
        QVERIFY(readSettingsFile(m_path).contentHash != first);
        QVERIFY(put("{}"));
        QCOMPARE(readSettingsFile(m_path).contentHash, first);
    }
};

QTEST_GUILESS_MAIN(SettingsFileTest)

#include "settingsfiletest.moc"
