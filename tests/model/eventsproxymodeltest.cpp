// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "shownmodel.h"
#include "treemaker.h"

#include <eventsproxymodel.h>
#include <fuzzymatch.h>

#include <QSignalSpy>
#include <QStringListModel>
#include <QTest>

Q_DECLARE_METATYPE(EventsProxyModel::FilterMode)

class EventsProxyModelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void lettersMatchInAnyCaseAndIoAsIe_data();
    void lettersMatchInAnyCaseAndIoAsIe();
    void foldingKeepsTheLengthOfATextAndItsOtherLetters();
    void emptyQueryIsFoundInEveryText();
    void emptyQueryShowsAllButHiddenNodes_data();
    void emptyQueryShowsAllButHiddenNodes();
    void queryShowsTheRowsOfItsMode_data();
    void queryShowsTheRowsOfItsMode();
    void groupNameShowsTheWholeGroup();
    void parametersOfAShownEventIgnoreTheQuery();
    void parametersAreNotSearched();
    void hiddenFlagOfEventsAndGroupsPlaysNoPart();
    void changedModeFiltersAgain();
    void changedQueryFiltersAgain();
    void rowsOfANewTreeAreFiltered();
    void clickThroughTheProxyReachesTheModel();
    void newNameIsFoundAtOnce();
    void groupIsFoundWithoutAnyEvent();
    void rowsKnowWhetherSomethingIsShownBelow();
    void rowsOfAnyOtherModelAreHidden();

private:
    /// Shown groups with their shown events, as "g: a b".
    [[nodiscard]] QStringList shown() const
    {
        QStringList lines;
        for (int row = 0; row < m_proxy->rowCount(); ++row) {
            const QModelIndex group = m_proxy->index(row, 0);
            QStringList events;
            for (int eventRow = 0; eventRow < m_proxy->rowCount(group); ++eventRow) {
                events.append(nativeName(m_proxy->index(eventRow, 0, group)));
            }
            lines.append(nativeName(group) + QLatin1String(": ") + events.join(QLatin1Char(' ')));
        }
        return lines;
    }
    [[nodiscard]] static QString nativeName(const QModelIndex &index)
    {
        return index.data(CheckableTreeModel::NativeNameRole).toString();
    }
    [[nodiscard]] QModelIndex shownIndex(const EventTreeItem *item, int column = 0) const
    {
        return m_proxy->mapFromSource((*m_model)->indexOf(item, column));
    }
    /// What is taken for an identifier here is a name there.
    static std::unique_ptr<EventTreeItem> sampleTree();

    std::unique_ptr<ShownModel> m_model;
    std::unique_ptr<EventsProxyModel> m_proxy;
    std::unique_ptr<QAbstractItemModelTester> m_tester;
};

std::unique_ptr<EventTreeItem> EventsProxyModelTest::sampleTree()
{
    auto root = TreeMaker::root();
    EventTreeItem *files = TreeMaker::group(root.get(), "files", "Watched things");
    TreeMaker::event(files, "open")->localizedName = QStringLiteral("File opened");
    TreeMaker::event(files, "logrotate")->localizedName = QStringLiteral("Rotation");
    EventTreeItem *logins = TreeMaker::group(root.get(), "sessions", "Logins");
    EventTreeItem *login = TreeMaker::event(logins, "enter", "1");
    login->localizedName = QStringLiteral("Учёт входов");
    TreeMaker::parameter(login, "tty", "Rotation");
    TreeMaker::parameter(login, "overlay0", "tty")->visible = false;
    TreeMaker::event(logins, "leave")->localizedName = QStringLiteral("End of a session");
    TreeMaker::group(root.get(), "empty", "Nothing");
    return root;
}

void EventsProxyModelTest::init()
{
    m_tester.reset();
    m_proxy.reset();
    m_model = std::make_unique<ShownModel>(sampleTree());
    m_proxy = std::make_unique<EventsProxyModel>();
    m_tester = std::make_unique<QAbstractItemModelTester>(
        m_proxy.get(), QAbstractItemModelTester::FailureReportingMode::QtTest);
    m_proxy->setSourceModel(&**m_model);
}

void EventsProxyModelTest::lettersMatchInAnyCaseAndIoAsIe_data()
{
    QTest::addColumn<QString>("query");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("found");
    const QString smallIo = QStringLiteral("уч\u0451т");
    const QString capitalIo = QStringLiteral("УЧ\u0401Т");
    const QString smallIe = QStringLiteral("уч\u0435т");
    const QString capitalIe = QStringLiteral("УЧ\u0415Т");
    const QStringList spellings{smallIo, capitalIo, smallIe, capitalIe};
    for (const QString &query : spellings) {
        for (const QString &text : spellings) {
            QTest::newRow(qPrintable(query + QLatin1String(" in ") + text)) << query << text << true;
        }
    }
    QTest::newRow("middle of a text") << QStringLiteral("B C") << QStringLiteral("a b cd") << true;
    QTest::newRow("latin and cyrillic stay apart")
        << QStringLiteral("e") << QStringLiteral("\u0435\u0451") << false;
    QTest::newRow("blanks count") << QStringLiteral("a  b") << QStringLiteral("a b") << false;
    QTest::newRow("longer than the text") << QStringLiteral("abc") << QStringLiteral("ab") << false;
    QTest::newRow("nothing in nothing") << QString() << QString() << true;
    QTest::newRow("something in nothing") << QStringLiteral("a") << QString() << false;
    QTest::newRow("letters beyond the common alphabets")
        << QStringLiteral("\uff21\u1e9e") << QStringLiteral("x\uff41\u00df") << true;
    QTest::newRow("after a false start") << QStringLiteral("aab") << QStringLiteral("aaab") << true;
    QTest::newRow("patterns are plain text") << QStringLiteral(".*") << QStringLiteral("ab") << false;
}

void EventsProxyModelTest::lettersMatchInAnyCaseAndIoAsIe()
{
    QFETCH(QString, query);
    QFETCH(QString, text);
    QFETCH(bool, found);
    m_proxy->setFilterQuery(query);
    QCOMPARE(m_proxy->matchFilter(text), found);
    QCOMPARE(FuzzyMatch::contains(text, query), found);
}

void EventsProxyModelTest::foldingKeepsTheLengthOfATextAndItsOtherLetters()
{
    QCOMPARE(FuzzyMatch::folded(QStringLiteral("AbЁёЕеЯ-1_\u0130")).size(), 11);
    QCOMPARE(FuzzyMatch::folded(QStringLiteral("AbЁёЕеЯ-1_")), QStringLiteral("abеееея-1_"));
    QCOMPARE(int(FuzzyMatch::folded(u'Ё')), int(u'е'));
    QCOMPARE(int(FuzzyMatch::folded(u'Z')), int(u'z'));
}

void EventsProxyModelTest::emptyQueryIsFoundInEveryText()
{
    m_proxy->setFilterQuery(QStringLiteral("x"));
    m_proxy->setFilterQuery(QString());
    QVERIFY(m_proxy->matchFilter(QString()));
    QVERIFY(m_proxy->matchFilter(QStringLiteral("anything")));
}

void EventsProxyModelTest::emptyQueryShowsAllButHiddenNodes_data()
{
    QTest::addColumn<EventsProxyModel::FilterMode>("mode");
    QTest::newRow("all") << EventsProxyModel::All;
    QTest::newRow("group name") << EventsProxyModel::GroupName;
    QTest::newRow("group id") << EventsProxyModel::GroupId;
}

void EventsProxyModelTest::emptyQueryShowsAllButHiddenNodes()
{
    QFETCH(EventsProxyModel::FilterMode, mode);
    m_proxy->setFilterMode(mode);
    QCOMPARE(shown(),
             (QStringList{QStringLiteral("files: open logrotate"), QStringLiteral("sessions: enter leave"),
                          QStringLiteral("empty: ")}));
    const EventTreeItem *event = (*m_model)->rootItem()->eventChild(1)->eventChild(0);
    QCOMPARE(event->childCount(), 3);
    QCOMPARE(m_proxy->rowCount(shownIndex(event)), 2);
    QVERIFY(!shownIndex(event->eventChild(2)).isValid());
}

void EventsProxyModelTest::queryShowsTheRowsOfItsMode_data()
{
    QTest::addColumn<EventsProxyModel::FilterMode>("mode");
    QTest::addColumn<QString>("query");
    QTest::addColumn<QStringList>("expected");
    const auto row = [](const char *name, EventsProxyModel::FilterMode mode, const char *query,
                        const QStringList &expected) {
        QTest::newRow(name) << mode << QString::fromUtf8(query) << expected;
    };
    const QString files = QStringLiteral("files: open logrotate");
    const QString sessions = QStringLiteral("sessions: enter leave");
    using Mode = EventsProxyModel;
    row("all: event identifier", Mode::All, "OPEN", {QStringLiteral("files: open")});
    row("all: event name", Mode::All, "учет", {QStringLiteral("sessions: enter")});
    row("all: group identifier", Mode::All, "file", {files});
    row("all: group name", Mode::All, "watched", {files});
    row("all: names and identifiers", Mode::All, "log", {QStringLiteral("files: logrotate"), sessions});
    row("all: session in a name and an identifier", Mode::All, "session", {sessions});
    row("all: nothing", Mode::All, "zzz", {});
    row("event name", Mode::EventName, "session", {QStringLiteral("sessions: leave")});
    row("event name, not its identifier", Mode::EventName, "logrotate", {});
    row("event name, not the group's", Mode::EventName, "watched", {});
    row("event identifier", Mode::EventId, "o", {files});
    row("event identifier, not its name", Mode::EventId, "opened", {});
    row("event identifier, not the group's", Mode::EventId, "sessions", {});
    row("group name", Mode::GroupName, "login", {sessions});
    row("group name, not its identifier", Mode::GroupName, "files", {});
    row("group name, not an event's", Mode::GroupName, "rotation", {});
    row("group identifier", Mode::GroupId, "ss", {sessions});
    row("group identifier, not its name", Mode::GroupId, "logins", {});
    row("group identifier, not an event's", Mode::GroupId, "enter", {});
}

void EventsProxyModelTest::queryShowsTheRowsOfItsMode()
{
    QFETCH(EventsProxyModel::FilterMode, mode);
    QFETCH(QString, query);
    QFETCH(QStringList, expected);
    m_proxy->setFilterMode(mode);
    m_proxy->setFilterQuery(query);
    QCOMPARE(shown(), expected);
    QCOMPARE(m_proxy->rowCount(), expected.size());
}

void EventsProxyModelTest::groupNameShowsTheWholeGroup()
{
    m_proxy->setFilterMode(EventsProxyModel::GroupName);
    m_proxy->setFilterQuery(QStringLiteral("thing"));
    // "Nothing" matches as well and has no events.
    QCOMPARE(shown(), (QStringList{QStringLiteral("files: open logrotate"), QStringLiteral("empty: ")}));
}

void EventsProxyModelTest::parametersOfAShownEventIgnoreTheQuery()
{
    m_proxy->setFilterQuery(QStringLiteral("enter"));
    const EventTreeItem *event = (*m_model)->rootItem()->eventChild(1)->eventChild(0);
    QCOMPARE(m_proxy->rowCount(shownIndex(event)), 2);
    QVERIFY(shownIndex(event->eventChild(1)).isValid());
    QVERIFY(!shownIndex(event->eventChild(2)).isValid());
}

void EventsProxyModelTest::parametersAreNotSearched()
{
    m_proxy->setFilterQuery(QStringLiteral("tty"));
    QCOMPARE(shown(), QStringList());
    m_proxy->setFilterQuery(QStringLiteral("rotation"));
    QCOMPARE(shown(), QStringList{QStringLiteral("files: logrotate")});
}

void EventsProxyModelTest::hiddenFlagOfEventsAndGroupsPlaysNoPart()
{
    auto root = TreeMaker::root();
    EventTreeItem *group = TreeMaker::group(root.get(), "g");
    EventTreeItem *event = TreeMaker::event(group, "e");
    group->visible = false;
    event->visible = false;
    EventTreeItem *object = TreeMaker::object(event, "o");
    object->visible = false;
    TreeMaker::parameter(object, "p", "v");
    TreeMaker::list(event, "l", "[]")->visible = false;
    TreeMaker::subjects(event, "users")->visible = false;
    (*m_model)->setRootItem(root.release());
    QCOMPARE(shown(), QStringList{QStringLiteral("g: e")});
    QCOMPARE(m_proxy->rowCount(shownIndex(event)), 0);
}

void EventsProxyModelTest::changedModeFiltersAgain()
{
    m_proxy->setFilterQuery(QStringLiteral("sessions"));
    QCOMPARE(m_proxy->rowCount(), 1);
    QSignalSpy removed(m_proxy.get(), &QAbstractItemModel::rowsRemoved);
    m_proxy->setFilterMode(EventsProxyModel::EventId);
    QCOMPARE(removed.count(), 1);
    QCOMPARE(shown(), QStringList());
}

void EventsProxyModelTest::changedQueryFiltersAgain()
{
    QSignalSpy removed(m_proxy.get(), &QAbstractItemModel::rowsRemoved);
    QSignalSpy inserted(m_proxy.get(), &QAbstractItemModel::rowsInserted);
    m_proxy->setFilterQuery(QStringLiteral("zzz"));
    QCOMPARE(removed.count(), 1);
    m_proxy->setFilterQuery(QString());
    QCOMPARE(inserted.count(), 1);
    QCOMPARE(m_proxy->rowCount(), 3);
}

void EventsProxyModelTest::rowsOfANewTreeAreFiltered()
{
    m_proxy->setFilterQuery(QStringLiteral("later"));
    QCOMPARE(m_proxy->rowCount(), 0);
    auto root = TreeMaker::root();
    TreeMaker::event(TreeMaker::group(root.get(), "g"), "later");
    TreeMaker::event(TreeMaker::group(root.get(), "h"), "now");
    (*m_model)->setRootItem(root.release());
    QCOMPARE(shown(), QStringList{QStringLiteral("g: later")});
}

void EventsProxyModelTest::clickThroughTheProxyReachesTheModel()
{
    const EventTreeItem *event = (*m_model)->rootItem()->eventChild(1)->eventChild(0);
    m_proxy->setFilterQuery(QStringLiteral("enter"));
    QSignalSpy changed(m_proxy.get(), &QAbstractItemModel::dataChanged);
    QVERIFY(m_proxy->setData(shownIndex(event), QVariant(), Qt::CheckStateRole));
    QCOMPARE(event->checkState, int(Qt::Unchecked));
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed.at(0).at(0).toModelIndex(), shownIndex(event, 0));
    QCOMPARE(changed.at(0).at(1).toModelIndex(), shownIndex(event, 1));
    QCOMPARE(shownIndex(event).data(Qt::CheckStateRole), QVariant(int(Qt::Unchecked)));
}

void EventsProxyModelTest::newNameIsFoundAtOnce()
{
    EventTreeItem *event = (*m_model)->rootItem()->eventChild(0)->eventChild(0);
    event->localizedName = QStringLiteral("Renamed");
    m_proxy->setFilterQuery(QStringLiteral("renamed"));
    QCOMPARE(shown(), QStringList{QStringLiteral("files: open")});
}

void EventsProxyModelTest::groupIsFoundWithoutAnyEvent()
{
    m_proxy->setFilterQuery(QStringLiteral("nothing"));
    QCOMPARE(shown(), QStringList{QStringLiteral("empty: ")});
    m_proxy->setFilterMode(EventsProxyModel::EventName);
    QCOMPARE(shown(), QStringList());
}

void EventsProxyModelTest::rowsKnowWhetherSomethingIsShownBelow()
{
    auto root = TreeMaker::root();
    EventTreeItem *group = TreeMaker::group(root.get(), "group");
    EventTreeItem *hollow = TreeMaker::event(group, "hollow");
    TreeMaker::parameter(hollow, "hidden", "x")->visible = false;
    EventTreeItem *full = TreeMaker::event(group, "full");
    TreeMaker::parameter(full, "hidden", "x")->visible = false;
    const EventTreeItem *shownParameter = TreeMaker::parameter(full, "shown", "x");
    const EventTreeItem *empty = TreeMaker::group(root.get(), "empty");
    (*m_model)->setRootItem(root.release());
    QVERIFY(m_proxy->hasChildren());
    QVERIFY(m_proxy->hasChildren(shownIndex(group)));
    QVERIFY(!m_proxy->hasChildren(shownIndex(empty)));
    QVERIFY(!m_proxy->hasChildren(shownIndex(hollow)));
    QVERIFY(m_proxy->hasChildren(shownIndex(full)));
    QVERIFY(!m_proxy->hasChildren(shownIndex(full, 1)));
    QVERIFY(!m_proxy->hasChildren(shownIndex(shownParameter)));
    m_proxy->setFilterQuery(QStringLiteral("zzz"));
    QVERIFY(!m_proxy->hasChildren());
}

void EventsProxyModelTest::rowsOfAnyOtherModelAreHidden()
{
    QStringListModel other({QStringLiteral("text")});
    m_proxy->setSourceModel(&other);
    QCOMPARE(m_proxy->rowCount(), 0);
    m_proxy->setSourceModel(&**m_model);
    QCOMPARE(m_proxy->rowCount(), 3);
}

QTEST_MAIN(EventsProxyModelTest)

#include "eventsproxymodeltest.moc"
