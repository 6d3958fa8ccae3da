// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <memory>

/** Runs the stand-in on a sandbox of its own, with the real syslog-ng where the machine has it. */
class SystemctlTest : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> m_root;
    QString m_output;

    [[nodiscard]] QString below(const char *path) const { return m_root->filePath(QLatin1String(path)); }

    static QByteArray contents(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    static bool write(const QString &path, const QByteArray &text)
    {
        QFile file(path);
        return file.open(QIODevice::WriteOnly) && file.write(text) == text.size();
    }

    int run(const QStringList &arguments)
    {
        QProcess process;
        process.setProcessChannelMode(QProcess::MergedChannels);
        // The helper calls it with next to nothing in the environment.
        process.setProcessEnvironment(QProcessEnvironment());
        process.start(QStringLiteral(SYSTEMCTL), arguments);
        if (!process.waitForFinished(20000) || process.exitStatus() != QProcess::NormalExit) {
            return -1;
        }
        m_output = QString::fromUtf8(process.readAll());
        return process.exitCode();
    }

    int control(const char *operation, const char *unit)
    {
        return run(
            {QStringLiteral("--sandbox"), m_root->path(), QLatin1String(operation), QLatin1String(unit)});
    }

    static bool hasSyslogNg()
    {
        return !QStandardPaths::findExecutable(QStringLiteral("syslog-ng"),
                                               {QStringLiteral("/usr/sbin"), QStringLiteral("/sbin")})
                    .isEmpty();
    }

private Q_SLOTS:
    void init()
    {
        m_root = std::make_unique<QTemporaryDir>();
        QVERIFY(m_root->isValid());
        QVERIFY(QDir(m_root->path()).mkpath(QStringLiteral("etc/syslog-ng/conf.d")));
        QVERIFY(QDir(m_root->path()).mkpath(QStringLiteral("run")));
        QByteArray config
            = contents(QFileInfo(QStringLiteral(SYSTEMCTL)).path() + QLatin1String("/syslog-ng.conf.in"));
        QVERIFY(config.contains("@ROOT@"));
        config.replace("@ROOT@", m_root->path().toUtf8());
        QVERIFY(write(below("etc/syslog-ng/syslog-ng.conf"), config));
    }

    void cleanup()
    {
        control("stop", "syslog-ng");
        m_root.reset();
    }

    void syslogNgStartsLogsAndStops()
    {
        if (!hasSyslogNg()) {
            QSKIP("needs syslog-ng");
        }
        QCOMPARE(control("status", "syslog-ng"), 3);
        QCOMPARE(control("start", "syslog-ng"), 0);
        QCOMPARE(control("status", "syslog-ng"), 0);
        QVERIFY(m_output.contains(QLatin1String("active (running)")));
        QTRY_VERIFY(contents(below("var/log/syslog")).contains("syslog-ng starting up"));
        QCOMPARE(control("stop", "syslog-ng"), 0);
        QCOMPARE(control("status", "syslog-ng"), 3);
    }

    void startingTwiceKeepsTheProcessAndRestartingReplacesIt()
    {
        if (!hasSyslogNg()) {
            QSKIP("needs syslog-ng");
        }
        QCOMPARE(control("start", "syslog-ng.service"), 0);
        const QByteArray first = contents(below("run/syslog-ng/syslog-ng.pid"));
        QVERIFY(first.trimmed().toInt() > 1);
        QCOMPARE(control("start", "syslog-ng"), 0);
        QCOMPARE(contents(below("run/syslog-ng/syslog-ng.pid")), first);
        QCOMPARE(control("restart", "syslog-ng"), 0);
        const QByteArray second = contents(below("run/syslog-ng/syslog-ng.pid"));
        QVERIFY(second.trimmed().toInt() > 1);
        QVERIFY(second != first);
        QCOMPARE(control("status", "syslog-ng"), 0);
    }

    void aConfigurationThatDoesNotParseIsReported()
    {
        if (!hasSyslogNg()) {
            QSKIP("needs syslog-ng");
        }
        QVERIFY(write(below("etc/syslog-ng/conf.d/broken.conf"), "bogus {\n"));
        QCOMPARE(control("start", "syslog-ng"), 1);
        QVERIFY2(m_output.contains(QLatin1String("broken.conf")), qPrintable(m_output));
        QCOMPARE(control("status", "syslog-ng"), 3);
    }

    void aProcessNumberOfSomebodyElseIsNeitherTakenNorKilled()
    {
        QProcess other;
        other.start(QStringLiteral("sleep"), {QStringLiteral("60")});
        QVERIFY(other.waitForStarted());
        QVERIFY(QDir(m_root->path()).mkpath(QStringLiteral("run/syslog-ng")));
        QVERIFY(write(below("run/syslog-ng/syslog-ng.pid"), QByteArray::number(other.processId())));
        QCOMPARE(control("status", "syslog-ng"), 3);
        QCOMPARE(control("stop", "syslog-ng"), 0);
        QCOMPARE(other.state(), QProcess::Running);
        QVERIFY(!other.waitForFinished(100));
        other.kill();
        other.waitForFinished();
    }

    void auditdIsOnlyRecorded()
    {
        const auto starts = [this] { return contents(below("run/auditd.log")).count('\n'); };
        QCOMPARE(control("status", "auditd"), 3);
        QCOMPARE(control("start", "auditd"), 0);
        QCOMPARE(control("status", "auditd"), 0);
        QCOMPARE(control("start", "auditd"), 0);
        QCOMPARE(starts(), 1);
        QCOMPARE(control("restart", "auditd"), 0);
        QCOMPARE(control("status", "auditd"), 0);
        QCOMPARE(starts(), 2);
        QCOMPARE(control("stop", "auditd"), 0);
        QCOMPARE(control("status", "auditd"), 3);
        QCOMPARE(starts(), 2);
    }

    void otherServicesAndOperationsAreRefused()
    {
        QCOMPARE(control("start", "ssh"), 4);
        QCOMPARE(control("status", "../auditd"), 4);
        QCOMPARE(control("enable", "syslog-ng"), 2);
    }

    void nothingRunsWithoutASandbox()
    {
        QCOMPARE(run({QStringLiteral("start"), QStringLiteral("syslog-ng")}), 2);
        QCOMPARE(run({QStringLiteral("--sandbox"), below("missing"), QStringLiteral("start"),
                      QStringLiteral("syslog-ng")}),
                 2);
        QCOMPARE(run({QStringLiteral("--help")}), 0);
        QVERIFY(m_output.contains(QLatin1String("--sandbox DIR")));
    }
};

QTEST_GUILESS_MAIN(SystemctlTest)
#include "systemctltest.moc"
