// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "shownmodel.h"
#include "treemaker.h"

#include <QColor>
#include <QDir>
#include <QFile>
#include <QPixmap>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

namespace {
/// A theme with a red "dialog-information" and a blue "zep-notifications" of 16 x 16.
void installIconTheme(const QString &directory)
{
    const QDir theme(directory + QStringLiteral("/plain"));
    QVERIFY(theme.mkpath(QStringLiteral("16")));
    QFile index(theme.filePath(QStringLiteral("index.theme")));
    QVERIFY(index.open(QIODevice::WriteOnly));
    index.write("[Icon Theme]\nName=plain\nComment=plain\nDirectories=16\n[16]\nSize=16\nType=Fixed\n");
    QPixmap pixmap(16, 16);
    pixmap.fill(Qt::red);
    QVERIFY(pixmap.save(theme.filePath(QStringLiteral("16/dialog-information.png"))));
    pixmap.fill(Qt::blue);
    QVERIFY(pixmap.save(theme.filePath(QStringLiteral("16/zep-notifications.png"))));
    QIcon::setThemeSearchPaths({directory});
    QIcon::setThemeName(QStringLiteral("plain"));
}
} // namespace

class ModelDataTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void invalidIndexHasNoDataAndNoFlags();
    void displayAndEditRolesGiveTheValuesOfTheNode();
    void switchesAreShownAsOnAndOff();
    void iconTellsLoadAndNotifications_data();
    void iconTellsLoadAndNotifications();
    void iconForBothHasTwiceTheWidth();
    void toolTipTellsLoadBeforeNotifications();
    void valuesThatCannotBeEditedAreGrey();
    void checkBoxIsShownForCheckableNodesOnly();
    void outcomesHaveTheirCheckBoxInTheValueColumn();
    void rolesTellWhatANodeStandsFor();
    void rolesOutsideTheRangeAreInvalid();
    void accountsAreNotTakenForListsOfAccounts();
    void watchedPathsAreFileListsOnlyBelowTheirEvents_data();
    void watchedPathsAreFileListsOnlyBelowTheirEvents();
    void auditRulesRoleLeadsToTheRulesOfTheEvent();
    void namesAreSelectableAndCheckable();
    void plainValuesAreEditable();
    void valuesOfDialogsAreNotEditable();
    void switchesAreCheckableAndNotEditable();
    void nodesWithChildrenOfferNoEditor();

private:
    QTemporaryDir m_icons;
};

void ModelDataTest::initTestCase()
{
    installIconTheme(m_icons.path());
}

void ModelDataTest::invalidIndexHasNoDataAndNoFlags()
{
    ShownModel model(TreeMaker::root());
    QVERIFY(!model->data(QModelIndex(), Qt::DisplayRole).isValid());
    QVERIFY(!model->data(QModelIndex(), CheckableTreeModel::NativeNameRole).isValid());
    QCOMPARE(model->flags(QModelIndex()), Qt::ItemFlags(Qt::NoItemFlags));
    QVERIFY(!model->setData(QModelIndex(), QStringLiteral("x"), Qt::EditRole));
    QVERIFY(!model->setData(QModelIndex(), Qt::Checked, Qt::CheckStateRole));
}

void ModelDataTest::displayAndEditRolesGiveTheValuesOfTheNode()
{
    auto root = TreeMaker::root();
    EventTreeItem *event = TreeMaker::event(TreeMaker::group(root.get(), "g"), "e");
    EventTreeItem *list = TreeMaker::list(event, "names", R"(["a","b"])");
    ShownModel model(std::move(root));
    const QModelIndex name = model.name(list);
    const QModelIndex value = model.value(list);
    const QModelIndex json = name.siblingAtColumn(2);
    QCOMPARE(name.data(), QVariant(QStringLiteral("names")));
    QCOMPARE(value.data(), QVariant(QStringLiteral("a, b")));
    QCOMPARE(json.data(), QVariant(QStringLiteral(R"(["a","b"])")));
    QVERIFY(!name.data(Qt::EditRole).isValid());
    QCOMPARE(value.data(Qt::EditRole), QVariant(QStringLiteral("a, b")));
    QCOMPARE(json.data(Qt::EditRole), QVariant(QStringLiteral(R"(["a","b"])")));
    QVERIFY(!value.data(Qt::DecorationRole).isValid());
    QVERIFY(!json.data(Qt::CheckStateRole).isValid());
    QVERIFY(!name.data(Qt::SizeHintRole).isValid());
}

void ModelDataTest::switchesAreShownAsOnAndOff()
{
    auto root = TreeMaker::root();
    EventTreeItem *event = TreeMaker::event(TreeMaker::group(root.get(), "g"), "e", "1");
    EventTreeItem *repetition = TreeMaker::switched(event, "notification_repetition", "1");
    EventTreeItem *other = TreeMaker::outcome(event, "other", "0", "1");
    ShownModel model(std::move(root));
    QCOMPARE(model.value(repetition).data(), QVariant(QStringLiteral("On")));
    QCOMPARE(model.value(other->eventChild(0)).data(), QVariant(QStringLiteral("Off")));
    QCOMPARE(model.value(other->eventChild(0)).data(Qt::EditRole), QVariant(QStringLiteral("0")));
    QCOMPARE(model.value(other->eventChild(1)).data(), QVariant(QStringLiteral("On")));
    // An event shows no switch text, and the switch itself its number.
    QVERIFY(!model.value(event).data().isValid());
    QCOMPARE(model.value(event->eventChild(0)).data(), QVariant(QStringLiteral("1")));
}

void ModelDataTest::iconTellsLoadAndNotifications_data()
{
    QTest::addColumn<bool>("load");
    QTest::addColumn<int>("notification");
    QTest::addColumn<QString>("icon");
    const QString information = QStringLiteral("dialog-information");
    const QString bell = QStringLiteral("zep-notifications");
    QTest::newRow("neither") << false << 0 << QString();
    QTest::newRow("load only") << true << 0 << information;
    QTest::newRow("notifications found") << false << 1 << bell;
    QTest::newRow("notifications switched on") << false << 2 << bell;
}

void ModelDataTest::iconTellsLoadAndNotifications()
{
    QFETCH(bool, load);
    QFETCH(int, notification);
    QFETCH(QString, icon);
    auto root = TreeMaker::root();
    EventTreeItem *event = TreeMaker::event(TreeMaker::group(root.get(), "g"), "e");
    event->generatesLoad = load;
    event->notificationState = static_cast<EventTreeItem::NotificationState>(notification);
    ShownModel model(std::move(root));
    const QVariant shown = model.name(event).data(Qt::DecorationRole);
    QCOMPARE(shown.value<QIcon>().name(), icon);
    QCOMPARE(shown.isValid(), !icon.isEmpty());
    QVERIFY(!model.value(event).data(Qt::DecorationRole).isValid());
}

void ModelDataTest::iconForBothHasTwiceTheWidth()
{
    auto root = TreeMaker::root();
    EventTreeItem *event = TreeMaker::event(TreeMaker::group(root.get(), "g"), "e");
    event->generatesLoad = true;
    event->notificationState = EventTreeItem::NotificationSwitchedOn;
    ShownModel model(std::move(root));
    const auto pixmap = model.name(event).data(Qt::DecorationRole).value<QPixmap>();
    QCOMPARE(pixmap.size(), QSize(32, 16));
    const QImage image = pixmap.toImage();
    const QSet<QRgb> colours{image.pixel(4, 8), image.pixel(28, 8)};
    QCOMPARE(colours, (QSet<QRgb>{QColor(Qt::red).rgb(), QColor(Qt::blue).rgb()}));
}

void ModelDataTest::toolTipTellsLoadBeforeNotifications()
{
    auto root = TreeMaker::root();
    EventTreeItem *group = TreeMaker::group(root.get(), "g");
    EventTreeItem *plain = TreeMaker::event(group, "plain");
    EventTreeItem *noted = TreeMaker::event(group, "noted");
    noted->notificationState = EventTreeItem::NotificationOn;
    EventTreeItem *heavy = TreeMaker::event(group, "heavy");
    heavy->generatesLoad = true;
    heavy->notificationState = EventTreeItem::NotificationOn;
    ShownModel model(std::move(root));
    QCOMPARE(model.name(plain).data(Qt::ToolTipRole), QVariant(QString()));
    QCOMPARE(model.name(noted).data(Qt::ToolTipRole),
             QVariant(QStringLiteral("Notifications are enabled for this event")));
    QCOMPARE(model.name(heavy).data(Qt::ToolTipRole),
             QVariant(QStringLiteral("This event generates a large volume of records in the logs")));
    QCOMPARE(model.value(heavy).data(Qt::ToolTipRole), QVariant(QString()));
    QCOMPARE(model.name(heavy).siblingAtColumn(2).data(Qt::ToolTipRole), QVariant(QString()));
}

void ModelDataTest::valuesThatCannotBeEditedAreGrey()
{
    auto root = TreeMaker::root();
    EventTreeItem *event = TreeMaker::event(TreeMaker::group(root.get(), "g"), "e");
    EventTreeItem *open = TreeMaker::parameter(event, "open", "v");
    EventTreeItem *closed = TreeMaker::parameter(event, "closed", "v");
    closed->editable = false;
    ShownModel model(std::move(root));
    QVERIFY(!model.value(open).data(Qt::ForegroundRole).isValid());
    QCOMPARE(model.value(closed).data(Qt::ForegroundRole).value<QColor>(), QColor(Qt::gray));
    QVERIFY(!model.name(closed).data(Qt::ForegroundRole).isValid());
    QVERIFY(!model.name(closed).siblingAtColumn(2).data(Qt::ForegroundRole).isValid());
}

void ModelDataTest::checkBoxIsShownForCheckableNodesOnly()
{
    auto root = TreeMaker::root();
    EventTreeItem *group = TreeMaker::group(root.get(), "g");
    EventTreeItem *on = TreeMaker::event(group, "on", "1");
    EventTreeItem *odd = TreeMaker::event(group, "odd", "maybe");
    EventTreeItem *fixed = TreeMaker::event(group, "fixed");
    ShownModel model(std::move(root));
    QCOMPARE(model.name(on).data(Qt::CheckStateRole), QVariant(int(Qt::Checked)));
    QCOMPARE(model.name(odd).data(Qt::CheckStateRole), QVariant(int(Qt::PartiallyChecked)));
    QVERIFY(!model.name(fixed).data(Qt::CheckStateRole).isValid());
    QVERIFY(!model.value(on).data(Qt::CheckStateRole).isValid());
    QVERIFY(!model.name(on->eventChild(0)).data(Qt::CheckStateRole).isValid());
}

void ModelDataTest::outcomesHaveTheirCheckBoxInTheValueColumn()
{
    auto root = TreeMaker::root();
    EventTreeItem *event = TreeMaker::event(TreeMaker::group(root.get(), "g"), "e");
    EventTreeItem *other = TreeMaker::outcome(event, "other", "0", "1");
    EventTreeItem *named = TreeMaker::switched(event, "succ", "1");
    ShownModel model(std::move(root));
    QCOMPARE(model.value(other->eventChild(0)).data(Qt::CheckStateRole), QVariant(int(Qt::Unchecked)));
    QCOMPARE(model.value(other->eventChild(1)).data(Qt::CheckStateRole), QVariant(int(Qt::Checked)));
    QVERIFY(!model.name(other->eventChild(1)).data(Qt::CheckStateRole).isValid());
    // With a switch of its own the node is no outcome, whatever its name.
    QVERIFY(!model.value(named).data(Qt::CheckStateRole).isValid());
    QVERIFY(model->isAuditItem(QStringLiteral("succ")));
    QVERIFY(model->isAuditItem(QStringLiteral("fail")));
    QVERIFY(!model->isAuditItem(QStringLiteral("Succ")));
    QVERIFY(!model->isAuditItem(QString()));
}

void ModelDataTest::rolesTellWhatANodeStandsFor()
{
    auto root = TreeMaker::root();
    EventTreeItem *event = TreeMaker::event(TreeMaker::group(root.get(), "g"), "e");
    EventTreeItem *directories = TreeMaker::list(event, "directories", "[]");
    EventTreeItem *open = TreeMaker::object(TreeMaker::object(event, "message-audit-events"), "open");
    EventTreeItem *users = TreeMaker::subjects(open, "users");
    EventTreeItem *groups = TreeMaker::subjects(open, "groups");
    directories->visible = false;
    directories->setData(0, QStringLiteral("Каталоги"));
    ShownModel model(std::move(root));
    for (int column = 0; column < 3; ++column) {
        const QModelIndex index = model.name(directories).siblingAtColumn(column);
        QCOMPARE(index.data(257), QVariant(false));
        QCOMPARE(index.data(258), QVariant(false));
        QCOMPARE(index.data(259), QVariant(false));
        QCOMPARE(index.data(260), QVariant(QStringLiteral("directories")));
        QCOMPARE(index.data(261), QVariant(true));
        QCOMPARE(index.data(262), QVariant(false));
        QCOMPARE(index.data(264), QVariant(false));
        QCOMPARE(index.data(265), QVariant(false));
    }
    QCOMPARE(model.name(users).data(264), QVariant(true));
    QCOMPARE(model.name(users).data(265), QVariant(false));
    QCOMPARE(model.name(groups).data(265), QVariant(true));
    QCOMPARE(model.name(open).data(257), QVariant(true));
    QCOMPARE(model.name(open).data(259), QVariant(true));
    QCOMPARE(model.name(open).data(261), QVariant(false));
}

void ModelDataTest::rolesOutsideTheRangeAreInvalid()
{
    auto root = TreeMaker::root();
    EventTreeItem *event = TreeMaker::event(TreeMaker::group(root.get(), "g"), "e", "1");
    ShownModel model(std::move(root));
    QVERIFY(!model.name(event).data(256).isValid());
    QVERIFY(!model.name(event).data(266).isValid());
    QVERIFY(!model.name(event).data(1000).isValid());
    QVERIFY(!model->setData(model.name(event), QStringLiteral("x"), 260));
    QVERIFY(!model->setData(model.name(event), QStringLiteral("x"), Qt::DisplayRole));
    QCOMPARE(event->nativeName, QStringLiteral("e"));
}

void ModelDataTest::accountsAreNotTakenForListsOfAccounts()
{
    auto root = TreeMaker::root();
    EventTreeItem *event = TreeMaker::event(TreeMaker::group(root.get(), "g"), "e");
    EventTreeItem *open = TreeMaker::object(TreeMaker::object(event, "message-audit-events"), "open");
    EventTreeItem *groups = TreeMaker::subjects(open, "groups");
    EventTreeItem *users = TreeMaker::outcome(groups, "users", "0", "1");
    EventTreeItem *directories = TreeMaker::outcome(groups, "directories", "0", "1");
    EventTreeItem *key = TreeMaker::parameter(groups, ".auditd.key", "x");
    ShownModel model(std::move(root));
    QCOMPARE(model.name(users).data(CheckableTreeModel::UsersRole), QVariant(false));
    QCOMPARE(model.name(directories).data(CheckableTreeModel::DirectoriesRole), QVariant(false));
    QCOMPARE(model.name(key).data(CheckableTreeModel::FileArrayRole), QVariant(false));
    QCOMPARE(model.name(users).data(CheckableTreeModel::NativeNameRole), QVariant(QStringLiteral("users")));
}

void ModelDataTest::watchedPathsAreFileListsOnlyBelowTheirEvents_data()
{
    QTest::addColumn<QString>("event");
    QTest::addColumn<QString>("parameter");
    QTest::addColumn<bool>("fileList");
    QTest::addColumn<bool>("directoryList");
    const auto add = [](const char *event, const char *parameter, bool files, bool directories) {
        QTest::addRow("%s below %s", parameter, event)
            << QString::fromLatin1(event) << QString::fromLatin1(parameter) << files << directories;
    };
    add("modifying-file", ".auditd.key", true, false);
    add("modifying-file", ".auditd.msg.exe", true, false);
    add("file-opened", ".auditd.key", true, false);
    add("file-opened", ".auditd.msg.exe", true, false);
    add("modifying-directory", ".auditd.key", false, true);
    add("modifying-directory", ".auditd.msg.exe", false, false);
    add("login", ".auditd.key", false, false);
    add("modifying-file", "PROGRAM", false, false);
}

void ModelDataTest::watchedPathsAreFileListsOnlyBelowTheirEvents()
{
    QFETCH(QString, event);
    QFETCH(QString, parameter);
    QFETCH(bool, fileList);
    QFETCH(bool, directoryList);
    auto root = TreeMaker::root();
    EventTreeItem *node = TreeMaker::event(TreeMaker::group(root.get(), "g"), event.toLatin1().constData());
    EventTreeItem *list = TreeMaker::list(TreeMaker::object(node, "filter-values"),
                                          parameter.toLatin1().constData(), R"(["/etc/x"])");
    ShownModel model(std::move(root));
    QCOMPARE(model.name(list).data(CheckableTreeModel::FileArrayRole), QVariant(fileList));
    QCOMPARE(model.value(list).data(CheckableTreeModel::DirectoryArrayRole), QVariant(directoryList));
    QCOMPARE(bool(model->flags(model.value(list)) & Qt::ItemIsEditable), !fileList && !directoryList);
}

void ModelDataTest::auditRulesRoleLeadsToTheRulesOfTheEvent()
{
    auto root = TreeMaker::root();
    EventTreeItem *group = TreeMaker::group(root.get(), "g");
    EventTreeItem *event = TreeMaker::event(group, "modifying-file");
    event->setHasAuditRules(true);
    EventTreeItem *list = TreeMaker::list(TreeMaker::object(event, "filter-values"), ".auditd.key", "[]");
    list->setHasAuditRules(true);
    EventTreeItem *rules = TreeMaker::parameter(event, "message-audit-rules", "-w /etc/x -p wa -k /etc/x");
    EventTreeItem *unruled = TreeMaker::parameter(event, "p", "v");
    EventTreeItem *bare = TreeMaker::event(group, "bare");
    bare->setHasAuditRules(true);
    ShownModel model(std::move(root));
    QCOMPARE(model.value(list).data(CheckableTreeModel::AuditRulesRole).toModelIndex(), model.name(rules));
    QCOMPARE(model.name(event).data(CheckableTreeModel::AuditRulesRole).toModelIndex(), model.name(rules));
    QVERIFY(!model.name(unruled).data(CheckableTreeModel::AuditRulesRole).toModelIndex().isValid());
    QVERIFY(!model.name(bare).data(CheckableTreeModel::AuditRulesRole).toModelIndex().isValid());
    QVERIFY(!model->getAuditRules(model.name(list), nullptr).isValid());
}

void ModelDataTest::namesAreSelectableAndCheckable()
{
    auto root = TreeMaker::root();
    EventTreeItem *group = TreeMaker::group(root.get(), "g");
    EventTreeItem *value = TreeMaker::parameter(TreeMaker::event(group, "e"), "p", "v");
    ShownModel model(std::move(root));
    const Qt::ItemFlags expected = Qt::ItemIsSelectable | Qt::ItemIsUserCheckable | Qt::ItemIsEnabled;
    QCOMPARE(model->flags(model.name(group)), expected);
    QCOMPARE(model->flags(model.name(value)), expected);
    QCOMPARE(model->flags(model.name(value).siblingAtColumn(2)), Qt::ItemIsSelectable | Qt::ItemIsEnabled);
}

void ModelDataTest::plainValuesAreEditable()
{
    auto root = TreeMaker::root();
    EventTreeItem *event = TreeMaker::event(TreeMaker::group(root.get(), "g"), "e");
    EventTreeItem *value = TreeMaker::parameter(event, "p", "v");
    EventTreeItem *list = TreeMaker::list(event, "names", R"(["a","b"])");
    EventTreeItem *closed = TreeMaker::parameter(event, "closed", "v");
    closed->editable = false;
    ShownModel model(std::move(root));
    const Qt::ItemFlags plain = Qt::ItemIsSelectable | Qt::ItemIsEnabled;
    QCOMPARE(model->flags(model.value(value)), plain | Qt::ItemIsEditable);
    QCOMPARE(model->flags(model.value(list)), plain | Qt::ItemIsEditable);
    QCOMPARE(model->flags(model.value(closed)), plain);
    QCOMPARE(model->flags(model.value(event)), plain);
}

void ModelDataTest::valuesOfDialogsAreNotEditable()
{
    auto root = TreeMaker::root();
    EventTreeItem *event = TreeMaker::event(TreeMaker::group(root.get(), "g"), "e");
    const QVector<EventTreeItem *> nodes{
        TreeMaker::list(event, "directories", R"(["/var"])"),
        TreeMaker::parameter(event, "users", "v"),
        TreeMaker::parameter(event, "groups", "v"),
        TreeMaker::parameter(event, "message-audit-rules", "-w /etc/x -p wa -k /etc/x"),
    };
    ShownModel model(std::move(root));
    for (const EventTreeItem *node : nodes) {
        QVERIFY2(!(model->flags(model.value(node)) & Qt::ItemIsEditable), qPrintable(node->nativeName));
    }
}

void ModelDataTest::switchesAreCheckableAndNotEditable()
{
    auto root = TreeMaker::root();
    EventTreeItem *event = TreeMaker::event(TreeMaker::group(root.get(), "g"), "e", "1");
    EventTreeItem *repetition = TreeMaker::switched(event, "notification_repetition", "1");
    EventTreeItem *other = TreeMaker::outcome(event, "other", "0", "1");
    ShownModel model(std::move(root));
    const Qt::ItemFlags expected = Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemIsUserCheckable;
    QCOMPARE(model->flags(model.value(repetition)), expected);
    QCOMPARE(model->flags(model.value(other->eventChild(0))), expected);
    QCOMPARE(model->flags(model.value(other)), Qt::ItemIsSelectable | Qt::ItemIsEnabled);
}

void ModelDataTest::nodesWithChildrenOfferNoEditor()
{
    auto root = TreeMaker::root();
    EventTreeItem *event = TreeMaker::event(TreeMaker::group(root.get(), "g"), "e");
    EventTreeItem *full = TreeMaker::object(event, "full");
    TreeMaker::parameter(full, "p", "v");
    EventTreeItem *empty = TreeMaker::object(event, "empty");
    EventTreeItem *mixed = TreeMaker::list(event, "mixed", R"([{"path":"/var"}])");
    ShownModel model(std::move(root));
    QVERIFY(!(model->flags(model.value(full)) & Qt::ItemIsEditable));
    QVERIFY(!(model->flags(model.value(empty)) & Qt::ItemIsEditable));
    QVERIFY(!(model->flags(model.value(mixed)) & Qt::ItemIsEditable));
}

QTEST_MAIN(ModelDataTest)

#include "modeldatatest.moc"
