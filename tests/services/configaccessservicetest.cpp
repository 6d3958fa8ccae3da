// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "configaccessservice.h"
#include "privatebus.h"
#include "systempaths.h"

#include <KLocalizedString>

#include <QFile>
#include <QTest>

/** Writing through the real helper into a root directory of the test's own. */
class ConfigAccessServiceTest : public QObject
{
    Q_OBJECT

private:
    [[nodiscard]] QByteArray contentOf(const QString &logicalPath) const
    {
        QFile file(m_bus.root() + logicalPath);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("not there");
    }

    PrivateBus m_bus;

private Q_SLOTS:
    void initTestCase()
    {
        KLocalizedString::setLanguages({QStringLiteral("en")});
        QVERIFY2(m_bus.start(), qPrintable(m_bus.errorString()));
    }
    void init() { QVERIFY(m_bus.setAllowed(true)); }
    void cleanup() { QFile::remove(m_bus.root() + SystemPaths::eventSettingsFile()); }

    void theHelperReplacesTheFile()
    {
        ConfigAccessService service(nullptr);
        const QString path = SystemPaths::eventSettingsFile();
        QVERIFY2(service.writeConfig(path, QByteArray("{\"a\": \"событие\"}")),
                 qPrintable(service.errorString()));
        QCOMPARE(contentOf(path), QByteArray("{\"a\": \"событие\"}"));
        QVERIFY2(service.writeConfig(path, QByteArray("{}")), qPrintable(service.errorString()));
        QCOMPARE(contentOf(path), QByteArray("{}"));
    }

    void linesArriveInTheFile()
    {
        ConfigAccessService service(nullptr);
        const QString path = SystemPaths::auditRulesFile();
        QVERIFY2(service.writeConfig(path, QStringList({QStringLiteral("# a"), QStringLiteral("# b")})),
                 qPrintable(service.errorString()));
        QCOMPARE(contentOf(path), QByteArray("# a\n# b\n"));
        QVERIFY2(service.writeConfig(path, QStringList()), qPrintable(service.errorString()));
        QCOMPARE(contentOf(path), QByteArray());
    }

    void aRefusedAuthorisationWritesNothingAndLeavesAText()
    {
        ConfigAccessService service(nullptr);
        const QString path = SystemPaths::eventSettingsFile();
        QVERIFY(service.writeConfig(path, QByteArray("{}")));
        QVERIFY(m_bus.setAllowed(false));
        QVERIFY(!service.writeConfig(path, QByteArray("{\"a\": \"b\"}")));
        QVERIFY2(service.errorString().contains(QLatin1String("refused")), qPrintable(service.errorString()));
        QCOMPARE(contentOf(path), QByteArray("{}"));
        QVERIFY(m_bus.setAllowed(true));
        QVERIFY(service.writeConfig(path, QByteArray("{\"a\": \"b\"}")));
        QCOMPARE(service.errorString(), QString());
        QCOMPARE(contentOf(path), QByteArray("{\"a\": \"b\"}"));
    }

    void aTargetThatTheHelperRefusesLeavesItsReason()
    {
        ConfigAccessService service(nullptr);
        QVERIFY(!service.writeConfig(QStringLiteral("/etc/passwd"), QByteArray("x")));
        QVERIFY2(service.errorString().contains(QLatin1String("/etc/passwd")),
                 qPrintable(service.errorString()));
        QCOMPARE(contentOf(QStringLiteral("/etc/passwd")), QByteArray("not there"));
    }
};

QTEST_GUILESS_MAIN(ConfigAccessServiceTest)

#include "configaccessservicetest.moc"
