// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "catalogmaker.h"
#include "treemeaning.h"

#include <changemarker.h>
#include <checkabletreemodel.h>
#include <configaccessservice.h>
#include <eventconfigstorage.h>
#include <eventswriter.h>
#include <eventtreeitem.h>
#include <singleeventsparser.h>
#include <systempaths.h>

#include <QAbstractItemModelTester>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QTemporaryDir>
#include <QTest>

namespace {
void collectNodes(EventTreeItem *item, QVector<EventTreeItem *> &nodes)
{
    for (int row = 0; row < item->childCount(); ++row) {
        nodes.append(item->eventChild(row));
        collectNodes(item->eventChild(row), nodes);
    }
}

/// The file holds what the toolkit's own parser and writer make of the fragments.
void checkForm(const QByteArray &content, const QStringList &fragments)
{
    QCOMPARE(content, QJsonDocument::fromJson(fragments.join(QLatin1Char('\n')).toUtf8()).toJson());
}
} // namespace

void addSeeds(quint32 count)
{
    QTest::addColumn<quint32>("seed");
    for (quint32 seed = 1; seed <= count; ++seed) {
        QTest::addRow("seed %u", seed) << seed;
    }
}

/// One administrator's machine: a root directory, and a page's two models over it.
class Machine
{
public:
    /// @param shippedData the directory of the shipped data; by default a random catalog is made
    explicit Machine(quint32 seed, const QString &shippedData = {})
        : maker(seed)
        , storage(QString())
        , reference(storage)
        , working(storage)
    {
        qputenv("ADMINEVENTS_ROOT", directory.path().toLocal8Bit());
        QDir(directory.path()).mkpath(QStringLiteral("etc"));
        if (shippedData.isEmpty()) {
            maker.writeCatalog(directory.path());
            maker.writeDictionary(directory.path());
        } else {
            link(shippedData + QStringLiteral("/event-settings"), SystemPaths::eventSettingsDirectory());
            link(shippedData + QStringLiteral("/zep-admin-events/eventsdictionary.json"),
                 SystemPaths::nodeDictionary());
        }
    }

    void link(const QString &source, const QString &logicalPath) const
    {
        const QString place = SystemPaths::resolve(logicalPath);
        QDir().mkpath(QFileInfo(place).path());
        QVERIFY(QFile::link(source, place));
    }

    [[nodiscard]] QString settingsPath() const
    {
        return SystemPaths::resolve(SystemPaths::eventSettingsFile());
    }

    void writeSettings(const QByteArray &content)
    {
        QFile file(settingsPath());
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(content), qint64(content.size()));
    }

    void load()
    {
        const SingleEventsParser parser(maker.users(), maker.groups(), nullptr);
        QVERIFY(parser.isConfigCorrect());
        working.setRootItem(parser.parse());
        reference.setRootItem(parser.parse());
    }

    QByteArray save()
    {
        ChangeMarker::markAll(*reference.rootItem(), *working.rootItem());
        EventsWriter writer(service, SystemPaths::eventSettingsFile(), SystemPaths::auditRulesFile());
        const QByteArray content = writer.settingsContent(working.rootItem());
        checkForm(content, writer.createConfig(working.rootItem()));
        writeSettings(content);
        return content;
    }

    /// One thing that a user can do to one node.
    void actOn(EventTreeItem *node)
    {
        if (!node->visible) {
            return; // the page does not show it
        }
        const QModelIndex name = working.indexOf(node, 0);
        const QModelIndex value = working.indexOf(node, 1);
        switch (maker.below(4)) {
        case 0:
            if (node->checkable) {
                working.setData(name, QVariant(), Qt::CheckStateRole);
            } else if (value.data(Qt::CheckStateRole).isValid()) {
                working.setData(value, QVariant(), Qt::CheckStateRole);
            }
            break;
        case 1:
            working.switchParameter(value);
            break;
        case 2:
            if (value.flags() & Qt::ItemIsEditable) {
                const bool isSwitchValue = node->nativeName == QLatin1String("enabled");
                working.setData(value, isSwitchValue ? QString::number(maker.below(2)) : maker.hostileText(),
                                Qt::EditRole);
            }
            break;
        default:
            if (node->kind == EventTreeItem::Event) {
                working.setData(name, QVariant::fromValue(EventTreeItem::NotificationSwitchedOn),
                                Qt::DecorationRole);
            }
        }
    }

    void editAtRandom(int edits)
    {
        QVector<EventTreeItem *> nodes;
        collectNodes(working.rootItem(), nodes);
        for (int i = 0; i < edits && !nodes.isEmpty(); ++i) {
            actOn(nodes.at(maker.below(nodes.size())));
        }
    }

    QTemporaryDir directory;
    CatalogMaker maker;
    EventConfigStorage storage;
    ConfigAccessService service{nullptr};
    CheckableTreeModel reference;
    CheckableTreeModel working;
};

class RoundTripTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void settingsSurviveLoadEditSaveLoad_data();
    void settingsSurviveLoadEditSaveLoad();
    void theShippedCatalogSurvivesEdits_data() { addSeeds(20); }
    void theShippedCatalogSurvivesEdits();
    void checkingAndUncheckingChangesNothingElse_data() { addSeeds(100); }
    void checkingAndUncheckingChangesNothingElse();
    void savedTextAlwaysParses_data() { addSeeds(100); }
    void savedTextAlwaysParses();
};

void RoundTripTest::settingsSurviveLoadEditSaveLoad_data()
{
    addSeeds(300);
}

void RoundTripTest::settingsSurviveLoadEditSaveLoad()
{
    QFETCH(quint32, seed);
    Machine machine(seed);
    machine.writeSettings(QJsonDocument(machine.maker.makeSettings()).toJson());
    machine.load();
    const QAbstractItemModelTester tester(&machine.working,
                                          QAbstractItemModelTester::FailureReportingMode::QtTest);
    QVERIFY2(ChangeMarker::compareTrees(*machine.reference.rootItem(), *machine.working.rootItem()),
             "a tree just loaded counts as changed");
    machine.editAtRandom(machine.maker.below(12));

    const QStringList edited = TreeMeaning::of(*machine.working.rootItem());
    const QByteArray first = machine.save();
    machine.load();
    const QStringList loaded = TreeMeaning::of(*machine.working.rootItem());
    QVERIFY2(edited == loaded,
             qPrintable(TreeMeaning::firstDifference(edited, loaded) + QLatin1Char('\n')
                        + QString::fromUtf8(first)));

    for (int again = 0; again < 3; ++again) {
        const QByteArray next = machine.save();
        QVERIFY2(next == first,
                 qPrintable(TreeMeaning::firstDifference(QString::fromUtf8(first).split(QLatin1Char('\n')),
                                                         QString::fromUtf8(next).split(QLatin1Char('\n')))));
        machine.load();
        QVERIFY(TreeMeaning::of(*machine.working.rootItem()) == loaded);
    }
}

void RoundTripTest::theShippedCatalogSurvivesEdits()
{
    QFETCH(quint32, seed);
    Machine machine(seed, QStringLiteral(ADMINEVENTS_DATA_PATH));
    machine.load();
    machine.editAtRandom(60);
    const QStringList edited = TreeMeaning::of(*machine.working.rootItem());
    QVERIFY(edited.size() > 1000);
    const QByteArray first = machine.save();
    machine.load();
    const QStringList loaded = TreeMeaning::of(*machine.working.rootItem());
    QVERIFY2(edited == loaded, qPrintable(TreeMeaning::firstDifference(edited, loaded)));
    QCOMPARE(machine.save(), first);
}

void RoundTripTest::checkingAndUncheckingChangesNothingElse()
{
    QFETCH(quint32, seed);
    Machine machine(seed);
    machine.writeSettings(QJsonDocument(machine.maker.makeSettings()).toJson());
    machine.load();
    const QStringList before = TreeMeaning::of(*machine.working.rootItem());
    QVector<EventTreeItem *> nodes;
    collectNodes(machine.working.rootItem(), nodes);
    for (const EventTreeItem *node : qAsConst(nodes)) {
        const int column = node->checkable && node->kind == EventTreeItem::Event ? 0 : 1;
        const QModelIndex index = machine.working.indexOf(node, column);
        const bool linked = !node->dependencies().isEmpty() || !node->dependents().isEmpty();
        if (!index.data(Qt::CheckStateRole).isValid() || linked || node->kind == EventTreeItem::Group) {
            continue;
        }
        machine.working.setData(index, QVariant(), Qt::CheckStateRole);
        machine.working.setData(index, QVariant(), Qt::CheckStateRole);
        const QStringList after = TreeMeaning::of(*machine.working.rootItem());
        QVERIFY2(
            before == after,
            qPrintable(node->nativeName + QLatin1String(": ") + TreeMeaning::firstDifference(before, after)));
    }
    QVERIFY(ChangeMarker::compareTrees(*machine.reference.rootItem(), *machine.working.rootItem()));
}

void RoundTripTest::savedTextAlwaysParses()
{
    QFETCH(quint32, seed);
    Machine machine(seed);
    machine.writeSettings(QJsonDocument(machine.maker.makeSettings()).toJson());
    machine.load();
    // Everything flagged is the largest text that the writer can be asked for.
    QVector<EventTreeItem *> nodes;
    collectNodes(machine.working.rootItem(), nodes);
    for (EventTreeItem *node : qAsConst(nodes)) {
        node->overlay = !TreeMeaning::isRecord(*node);
    }
    EventsWriter writer(machine.service, SystemPaths::eventSettingsFile(), SystemPaths::auditRulesFile());
    const QStringList fragments = writer.createConfig(machine.working.rootItem());
    QJsonParseError error{};
    const QJsonDocument document
        = QJsonDocument::fromJson(fragments.join(QLatin1Char('\n')).toUtf8(), &error);
    QVERIFY2(error.error == QJsonParseError::NoError, qPrintable(error.errorString()));
    QVERIFY(document.isObject());
    QCOMPARE(document.object().size(), fragments.size() - 2);
    checkForm(writer.settingsContent(machine.working.rootItem()), fragments);
}

QTEST_MAIN(RoundTripTest)

#include "roundtriptest.moc"
