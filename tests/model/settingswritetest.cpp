// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "privatebus.h"
#include "treemaker.h"

#include <configaccessservice.h>
#include <eventswriter.h>
#include <systempaths.h>

#include <QDir>
#include <QFile>
#include <QTest>

namespace {
/// The base class alone, with the names of the groups as lines.
class LineWriter : public AbstractWriter
{
public:
    using AbstractWriter::AbstractWriter;

    QStringList createConfig(TreeItem *root) override
    {
        QStringList lines;
        for (int row = 0; row < root->childCount(); ++row) {
            lines.append(root->child(row)->value(0).toString());
        }
        return lines;
    }
};
} // namespace

/// Saving through the real helper into a root directory of the test's own.
class SettingsWriteTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void baseWriterWritesItsLines();
    void bothFilesAreWritten();
    void rulesOfEventsSwitchedOffDisappear();
    void refusalLeavesBothFilesAndATextForEach();
    void rulesAreWrittenWhenTheSettingsCannotBe();

private:
    [[nodiscard]] QByteArray contentOf(const QString &logicalPath) const
    {
        QFile file(m_bus.root() + logicalPath);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("not there");
    }
    [[nodiscard]] EventsWriter makeWriter()
    {
        return {m_service, SystemPaths::eventSettingsFile(), SystemPaths::auditRulesFile()};
    }

    PrivateBus m_bus;
    ConfigAccessService m_service{nullptr};
    std::unique_ptr<EventTreeItem> m_root;
    EventTreeItem *m_event = nullptr;
};

void SettingsWriteTest::initTestCase()
{
    QVERIFY2(m_bus.start(), qPrintable(m_bus.errorString()));
}

void SettingsWriteTest::init()
{
    QVERIFY2(m_bus.setAllowed(true), qPrintable(m_bus.errorString()));
    QDir(m_bus.root() + SystemPaths::eventSettingsFile()).removeRecursively();
    QFile::remove(m_bus.root() + SystemPaths::eventSettingsFile());
    QFile::remove(m_bus.root() + SystemPaths::auditRulesFile());
    m_root = TreeMaker::root();
    m_event = TreeMaker::event(TreeMaker::group(m_root.get(), "g"), "e", "1");
    TreeMaker::parameter(m_event, "message-audit-rules", "-w /etc/x -p wa -k /etc/x");
    m_event->switchChild()->overlay = true;
}

void SettingsWriteTest::baseWriterWritesItsLines()
{
    TreeMaker::group(m_root.get(), "h");
    LineWriter writer(m_service, SystemPaths::auditRulesFile());
    QCOMPARE(writer.getConfig(m_root.get()), (QStringList{QStringLiteral("g"), QStringLiteral("h")}));
    QCOMPARE(contentOf(SystemPaths::auditRulesFile()), QByteArray("not there"));
    m_root->child(0)->setData(0, QStringLiteral("# g"));
    m_root->child(1)->setData(0, QStringLiteral("# h"));
    QVERIFY2(writer.writeConfig(m_root.get()), qPrintable(m_service.errorString()));
    QCOMPARE(contentOf(SystemPaths::auditRulesFile()), QByteArray("# g\n# h\n"));
}

void SettingsWriteTest::bothFilesAreWritten()
{
    EventsWriter writer = makeWriter();
    QVERIFY2(writer.writeConfig(m_root.get()), qPrintable(m_service.errorString()));
    QCOMPARE(contentOf(SystemPaths::eventSettingsFile()),
             QByteArray("{\n    \"e\": {\n        \"enabled\": \"1\"\n    }\n}\n"));
    QCOMPARE(contentOf(SystemPaths::auditRulesFile()), QByteArray("-w /etc/x -p wa -k /etc/x\n"));
    QCOMPARE(writer.failures(), QStringList());
    QCOMPARE(writer.errors(), QStringList());
}

void SettingsWriteTest::rulesOfEventsSwitchedOffDisappear()
{
    EventsWriter first = makeWriter();
    QVERIFY(first.writeConfig(m_root.get()));
    m_event->switchChild()->setData(1, QStringLiteral("0"));
    EventsWriter second = makeWriter();
    QVERIFY(second.writeConfig(m_root.get()));
    QCOMPARE(contentOf(SystemPaths::auditRulesFile()), QByteArray());
}

void SettingsWriteTest::refusalLeavesBothFilesAndATextForEach()
{
    QVERIFY(m_bus.setAllowed(false));
    EventsWriter writer = makeWriter();
    QVERIFY(!writer.writeConfig(m_root.get()));
    QCOMPARE(writer.failures().size(), 2);
    QVERIFY(!writer.failures().at(0).isEmpty());
    QVERIFY(!writer.failures().at(1).isEmpty());
    QCOMPARE(contentOf(SystemPaths::eventSettingsFile()), QByteArray("not there"));
    QCOMPARE(contentOf(SystemPaths::auditRulesFile()), QByteArray("not there"));
}

void SettingsWriteTest::rulesAreWrittenWhenTheSettingsCannotBe()
{
    // A directory in its place makes the first of the two writes fail.
    QVERIFY(QDir(m_bus.root()).mkpath(m_bus.root() + SystemPaths::eventSettingsFile()));
    EventsWriter writer = makeWriter();
    QVERIFY(!writer.writeConfig(m_root.get()));
    QCOMPARE(writer.failures().size(), 1);
    QVERIFY(!writer.failures().constFirst().isEmpty());
    QCOMPARE(contentOf(SystemPaths::auditRulesFile()), QByteArray("-w /etc/x -p wa -k /etc/x\n"));
}

QTEST_MAIN(SettingsWriteTest)

#include "settingswritetest.moc"
