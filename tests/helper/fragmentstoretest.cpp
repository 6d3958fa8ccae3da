// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "fragmentstore.h"
#include "fulldisk.h"
#include "samplefragment.h"
#include "treesnapshot.h"

#include <QTemporaryDir>
#include <QTest>

using namespace AdminEventsHelper;

/** Writing and removing notification fragments below a root directory. */
class FragmentStoreTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void writesAllFragmentsOfARequest();
    void keepsWhatItReplacesAndRemoves();
    void removingWhatIsNotThereSucceeds();
    void onePlaceTakenByALinkLeavesAllAsItWas_data();
    void onePlaceTakenByALinkLeavesAllAsItWas();
    void aFailureInTheMiddlePutsEverythingBack();

private:
    QString folder() const { return m_root->filePath(QStringLiteral("etc/syslog-ng/conf.d/")); }
    QByteArray content(const char *name) const { return getFile(folder() + QLatin1String(name)); }
    QStringList names() const
    {
        return QDir(folder()).entryList(QDir::AllEntries | QDir::Hidden | QDir::System
                                        | QDir::NoDotAndDotDot);
    }
    QStringList backups() const
    {
        return QDir(m_root->filePath(QStringLiteral("var/lib/adminevents/backup"))).entryList(QDir::Files);
    }
    FragmentStore store() const { return FragmentStore(m_root->path()); }

    std::unique_ptr<QTemporaryDir> m_root;
};

void FragmentStoreTest::init()
{
    m_root = std::make_unique<QTemporaryDir>();
    QVERIFY(QDir().mkpath(folder()));
}

void FragmentStoreTest::writesAllFragmentsOfARequest()
{
    FragmentWriteRequest request;
    request.fragments
        = {{QStringLiteral("mod-nivra-x.conf"), "x"}, {QStringLiteral("mod-nivra-y.conf"), "y"}};
    const Outcome outcome = store().write(request);
    QVERIFY2(outcome.ok(), qPrintable(outcome.error()));
    QCOMPARE(names(), (QStringList{QStringLiteral("mod-nivra-x.conf"), QStringLiteral("mod-nivra-y.conf")}));
    QCOMPARE(content("mod-nivra-x.conf"), QByteArray("x"));
    QCOMPARE(content("mod-nivra-y.conf"), QByteArray("y"));
    QCOMPARE(modeOf(folder() + QStringLiteral("mod-nivra-x.conf")), 0644);
}

void FragmentStoreTest::keepsWhatItReplacesAndRemoves()
{
    QVERIFY(putFile(folder() + QStringLiteral("mod-nivra-x.conf"), "first"));
    FragmentWriteRequest request;
    request.fragments = {{QStringLiteral("mod-nivra-x.conf"), "second"}};
    QVERIFY(store().write(request).ok());
    FragmentRemoveRequest removal;
    removal.fileNames = QStringList{QStringLiteral("mod-nivra-x.conf")};
    const Outcome outcome = store().remove(removal);
    QVERIFY2(outcome.ok(), qPrintable(outcome.error()));
    QCOMPARE(names(), QStringList());
    const QString kept = m_root->filePath(QStringLiteral("var/lib/adminevents/backup/mod-nivra-x.conf."));
    QCOMPARE(getFile(kept + QStringLiteral("0000000001")), QByteArray("first"));
    QCOMPARE(getFile(kept + QStringLiteral("0000000002")), QByteArray("second"));
    QCOMPARE(backups().size(), 2);
}

void FragmentStoreTest::removingWhatIsNotThereSucceeds()
{
    FragmentRemoveRequest removal;
    removal.fileNames = QStringList{QStringLiteral("mod-nivra-x.conf")};
    const Outcome outcome = store().remove(removal);
    QVERIFY2(outcome.ok(), qPrintable(outcome.error()));
    QCOMPARE(backups(), QStringList());
}

void FragmentStoreTest::onePlaceTakenByALinkLeavesAllAsItWas_data()
{
    QTest::addColumn<bool>("removing");
    QTest::newRow("writing") << false;
    QTest::newRow("removing") << true;
}

void FragmentStoreTest::onePlaceTakenByALinkLeavesAllAsItWas()
{
    QFETCH(bool, removing);
    QVERIFY(putFile(folder() + QStringLiteral("mod-nivra-a.conf"), "a"));
    QVERIFY(putFile(m_root->filePath(QStringLiteral("etc/victim")), "precious"));
    const QString link = folder() + QStringLiteral("mod-nivra-b.conf");
    QVERIFY(QFile::link(m_root->filePath(QStringLiteral("etc/victim")), link));
    const TreeSnapshot before = takeSnapshot(m_root->path());
    Outcome outcome = Outcome::success();
    if (removing) {
        FragmentRemoveRequest request;
        request.fileNames
            = QStringList{QStringLiteral("mod-nivra-a.conf"), QStringLiteral("mod-nivra-b.conf")};
        outcome = store().remove(request);
    } else {
        FragmentWriteRequest request;
        request.fragments
            = {{QStringLiteral("mod-nivra-a.conf"), "new"}, {QStringLiteral("mod-nivra-b.conf"), "new"}};
        outcome = store().write(request);
    }
    QVERIFY(!outcome.ok());
    QVERIFY2(outcome.error().contains(QLatin1String("mod-nivra-b.conf")), qPrintable(outcome.error()));
    QCOMPARE(takeSnapshot(m_root->path()), before);
}

void FragmentStoreTest::aFailureInTheMiddlePutsEverythingBack()
{
    QVERIFY(putFile(folder() + QStringLiteral("mod-nivra-a.conf"), "a"));
    QVERIFY(putFile(folder() + QStringLiteral("mod-nivra-c.conf"), "c"));
    FragmentWriteRequest request;
    request.fragments = {{QStringLiteral("mod-nivra-a.conf"), "new a"},
                         {QStringLiteral("mod-nivra-b.conf"), "new b"},
                         {QStringLiteral("mod-nivra-c.conf"), QByteArray(100000, 'c')}};
    // The last one does not fit.
    const Outcome outcome = asOnAFullDisk([&] { return store().write(request); });
    QVERIFY(!outcome.ok());
    QVERIFY2(outcome.error().contains(QLatin1String("mod-nivra-c.conf")), qPrintable(outcome.error()));
    QCOMPARE(names(), (QStringList{QStringLiteral("mod-nivra-a.conf"), QStringLiteral("mod-nivra-c.conf")}));
    QCOMPARE(content("mod-nivra-a.conf"), QByteArray("a"));
    QCOMPARE(content("mod-nivra-c.conf"), QByteArray("c"));
}

QTEST_GUILESS_MAIN(FragmentStoreTest)

#include "fragmentstoretest.moc"
