// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "actiongate.h"
#include "actionids.h"
#include "configaccessservice.h"
#include "leashedprocess.h"
#include "privatebus.h"
#include "processturn.h"

#include <KAuth/ExecuteJob>
#include <KLocalizedString>

#include <QFile>
#include <QLockFile>
#include <QSignalSpy>
#include <QSysInfo>
#include <QTemporaryDir>
#include <QTest>
#include <QTextCodec>
#include <QTimer>

#include <memory>

/** What the services ask for and make of the answers, with a helper that echoes what it is asked. */
class AccessServiceTest : public QObject
{
    Q_OBJECT

private:
    [[nodiscard]] static KAuth::Action writeAction(const QString &path)
    {
        KAuth::Action action(ActionIds::action(ActionIds::writeConfig));
        action.setHelperId(ActionIds::helper());
        action.addArgument(QStringLiteral("path"), path);
        return action;
    }
    [[nodiscard]] bool run(AccessService &service, const char *path) const
    {
        KAuth::Action action = writeAction(QLatin1String(path));
        return service.execute(action);
    }
    [[nodiscard]] static QVariantMap asked(const AccessService &service)
    {
        return service.getActionResult(QStringLiteral("arguments")).toMap();
    }
    [[nodiscard]] int calls() const
    {
        ConfigAccessService probe(nullptr);
        return run(probe, "/probe") ? probe.getActionResult(QStringLiteral("calls")).toInt() : -1;
    }

    QTemporaryDir m_runtime;
    PrivateBus m_bus;
    std::unique_ptr<LeashedProcess> m_helper;

private Q_SLOTS:
    void initTestCase()
    {
        KLocalizedString::setLanguages({QStringLiteral("en")});
        qputenv("XDG_RUNTIME_DIR", m_runtime.path().toUtf8());
        QVERIFY2(m_bus.start(), qPrintable(m_bus.errorString()));
    }
    void init()
    {
        // It takes the helper's name, so that the bus does not start the real one.
        m_helper = std::make_unique<LeashedProcess>();
        m_helper->setProcessChannelMode(QProcess::ForwardedChannels);
        m_helper->start(QStringLiteral(ECHO_HELPER_PATH), QStringList());
        QVERIFY(m_helper->waitForStarted());
        QTRY_COMPARE(m_bus.helperPid(), m_helper->processId());
        QVERIFY(m_bus.setAllowed(true));
    }
    void cleanup()
    {
        m_helper.reset();
        QTRY_COMPARE(m_bus.helperPid(), 0);
    }

    void aSuccessLeavesTheReplyAndNoError()
    {
        AccessService service(nullptr);
        QVERIFY(run(service, "/etc/x"));
        QCOMPARE(service.errorString(), QString());
        QCOMPARE(service.getActionResult(QStringLiteral("verb")).toString(), QStringLiteral("writeconfig"));
        QCOMPARE(service.getActionResults().keys(),
                 QStringList({QStringLiteral("arguments"), QStringLiteral("calls"), QStringLiteral("verb")}));
    }

    void aKeyThatTheReplyLacksIsAnInvalidVariant()
    {
        AccessService service(nullptr);
        QVERIFY(!service.getActionResult(QStringLiteral("verb")).isValid());
        QVERIFY(run(service, "/etc/x"));
        QVERIFY(service.getActionResult(QStringLiteral("verb")).isValid());
        QVERIFY(!service.getActionResult(QStringLiteral("missing")).isValid());
    }

    void aFailureKeepsTheHelpersTextAndReplacesTheReply()
    {
        AccessService service(nullptr);
        QVERIFY(run(service, "/etc/x"));
        QVERIFY(!run(service, "/fail"));
        QCOMPARE(service.errorString(), QStringLiteral("staged failure"));
        // What is left is what the job carried, nothing of the action before.
        KAuth::Action action = writeAction(QStringLiteral("/fail"));
        KAuth::ExecuteJob *const job = action.execute();
        QVERIFY(!job->exec());
        QCOMPARE(service.getActionResults().keys(), job->data().keys());
        QVERIFY(asked(service).value(QStringLiteral("path")) != QVariant(QStringLiteral("/etc/x")));
    }

    void aSuccessAfterAFailureForgetsTheError()
    {
        AccessService service(nullptr);
        QVERIFY(!run(service, "/fail"));
        QVERIFY(run(service, "/etc/x"));
        QCOMPARE(service.errorString(), QString());
    }

    void aFailureWithoutATextGetsOneThatNamesTheActionAndTheCode()
    {
        AccessService service(nullptr);
        QVERIFY(!run(service, "/silent"));
        const QString text = service.errorString();
        QVERIFY2(text.contains(QLatin1String("org.nivra.kcm.adminevents.writeconfig")), qPrintable(text));
        // The code comes from the framework, which the job tells as it is.
        KAuth::Action action = writeAction(QStringLiteral("/silent"));
        KAuth::ExecuteJob *const job = action.execute();
        QVERIFY(!job->exec());
        QVERIFY2(job->errorString().isEmpty(), "the framework gives a text now");
        QVERIFY(job->error() != 0);
        QVERIFY2(text.contains(QString::number(job->error())), qPrintable(text));
    }

    void aRefusedAuthorisationNeverReachesTheHelperAndLeavesAText()
    {
        AccessService service(nullptr);
        const int before = calls();
        QVERIFY(before > 0);
        QVERIFY(m_bus.setAllowed(false));
        QVERIFY(!run(service, "/etc/x"));
        const QString text = service.errorString();
        QVERIFY2(text.contains(QLatin1String("org.nivra.kcm.adminevents.writeconfig")), qPrintable(text));
        QVERIFY2(text.contains(QLatin1String("refused")), qPrintable(text));
        QVERIFY2(text.contains(QString::number(KAuth::ActionReply::AuthorizationDeniedError)),
                 qPrintable(text));
        QCOMPARE(service.errorCode(), int(KAuth::ActionReply::AuthorizationDeniedError));
        QVERIFY(service.getActionResults().isEmpty());
        QVERIFY(m_bus.setAllowed(true));
        QCOMPARE(calls(), before + 1);
        QVERIFY(run(service, "/etc/x"));
        QCOMPARE(service.errorCode(), 0);
    }

    void anActionThatTheHelperDoesNotKnowFailsWithAText()
    {
        AccessService service(nullptr);
        KAuth::Action action(ActionIds::helper() + QLatin1String(".nosuchverb"));
        action.setHelperId(ActionIds::helper());
        QVERIFY(!service.execute(action));
        QVERIFY2(service.errorString().contains(action.name()), qPrintable(service.errorString()));
    }

    void aHelperThatDoesNotExistFailsWithAText()
    {
        AccessService service(nullptr);
        KAuth::Action action(QStringLiteral("org.nivra.nosuchhelper.act"));
        action.setHelperId(QStringLiteral("org.nivra.nosuchhelper"));
        QVERIFY(!service.execute(action));
        QVERIFY(!service.errorString().trimmed().isEmpty());
    }

    void anErrorSetByHandStaysUntilTheNextAction()
    {
        AccessService service(nullptr);
        QVERIFY(run(service, "/etc/x"));
        service.setLastError(QStringLiteral("by hand"));
        QCOMPARE(service.errorString(), QStringLiteral("by hand"));
        QVERIFY(!service.getActionResults().isEmpty());
        QVERIFY(run(service, "/etc/x"));
        QCOMPARE(service.errorString(), QString());
    }

    void anAsynchronousSuccessIsReportedLaterAndItsReplyIsNotKept()
    {
        AccessService service(nullptr);
        QString finishedName;
        connect(&service, &AccessService::finished, this,
                [&finishedName](const KAuth::Action *action) { finishedName = action->name(); });
        QSignalSpy errors(&service, &AccessService::error);
        {
            KAuth::Action action = writeAction(QStringLiteral("/etc/x"));
            service.executeAsync(action);
            QVERIFY(finishedName.isEmpty());
        }
        QTRY_COMPARE(finishedName, QStringLiteral("org.nivra.kcm.adminevents.writeconfig"));
        QCOMPARE(errors.size(), 0);
        QVERIFY(service.getActionResults().isEmpty());
        QCOMPARE(service.errorString(), QString());
    }

    void anAsynchronousFailureIsReportedWithItsText_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<bool>("allowed");
        QTest::addColumn<QString>("mentions");
        QTest::newRow("text") << QStringLiteral("/fail") << true << QStringLiteral("staged failure");
        QTest::newRow("no text") << QStringLiteral("/silent") << true
                                 << QStringLiteral("org.nivra.kcm.adminevents.writeconfig");
        QTest::newRow("refused") << QStringLiteral("/etc/x") << false << QStringLiteral("refused");
    }
    void anAsynchronousFailureIsReportedWithItsText()
    {
        QFETCH(QString, path);
        QFETCH(bool, allowed);
        QFETCH(QString, mentions);
        AccessService service(nullptr);
        QVERIFY(run(service, "/etc/x"));
        const auto reply = service.getActionResults();
        QVERIFY(m_bus.setAllowed(allowed));
        QString name;
        QString text;
        connect(&service, &AccessService::error, this,
                [&](const KAuth::Action *action, const QString &reason) {
                    name = action->name();
                    text = reason;
                });
        QSignalSpy finished(&service, &AccessService::finished);
        KAuth::Action action = writeAction(path);
        service.executeAsync(action);
        QTRY_COMPARE(name, QStringLiteral("org.nivra.kcm.adminevents.writeconfig"));
        QVERIFY2(text.contains(mentions), qPrintable(text));
        QCOMPARE(service.errorString(), text);
        QCOMPARE(finished.size(), 0);
        QCOMPARE(service.getActionResults(), reply);
    }

    void actionsOfOneNameInFlightEachGetTheirOwnEnd()
    {
        AccessService service(nullptr);
        AccessService other(nullptr);
        QSignalSpy finished(&service, &AccessService::finished);
        QSignalSpy errors(&service, &AccessService::error);
        QSignalSpy othersFinished(&other, &AccessService::finished);
        for (const char *path : {"/fail", "/etc/x", "/fail", "/etc/y"}) {
            KAuth::Action action = writeAction(QLatin1String(path));
            service.executeAsync(action);
        }
        KAuth::Action action = writeAction(QStringLiteral("/etc/z"));
        other.executeAsync(action);
        // Synchronously in the middle of them, and with the answer to its own question.
        AccessService third(nullptr);
        QVERIFY(run(third, "/etc/mine"));
        QCOMPARE(asked(third).value(QStringLiteral("path")).toString(), QStringLiteral("/etc/mine"));
        QTRY_COMPARE(finished.size() + errors.size() + othersFinished.size(), 5);
        QCOMPARE(finished.size(), 2);
        QCOMPARE(errors.size(), 2);
        QCOMPARE(calls(), 7);
    }

    void actionsOfSeveralNamesInFlightAllEnd()
    {
        AccessService service(nullptr);
        QSignalSpy finished(&service, &AccessService::finished);
        QStringList names;
        connect(&service, &AccessService::finished, this, [&names](const KAuth::Action *action) {
            names << action->name().section(QLatin1Char('.'), -1);
        });
        const QStringList verbs{QStringLiteral("writeconfig"), QStringLiteral("exportconfig"),
                                QStringLiteral("importconfig"), QStringLiteral("writeconfig")};
        for (const QString &verb : verbs) {
            KAuth::Action action(ActionIds::helper() + QLatin1Char('.') + verb);
            action.setHelperId(ActionIds::helper());
            service.executeAsync(action);
        }
        AccessService other(nullptr);
        QVERIFY2(run(other, "/etc/x"), qPrintable(other.errorString()));
        // Asked last, carried out last.
        QCOMPARE(names, verbs);
        QCOMPARE(other.getActionResult(QStringLiteral("calls")).toInt(), verbs.size() + 1);
    }

    void actionsThatWaitAboveOneAnotherAllEnd()
    {
        AccessService outer(nullptr);
        AccessService inner(nullptr);
        AccessService innermost(nullptr);
        bool innerSucceeded = false;
        bool innermostSucceeded = false;
        QTimer::singleShot(0, this, [&] {
            QTimer::singleShot(0, this, [&] { innermostSucceeded = run(innermost, "/etc/innermost"); });
            innerSucceeded = run(inner, "/etc/inner");
        });
        QVERIFY(run(outer, "/etc/outer"));
        QVERIFY(innerSucceeded);
        QVERIFY(innermostSucceeded);
        QCOMPARE(asked(outer).value(QStringLiteral("path")).toString(), QStringLiteral("/etc/outer"));
        QCOMPARE(asked(inner).value(QStringLiteral("path")).toString(), QStringLiteral("/etc/inner"));
        QCOMPARE(asked(innermost).value(QStringLiteral("path")).toString(), QStringLiteral("/etc/innermost"));
        QCOMPARE(calls(), 4);
    }

    void anActionWaitsForThatOfAnotherProgram()
    {
        QLockFile other(ProcessTurn::lockPath());
        QVERIFY(other.lock());
        AccessService service(nullptr);
        AccessService asynchronous(nullptr);
        QSignalSpy finished(&asynchronous, &AccessService::finished);
        KAuth::Action action = writeAction(QStringLiteral("/etc/later"));
        asynchronous.executeAsync(action);
        QTest::qWait(300);
        QCOMPARE(finished.size(), 0);
        QTimer::singleShot(300, this, [&other] { other.unlock(); });
        QVERIFY(run(service, "/etc/x"));
        QCOMPARE(finished.size(), 1);
        QVERIFY(!other.isLocked());
        // And gives the turn back.
        QVERIFY(other.tryLock(0));
    }

    void anActionDoesNotWaitForEver()
    {
        QLockFile other(ProcessTurn::lockPath());
        QVERIFY(other.lock());
        QVERIFY(ActionGate::instance().waitUntilFree(std::chrono::milliseconds(250))
                == ActionGate::Wait::OtherProgram);
        other.unlock();
        QVERIFY(ActionGate::instance().waitUntilFree(std::chrono::milliseconds(0)) == ActionGate::Wait::Free);
        QVERIFY(!other.tryLock(0));
        ActionGate::instance().giveUp();
        QVERIFY(other.tryLock(0));
    }

    void anActionDoesNotWaitForEverBehindOneThatWaits()
    {
        QLockFile other(ProcessTurn::lockPath());
        QVERIFY(other.lock());
        AccessService asynchronous(nullptr);
        QSignalSpy finished(&asynchronous, &AccessService::finished);
        KAuth::Action action = writeAction(QStringLiteral("/etc/later"));
        asynchronous.executeAsync(action);
        QVERIFY(ActionGate::instance().waitUntilFree(std::chrono::milliseconds(250))
                == ActionGate::Wait::OtherProgram);
        QCOMPARE(finished.size(), 0);
        other.unlock();
        QVERIFY(finished.wait());
    }

    void aProgramThatHasEndedHasNoTurn()
    {
        LeashedProcess gone;
        gone.start(QStringLiteral("true"), QStringList());
        QVERIFY(gone.waitForStarted());
        const QByteArray pid = QByteArray::number(gone.processId());
        QVERIFY(gone.waitForFinished());
        QFile lock(ProcessTurn::lockPath());
        QVERIFY(lock.open(QIODevice::WriteOnly));
        lock.write(pid + "\ntrue\n" + QSysInfo::machineHostName().toUtf8() + '\n');
        lock.close();
        AccessService service(nullptr);
        QVERIFY(run(service, "/etc/x"));
        QVERIFY(!lock.exists());
    }

    void whereThereIsNoPlaceForALockNobodyWaits_data()
    {
        QTest::addColumn<QString>("directory");
        QTest::newRow("none") << QString();
        QTest::newRow("absent") << QStringLiteral("/nowhere");
        QTest::newRow("not for us") << QStringLiteral("/proc");
    }

    void whereThereIsNoPlaceForALockNobodyWaits()
    {
        QFETCH(QString, directory);
        const QByteArray usual = qgetenv("XDG_RUNTIME_DIR");
        qputenv("XDG_RUNTIME_DIR", directory.toUtf8());
        AccessService service(nullptr);
        const bool succeeded = run(service, "/etc/x");
        qputenv("XDG_RUNTIME_DIR", usual);
        QVERIFY2(succeeded, qPrintable(service.errorString()));
    }

    void anActionThatTheProgramsEndInterruptsIsNotASuccess_data()
    {
        QTest::addColumn<bool>("waits");
        QTest::newRow("while it runs") << false;
        QTest::newRow("while it waits for another") << true;
    }
    void anActionThatTheProgramsEndInterruptsIsNotASuccess()
    {
        QFETCH(bool, waits);
        AccessService service(nullptr);
        AccessService other(nullptr);
        bool ran = false;
        bool succeeded = true;
        QTimer::singleShot(0, this, [&] {
            if (waits) {
                KAuth::Action ahead = writeAction(QStringLiteral("/etc/ahead"));
                other.executeAsync(ahead);
            }
            QTimer::singleShot(0, QCoreApplication::instance(), &QCoreApplication::quit);
            succeeded = run(service, "/etc/x");
            ran = true;
        });
        QCoreApplication::exec();
        QVERIFY(ran);
        QVERIFY(!succeeded);
        QVERIFY2(service.errorString().contains(QLatin1String("org.nivra.kcm.adminevents.writeconfig")),
                 qPrintable(service.errorString()));
        QVERIFY(calls() > 0);
    }

    void oneActionAfterTheOtherGetsItsOwnReply()
    {
        ConfigAccessService service(nullptr);
        for (int i = 0; i < 50; ++i) {
            const QString path = QStringLiteral("/etc/file%1").arg(i);
            QVERIFY2(service.writeConfig(path, QByteArray("{}")), qPrintable(service.errorString()));
            QCOMPARE(asked(service).value(QStringLiteral("path")).toString(), path);
            QCOMPARE(service.getActionResult(QStringLiteral("calls")).toInt(), i + 1);
        }
    }

    void whatWasAskedForIsDoneThoughTheServiceHasGone()
    {
        auto service = std::make_unique<AccessService>(nullptr);
        for (int i = 0; i < 3; ++i) {
            KAuth::Action action = writeAction(QStringLiteral("/etc/x"));
            service->executeAsync(action);
        }
        service.reset();
        int probes = 0;
        QTRY_VERIFY(calls() == ++probes + 3);
    }

    void aServiceDestroyedWhileItWaitsReportsAFailure()
    {
        auto *const service = new AccessService(nullptr);
        QTimer::singleShot(0, this, [service] { delete service; });
        QVERIFY(!run(*service, "/etc/x"));
    }

    void writingHandsOverThePathAndTheBytes_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("text") << QByteArray("{}\n");
        QTest::newRow("null") << QByteArray();
        QTest::newRow("bytes") << QByteArray("\0\xff\r\n", 4);
        QTest::newRow("long") << QByteArray(2000000, 'x');
    }
    void writingHandsOverThePathAndTheBytes()
    {
        QFETCH(QByteArray, content);
        ConfigAccessService service(nullptr);
        QVERIFY2(service.writeConfig(QStringLiteral("/etc/файл"), content),
                 qPrintable(service.errorString()));
        const QVariantMap expected{{QStringLiteral("action"), QStringLiteral("writeConfig")},
                                   {QStringLiteral("path"), QString::fromUtf8("/etc/файл")},
                                   {QStringLiteral("content"), content}};
        QCOMPARE(asked(service), expected);
        QCOMPARE(asked(service).value(QStringLiteral("content")).userType(), int(QMetaType::QByteArray));
    }

    void everyLineIsFollowedByALineFeed_data()
    {
        QTest::addColumn<QStringList>("lines");
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("none") << QStringList() << QByteArray();
        QTest::newRow("two") << QStringList({QStringLiteral("a"), QStringLiteral("b")})
                             << QByteArray("a\nb\n");
        QTest::newRow("empty line") << QStringList({QString()}) << QByteArray("\n");
        const QString cyrillic = QString::fromUtf8("событие");
        QTest::newRow("locale") << QStringList({cyrillic})
                                << QByteArray(QTextCodec::codecForLocale()->fromUnicode(cyrillic) + '\n');
    }
    void everyLineIsFollowedByALineFeed()
    {
        QFETCH(QStringList, lines);
        QFETCH(QByteArray, content);
        ConfigAccessService service(nullptr);
        QVERIFY2(service.writeConfig(QStringLiteral("/etc/x"), lines), qPrintable(service.errorString()));
        const QVariant sent = asked(service).value(QStringLiteral("content"));
        QCOMPARE(sent.userType(), int(QMetaType::QByteArray));
        QCOMPARE(sent.toByteArray(), content);
    }

    void exportingHandsOverTheArchiveOfTheUser()
    {
        QTemporaryDir directory;
        const QString path = directory.filePath(QStringLiteral("my archive.tar.gz"));
        ConfigAccessService service(nullptr);
        QVERIFY2(service.exportConfig(path), qPrintable(service.errorString()));
        QCOMPARE(service.getActionResult(QStringLiteral("verb")).toString(), QStringLiteral("exportconfig"));
        QCOMPARE(asked(service), (QVariantMap{{QStringLiteral("output"), path}}));
        QVERIFY(QFile::exists(path));
    }

    void importingHandsOverTheArchiveOfTheUser()
    {
        QTemporaryDir directory;
        const QString path = directory.filePath(QStringLiteral("archive.tar.gz"));
        QFile archive(path);
        QVERIFY(archive.open(QIODevice::WriteOnly));
        ConfigAccessService service(nullptr);
        QVERIFY2(service.importConfig(path), qPrintable(service.errorString()));
        QCOMPARE(service.getActionResult(QStringLiteral("verb")).toString(), QStringLiteral("importconfig"));
        QCOMPARE(asked(service), (QVariantMap{{QStringLiteral("input"), path}}));
    }

    void anArchiveThatTheUserCannotOpenRunsNoAction_data()
    {
        QTest::addColumn<bool>("isExport");
        QTest::addColumn<QString>("name");
        QTest::newRow("export below a missing directory") << true << QStringLiteral("missing/archive");
        QTest::newRow("export over a directory") << true << QStringLiteral(".");
        QTest::newRow("import of a missing file") << false << QStringLiteral("missing");
        QTest::newRow("import of a directory") << false << QStringLiteral(".");
    }
    void anArchiveThatTheUserCannotOpenRunsNoAction()
    {
        QFETCH(bool, isExport);
        QFETCH(QString, name);
        QTemporaryDir directory;
        const QString path = directory.filePath(name);
        ConfigAccessService service(nullptr);
        QVERIFY(run(service, "/etc/x"));
        const auto reply = service.getActionResults();
        const int before = calls();
        QVERIFY(!(isExport ? service.exportConfig(path) : service.importConfig(path)));
        QCOMPARE(calls(), before + 1);
        QFile reference(path);
        QVERIFY(!reference.open(isExport ? QIODevice::WriteOnly : QIODevice::ReadOnly));
        QCOMPARE(service.errorString(), reference.errorString());
        QVERIFY(!service.errorString().isEmpty());
        QCOMPARE(service.getActionResults(), reply);
    }
};

QTEST_GUILESS_MAIN(AccessServiceTest)

#include "accessservicetest.moc"
