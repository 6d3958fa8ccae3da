// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "boxanswerer.h"
#include "pagefixture.h"

#include <statewidget.h>

#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QProcess>
#include <QPushButton>
#include <QStandardPaths>
#include <QTest>

#include <csignal>

/// The page's label and button beside a service that really runs, or fails in one of the ways services fail.
class ServicePageTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void thePageFollowsARealService();
    void applyRestartsItOnTheNewFiles();
    void aFailureIsShownAndTheLabelTellsTheTruth_data();
    void aFailureIsShownAndTheLabelTellsTheTruth();
    void aRestartThatOnlyStopsIsShownAsStopped();
    void aServiceKilledBehindThePageIsNoticedAtTheNextAction();

private:
    bool useRealService();
    void useScript(const QByteArray &body);
    qint64 pid() const;

    PageFixture m_machine;
};

void ServicePageTest::initTestCase()
{
    const QString problem = m_machine.start();
    QVERIFY2(problem.isEmpty(), qPrintable(problem));
}

void ServicePageTest::init()
{
    m_machine.reset();
    QVERIFY(m_machine.bus->setAllowed(true));
}

void ServicePageTest::cleanup()
{
    QProcess::execute(
        QStringLiteral(SYSTEMCTL),
        {QStringLiteral("--sandbox"), m_machine.root(), QStringLiteral("stop"), QStringLiteral("syslog-ng")});
}

void ServicePageTest::useScript(const QByteArray &body)
{
    const QString path = m_machine.root() + QStringLiteral("/bin/systemctl");
    PageFixture::replace(path, "#!/bin/sh\n" + body);
    QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

bool ServicePageTest::useRealService()
{
    const QStringList places{QStringLiteral("/usr/sbin"), QStringLiteral("/sbin")};
    if (QStandardPaths::findExecutable(QStringLiteral("syslog-ng"), places).isEmpty()) {
        return false;
    }
    QByteArray config = PageFixture::read(QFileInfo(QStringLiteral(SYSTEMCTL)).path()
                                          + QStringLiteral("/syslog-ng.conf.in"));
    config.replace("@ROOT@", m_machine.root().toUtf8());
    PageFixture::write(m_machine.root() + QStringLiteral("/etc/syslog-ng/syslog-ng.conf"), config);
    QDir(m_machine.root()).mkpath(QStringLiteral("run"));
    useScript("exec '" SYSTEMCTL "' --sandbox '" + m_machine.root().toUtf8() + "' \"$@\"\n");
    return QProcess::execute(m_machine.root() + QStringLiteral("/bin/systemctl"),
                             {QStringLiteral("start"), QStringLiteral("auditd")})
        == 0;
}

qint64 ServicePageTest::pid() const
{
    return PageFixture::read(m_machine.root() + QStringLiteral("/run/syslog-ng/syslog-ng.pid"))
        .trimmed()
        .toLongLong();
}

void ServicePageTest::thePageFollowsARealService()
{
    if (!useRealService()) {
        QSKIP("needs syslog-ng");
    }
    const auto page = m_machine.openPage();
    QVERIFY(page);
    auto *button = PageFixture::serviceButton(*page);
    auto *label = PageFixture::serviceLabel(*page);
    QCOMPARE(label->text(), QStringLiteral("Logging service stopped."));
    QCOMPARE(label->toolTip(), QStringLiteral("auditd: on, syslog-ng: off"));

    QTest::mouseClick(button, Qt::LeftButton);
    QVERIFY(!button->isEnabled());
    QTRY_COMPARE_WITH_TIMEOUT(label->text(), QStringLiteral("Logging service is running."), 20000);
    QCOMPARE(label->toolTip(), QStringLiteral("auditd: on, syslog-ng: on"));
    QVERIFY(button->isEnabled());
    const qint64 started = pid();
    QVERIFY(started > 1);
    QCOMPARE(::kill(pid_t(started), 0), 0);

    QTest::mouseClick(button, Qt::LeftButton);
    QTRY_COMPARE_WITH_TIMEOUT(label->text(), QStringLiteral("Logging service stopped."), 20000);
    QCOMPARE(label->toolTip(), QStringLiteral("auditd: on, syslog-ng: off"));
    QTRY_VERIFY(::kill(pid_t(started), 0) != 0);
}

void ServicePageTest::applyRestartsItOnTheNewFiles()
{
    if (!useRealService()) {
        QSKIP("needs syslog-ng");
    }
    const auto page = m_machine.openPage();
    QVERIFY(page);
    auto *button = PageFixture::serviceButton(*page);
    auto *label = PageFixture::serviceLabel(*page);
    button->click();
    QTRY_COMPARE_WITH_TIMEOUT(label->text(), QStringLiteral("Logging service is running."), 20000);
    const qint64 before = pid();
    // What the new process writes here, the old one had never heard of.
    const QString log = m_machine.root() + QStringLiteral("/var/log/added");
    PageFixture::write(m_machine.root() + QStringLiteral("/etc/syslog-ng/conf.d/added.conf"),
                       "destination d_added { file(\"" + log.toUtf8()
                           + "\"); };\nlog { source(s_sandbox); destination(d_added); };\n");
    m_machine.toggle(*page, QStringLiteral("watch"));
    page->save();
    QTRY_VERIFY_WITH_TIMEOUT(pid() > 1 && pid() != before, 20000);
    QTRY_VERIFY_WITH_TIMEOUT(PageFixture::read(log).contains("syslog-ng starting up"), 10000);
    QTRY_VERIFY_WITH_TIMEOUT(button->isEnabled(), 10000);
    QCOMPARE(label->text(), QStringLiteral("Logging service is running."));
}

void ServicePageTest::aFailureIsShownAndTheLabelTellsTheTruth_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::addColumn<QString>("reason");
    const QByteArray stopped = "case \"$*\" in 'status auditd') exit 0;; status*) exit 3;;";
    QTest::newRow("a unit that does not start")
        << QByteArray(stopped + " *) echo no such unit >&2; exit 5;; esac\n")
        << QStringLiteral("no such unit");
    QTest::newRow("a service that dies at once")
        << QByteArray(stopped + " esac\n") << QStringLiteral("ended at once");
    QTest::newRow("no service manager") << QByteArray() << QStringLiteral("systemctl");
}

void ServicePageTest::aFailureIsShownAndTheLabelTellsTheTruth()
{
    QFETCH(QByteArray, script);
    QFETCH(QString, reason);
    const QString path = m_machine.root() + QStringLiteral("/bin/systemctl");
    if (script.isEmpty()) {
        // A program that cannot be started, before any other of that name on the search path.
        PageFixture::replace(path, "#!/nowhere/interpreter\n");
        QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    } else {
        useScript(script);
    }
    const auto page = m_machine.openPage();
    QVERIFY(page);
    auto *button = PageFixture::serviceButton(*page);
    auto *label = PageFixture::serviceLabel(*page);
    QCOMPARE(label->text(), QStringLiteral("Logging service stopped."));
    const BoxAnswerer boxes;
    button->click();
    QTRY_COMPARE_WITH_TIMEOUT(boxes.boxes().size(), 1, 20000);
    QCOMPARE(boxes.boxes().at(0).title, QStringLiteral("org.nivra.kcm.adminevents.loggingservicectl"));
    QCOMPARE(boxes.boxes().at(0).icon, QMessageBox::Critical);
    QVERIFY2(boxes.boxes().at(0).text.contains(reason), qPrintable(boxes.boxes().at(0).text));
    QTRY_VERIFY(button->isEnabled());
    QCOMPARE(label->text(), QStringLiteral("Logging service stopped."));
    QCOMPARE(button->text(), QStringLiteral("Start logging service"));
}

void ServicePageTest::aRestartThatOnlyStopsIsShownAsStopped()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    auto *button = PageFixture::serviceButton(*page);
    auto *label = PageFixture::serviceLabel(*page);
    QCOMPARE(label->text(), QStringLiteral("Logging service is running."));
    useScript("case \"$*\" in *auditd) exit 0;; *) echo bad configuration; exit 1;; esac\n");
    m_machine.toggle(*page, QStringLiteral("watch"));
    const BoxAnswerer boxes;
    page->save();
    QTRY_COMPARE_WITH_TIMEOUT(boxes.boxes().size(), 1, 20000);
    QVERIFY(boxes.boxes().at(0).text.contains(QStringLiteral("bad configuration")));
    QTRY_COMPARE(label->text(), QStringLiteral("Logging service stopped."));
    QCOMPARE(button->text(), QStringLiteral("Start logging service"));
    QVERIFY(button->isEnabled());
}

void ServicePageTest::aServiceKilledBehindThePageIsNoticedAtTheNextAction()
{
    if (!useRealService()) {
        QSKIP("needs syslog-ng");
    }
    const auto page = m_machine.openPage();
    QVERIFY(page);
    auto *button = PageFixture::serviceButton(*page);
    auto *label = PageFixture::serviceLabel(*page);
    button->click();
    QTRY_COMPARE_WITH_TIMEOUT(label->text(), QStringLiteral("Logging service is running."), 20000);
    QCOMPARE(::kill(pid_t(pid()), SIGKILL), 0);
    button->click(); // "Stop", of what is gone already
    QTRY_COMPARE_WITH_TIMEOUT(label->text(), QStringLiteral("Logging service stopped."), 20000);
    QVERIFY(button->isEnabled());
    button->click();
    QTRY_COMPARE_WITH_TIMEOUT(label->text(), QStringLiteral("Logging service is running."), 20000);
}

QTEST_MAIN(ServicePageTest)

#include "servicepagetest.moc"
