// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "loggingservice.h"
#include "privatebus.h"

#include <KLocalizedString>

#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

/** Service control through the real helper, which is given a service manager that records its calls. */
class LoggingServiceTest : public QObject
{
    Q_OBJECT

private:
    [[nodiscard]] bool stage(int exitCode) const
    {
        QFile::remove(m_calls);
        QFile script(m_systemctl);
        const QByteArray text = "#!/bin/sh\necho \"$*\" >> '" + QFile::encodeName(m_calls) + "'\nexit "
            + QByteArray::number(exitCode) + "\n";
        return script.open(QIODevice::WriteOnly) && script.write(text) == text.size()
            && script.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner
                                     | QFileDevice::ExeOwner);
    }
    [[nodiscard]] QList<QByteArray> calls() const
    {
        QFile file(m_calls);
        return file.open(QIODevice::ReadOnly) ? file.readAll().trimmed().split('\n') : QList<QByteArray>();
    }
    [[nodiscard]] QByteArray lastCall() const { return calls().value(calls().size() - 1); }

    QTemporaryDir m_directory;
    const QString m_systemctl = m_directory.filePath(QStringLiteral("systemctl"));
    const QString m_calls = m_directory.filePath(QStringLiteral("calls"));
    std::unique_ptr<PrivateBus> m_bus;

private Q_SLOTS:
    void initTestCase()
    {
        KLocalizedString::setLanguages({QStringLiteral("en")});
        QVERIFY(stage(0));
        m_bus = std::make_unique<PrivateBus>(QString(),
                                             QStringList({QStringLiteral("--systemctl"), m_systemctl}));
        QVERIFY2(m_bus->start(), qPrintable(m_bus->errorString()));
    }
    void init() { QVERIFY(m_bus->setAllowed(true)); }

    void aCommandThatWasCarriedOutChangesTheState_data()
    {
        QTest::addColumn<QByteArray>("command");
        QTest::newRow("start") << QByteArray("start");
        QTest::newRow("stop") << QByteArray("stop");
        QTest::newRow("restart") << QByteArray("restart");
    }
    void aCommandThatWasCarriedOutChangesTheState()
    {
        QFETCH(QByteArray, command);
        QVERIFY(stage(0));
        LoggingService service(nullptr);
        QSignalSpy changed(&service, &LoggingService::stateChanged);
        QSignalSpy errors(&service, &AccessService::error);
        if (command == "start")
            service.start();
        else if (command == "stop")
            service.stop();
        else
            service.restart();
        QCOMPARE(changed.size(), 0);
        QTRY_COMPARE(changed.size(), 1);
        QCOMPARE(errors.size(), 0);
        // What was started is looked at once more.
        QCOMPARE(lastCall(), QByteArray(command == "stop" ? "stop syslog-ng" : "status syslog-ng"));
        QVERIFY(calls().contains(QByteArray(command + " syslog-ng")));
    }

    void aFailureIsReportedUnderTheActionsNameAndChangesNothing_data()
    {
        QTest::addColumn<QString>("command");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<bool>("allowed");
        QTest::newRow("service manager fails") << QStringLiteral("stop") << 5 << true;
        QTest::newRow("unknown word") << QStringLiteral("enable") << 0 << true;
        QTest::newRow("refused") << QStringLiteral("start") << 0 << false;
    }
    void aFailureIsReportedUnderTheActionsNameAndChangesNothing()
    {
        QFETCH(QString, command);
        QFETCH(int, exitCode);
        QFETCH(bool, allowed);
        QVERIFY(stage(exitCode));
        QVERIFY(m_bus->setAllowed(allowed));
        LoggingService service(nullptr);
        QSignalSpy changed(&service, &LoggingService::stateChanged);
        QString name;
        QString text;
        connect(&service, &AccessService::error, this,
                [&](const KAuth::Action *action, const QString &reason) {
                    name = action->name();
                    text = reason;
                });
        service.runCmd(command);
        QTRY_COMPARE(name, QStringLiteral("org.nivra.kcm.adminevents.loggingservicectl"));
        QVERIFY(!text.trimmed().isEmpty());
        QCOMPARE(service.errorString(), text);
        QCOMPARE(changed.size(), 0);
        QCOMPARE(lastCall(), QByteArray(exitCode == 0 ? "" : "stop syslog-ng"));
    }
};

QTEST_GUILESS_MAIN(LoggingServiceTest)

#include "loggingservicetest.moc"
