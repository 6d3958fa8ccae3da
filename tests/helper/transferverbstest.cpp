// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "archiveforge.h"
#include "helperrequest.h"
#include "privatebus.h"
#include "transfersample.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDataStream>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

namespace {

QString exportVerb()
{
    return QStringLiteral("exportconfig");
}
QString importVerb()
{
    return QStringLiteral("importconfig");
}
QVariantMap output(const QVariant &path)
{
    return {{QStringLiteral("output"), path}};
}
QVariantMap input(const QVariant &path)
{
    return {{QStringLiteral("input"), path}};
}

} // namespace

/** The two requests about archives, from the caller through the framework to the files. */
class TransferVerbsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase() { m_bus.reset(); }
    void init();

    void exportsAndImports();
    void tellsOfAMainConfigurationThatWasLeftOut();
    void replacesALongerArchive();
    void eachVerbIsGrantedByItself();
    void aRefusedAuthorityLeavesEverythingAsItWas_data();
    void aRefusedAuthorityLeavesEverythingAsItWas();
    void refusesFilesThatAreNotTheRequesters_data();
    void refusesFilesThatAreNotTheRequesters();
    void refusesADamagedArchive();
    void takesARequesterThatHasLeftForNobody();

private:
    QString below(const QString &path) const { return m_bus->root() + path; }
    QString archive() const { return m_folder->path() + QStringLiteral("/архив.tar.gz"); }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<PrivateBus> m_bus;
};

void TransferVerbsTest::initTestCase()
{
    // The bus of an installed system gives the helper no locale.
    m_bus = std::make_unique<PrivateBus>(
        QString(), QStringList(), QMap<QString, QString>{{QStringLiteral("LC_ALL"), QStringLiteral("C")}});
    QVERIFY2(m_bus->start(), qPrintable(m_bus->errorString()));
}

void TransferVerbsTest::init()
{
    QVERIFY2(m_bus->setAllowed(true), qPrintable(m_bus->errorString()));
    QVERIFY2(m_bus->setAllowedActions({}), qPrintable(m_bus->errorString()));
    QVERIFY(TransferSample::fill(m_bus->root()));
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
    QVERIFY(putFile(archive(), ""));
}

void TransferVerbsTest::exportsAndImports()
{
    const HelperAnswer exported = requestHelper(exportVerb(), output(archive()));
    QVERIFY2(exported.ok, qPrintable(exported.text));
    QVERIFY(getFile(archive()).startsWith("\x1f\x8b"));
    QCOMPARE(modeOf(archive()), 0644);
    QVERIFY(putFile(below(QStringLiteral("/etc/nivra-syslog.conf")), "{}"));
    QVERIFY(QFile::remove(below(QStringLiteral("/etc/logrotate.d/syslog-ng-mod-nivra"))));
    const HelperAnswer imported = requestHelper(importVerb(), input(archive()));
    QVERIFY2(imported.ok, qPrintable(imported.text));
    QCOMPARE(imported.data, (QVariantMap{{QStringLiteral("mainConfigImportFault"), false}}));
    QCOMPARE(TransferSample::contents(m_bus->root()), TransferSample::files());
}

void TransferVerbsTest::tellsOfAMainConfigurationThatWasLeftOut()
{
    QVERIFY(putFile(archive(),
                    soundArchive({{"etc/nivra-syslog.conf", "{ }"},
                                  {"etc/syslog-ng/conf.d/mod-nivra.conf", "@version: 4.2\n"}})));
    const HelperAnswer imported = requestHelper(importVerb(), input(archive()));
    QVERIFY2(imported.ok, qPrintable(imported.text));
    QCOMPARE(imported.data, (QVariantMap{{QStringLiteral("mainConfigImportFault"), true}}));
    QCOMPARE(getFile(below(QStringLiteral("/etc/nivra-syslog.conf"))), QByteArray("{ }"));
    const QString main = QStringLiteral("/etc/syslog-ng/conf.d/mod-nivra.conf");
    QCOMPARE(getFile(below(main)), TransferSample::files().value(main));
}

void TransferVerbsTest::replacesALongerArchive()
{
    QVERIFY(requestHelper(exportVerb(), output(archive())).ok);
    const qint64 size = QFileInfo(archive()).size();
    QVERIFY(putFile(archive(), QByteArray(500000, 'x'), 0600));
    QVERIFY(requestHelper(exportVerb(), output(archive())).ok);
    QVERIFY(qAbs(QFileInfo(archive()).size() - size) < 50);
    QCOMPARE(modeOf(archive()), 0600);
}

void TransferVerbsTest::eachVerbIsGrantedByItself()
{
    const QString prefix = QStringLiteral("org.nivra.kcm.adminevents.");
    QVERIFY(m_bus->setAllowed(false));
    QVERIFY(m_bus->setAllowedActions({prefix + exportVerb()}));
    QVERIFY(requestHelper(exportVerb(), output(archive())).ok);
    QVERIFY(!requestHelper(importVerb(), input(archive())).ok);
    QVERIFY(m_bus->setAllowedActions({prefix + importVerb()}));
    QVERIFY(!requestHelper(exportVerb(), output(archive())).ok);
    QVERIFY(requestHelper(importVerb(), input(archive())).ok);
}

void TransferVerbsTest::aRefusedAuthorityLeavesEverythingAsItWas_data()
{
    QTest::addColumn<QString>("verb");
    QTest::addColumn<QString>("key");
    QTest::newRow("export") << exportVerb() << QStringLiteral("output");
    QTest::newRow("import") << importVerb() << QStringLiteral("input");
}

void TransferVerbsTest::aRefusedAuthorityLeavesEverythingAsItWas()
{
    QFETCH(QString, verb);
    QFETCH(QString, key);
    QVERIFY(putFile(archive(), soundArchive({{"etc/nivra-syslog.conf", "{\"refused\": {}}"}})));
    QVERIFY(m_bus->setAllowed(false));
    const TreeSnapshot before = takeSnapshot(m_bus->root());
    const QByteArray file = describeFile(archive());
    const HelperAnswer answer = requestHelper(verb, {{key, archive()}});
    QCOMPARE(answer.error, int(KAuth::ActionReply::AuthorizationDeniedError));
    QCOMPARE(takeSnapshot(m_bus->root()), before);
    QCOMPARE(describeFile(archive()), file);
}

void TransferVerbsTest::refusesFilesThatAreNotTheRequesters_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("named");
    QTest::newRow("symbolic link") << QStringLiteral("link") << QStringLiteral("a symbolic link");
    QTest::newRow("pipe") << QStringLiteral("pipe") << QStringLiteral("a named pipe");
    QTest::newRow("directory") << QStringLiteral("directory") << QStringLiteral("a directory");
    QTest::newRow("absent") << QStringLiteral("absent") << QStringLiteral("No such file");
    QTest::newRow("behind a link") << QStringLiteral("parent") << QStringLiteral("a symbolic link");
    QTest::newRow("of another user") << QStringLiteral("foreign") << QStringLiteral("does not belong");
    QTest::newRow("hard link") << QStringLiteral("names") << QStringLiteral("another name");
}

void TransferVerbsTest::refusesFilesThatAreNotTheRequesters()
{
    QFETCH(QString, kind);
    QFETCH(QString, named);
    const QByteArray path = QFile::encodeName(archive());
    const QString aside = m_folder->path() + QLatin1String("/aside");
    QString asked = archive();
    if (kind == QLatin1String("foreign")) {
        if (::chown(path.constData(), 65534, 65534) != 0) {
            QSKIP("only root may give a file away");
        }
    } else if (kind == QLatin1String("names")) {
        QCOMPARE(::link(path.constData(), QFile::encodeName(aside).constData()), 0);
    } else if (kind == QLatin1String("parent")) {
        QVERIFY(QFile::link(m_folder->path(), aside));
        asked = aside + QStringLiteral("/архив.tar.gz");
    } else {
        QVERIFY(QFile::remove(archive()));
        if (kind == QLatin1String("link")) {
            QVERIFY(putFile(aside, "precious"));
            QVERIFY(QFile::link(aside, archive()));
        } else if (kind == QLatin1String("pipe")) {
            QCOMPARE(::mkfifo(path.constData(), 0600), 0);
        } else if (kind == QLatin1String("directory")) {
            QVERIFY(QDir().mkdir(archive()));
        }
    }
    const TreeSnapshot before = takeSnapshot(m_folder->path());
    const TreeSnapshot root = takeSnapshot(m_bus->root());
    const HelperAnswer exported = requestHelper(exportVerb(), output(asked));
    QVERIFY(!exported.ok);
    QVERIFY2(exported.text.contains(m_folder->path()) && exported.text.contains(named),
             qPrintable(exported.text));
    // Reading another name of a file, or what everybody may read, takes nothing from anybody.
    const bool mayBeRead = kind == QLatin1String("foreign") || kind == QLatin1String("names");
    const HelperAnswer imported = requestHelper(importVerb(), input(asked));
    QVERIFY(!imported.ok);
    QVERIFY2(imported.text.contains(mayBeRead ? QStringLiteral("archive is empty") : named),
             qPrintable(imported.text));
    QCOMPARE(takeSnapshot(m_folder->path()), before);
    QCOMPARE(takeSnapshot(m_bus->root()), root);
}

void TransferVerbsTest::refusesADamagedArchive()
{
    QVERIFY(requestHelper(exportVerb(), output(archive())).ok);
    QVERIFY(putFile(archive(), getFile(archive()).chopped(100)));
    QVERIFY(putFile(below(QStringLiteral("/etc/nivra-syslog.conf")), "{}"));
    const TreeSnapshot before = takeSnapshot(m_bus->root());
    const HelperAnswer imported = requestHelper(importVerb(), input(archive()));
    QVERIFY(!imported.ok);
    QVERIFY2(imported.text.contains(QLatin1String("damaged")), qPrintable(imported.text));
    QVERIFY(!imported.data.contains(QStringLiteral("mainConfigImportFault")));
    QCOMPARE(takeSnapshot(m_bus->root()), before);
}

void TransferVerbsTest::takesARequesterThatHasLeftForNobody()
{
    QVERIFY(requestHelper(importVerb(), input(archive())).text.contains(QLatin1String("archive is empty")));
    // Stopped, the helper reads the request only after the requester has gone.
    const auto helper = pid_t(m_bus->helperPid());
    QVERIFY(helper > 0);
    QCOMPARE(::kill(helper, SIGSTOP), 0);
    const QString name = QStringLiteral("hurried");
    QString requester;
    {
        QDBusConnection bus = QDBusConnection::connectToBus(m_bus->address(), name);
        requester = bus.baseService();
        QByteArray arguments;
        QDataStream stream(&arguments, QIODevice::WriteOnly);
        stream << output(archive());
        QDBusMessage call = QDBusMessage::createMethodCall(
            QStringLiteral("org.nivra.kcm.adminevents"), QStringLiteral("/"),
            QStringLiteral("org.kde.kf5auth"), QStringLiteral("performAction"));
        call << QStringLiteral("org.nivra.kcm.adminevents.exportconfig") << bus.baseService().toUtf8()
             << QVariantMap() << arguments;
        const QDBusPendingCall pending = bus.asyncCall(call);
        // The bus has passed the request on when it answers the next one.
        QVERIFY(bus.interface()->isServiceRegistered(QStringLiteral("org.nivra.kcm.adminevents")));
    }
    QDBusConnection::disconnectFromBus(name);
    QTRY_VERIFY(!QDBusConnection::systemBus().interface()->isServiceRegistered(requester).value());
    QCOMPARE(::kill(helper, SIGCONT), 0);
    // It ends by itself once it has nothing to do any more.
    QTRY_COMPARE_WITH_TIMEOUT(m_bus->helperPid(), qint64(0), 20000);
    QCOMPARE(getFile(archive()), QByteArray(""));
}

QTEST_GUILESS_MAIN(TransferVerbsTest)

#include "transferverbstest.moc"
