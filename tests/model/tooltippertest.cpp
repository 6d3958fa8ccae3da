// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "shownmodel.h"
#include "treemaker.h"

#include <eventsproxymodel.h>
#include <tooltipper.h>

#include <QHelpEvent>
#include <QTest>
#include <QToolTip>
#include <QTreeView>

namespace {
const QString loadText = QStringLiteral("This event generates a large volume of records in the logs");
const QString notificationText = QStringLiteral("Notifications are enabled for this event");
} // namespace

class ToolTipperTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void zonesOfTheFirstColumn_data();
    void zonesOfTheFirstColumn();
    void zonesAreMirroredFromRightToLeft_data();
    void zonesAreMirroredFromRightToLeft();
    void withoutCheckBoxTheIconsComeEarlier_data();
    void withoutCheckBoxTheIconsComeEarlier();
    void valuesShowTheirOwnText();
    void parametersShowTheirNameInTheUsersLanguage();
    void branchesShowTheTextOfTheirRow();
    void emptySpaceAndEmptyCellsShowNothing();
    void markupInAValueIsShownAsItIs();
    void longTextsAreBrokenAndCut();
    void iconsOfADirectViewAreFound();
    void otherEventsGoTheirWay();

private:
    /// What shows when the pointer rests at @p pos of the viewport.
    [[nodiscard]] QString toolTipAt(const QPoint &pos) const
    {
        // A tip is hidden with a delay, so nothing must be taken for an answer that was there before.
        QToolTip::showText(m_view->mapToGlobal(pos), QStringLiteral("before"), m_view.get());
        QHelpEvent help(QEvent::ToolTip, pos, m_view->viewport()->mapToGlobal(pos));
        QApplication::sendEvent(m_view->viewport(), &help);
        return QToolTip::text();
    }
    [[nodiscard]] QString toolTipAt(const EventTreeItem *item, int distance) const
    {
        const QRect rect = m_view->visualRect(shownIndex(item));
        const int x = m_view->isRightToLeft() ? rect.right() - distance : rect.left() + distance;
        return toolTipAt(QPoint(x, rect.center().y()));
    }
    [[nodiscard]] QString toolTipOfValue(const EventTreeItem *item) const
    {
        return toolTipAt(m_view->visualRect(shownIndex(item, 1)).center());
    }
    [[nodiscard]] QModelIndex shownIndex(const EventTreeItem *item, int column = 0) const
    {
        return m_proxy->mapFromSource((*m_model)->indexOf(item, column));
    }
    static void zoneRows();
    void checkZone(int shift);

    std::unique_ptr<ShownModel> m_model;
    std::unique_ptr<EventsProxyModel> m_proxy;
    std::unique_ptr<QTreeView> m_view;
    EventTreeItem *m_event = nullptr;
    EventTreeItem *m_parameter = nullptr;
};

void ToolTipperTest::init()
{
    auto root = TreeMaker::root();
    m_event = TreeMaker::event(TreeMaker::group(root.get(), "group"), "event", "1");
    m_parameter = TreeMaker::parameter(m_event, "tty", "pts/1");
    m_model = std::make_unique<ShownModel>(std::move(root));
    m_proxy = std::make_unique<EventsProxyModel>();
    m_proxy->setSourceModel(&**m_model);
    m_view = std::make_unique<QTreeView>();
    m_view->setModel(m_proxy.get());
    m_view->viewport()->installEventFilter(new ToolTipper(m_view.get()));
    m_view->resize(600, 300);
    m_view->setColumnWidth(0, 300);
    m_view->expandAll();
    m_view->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_view.get()));
}

void ToolTipperTest::cleanup()
{
    QToolTip::hideText();
    m_view.reset();
    m_proxy.reset();
    m_model.reset();
}

void ToolTipperTest::zoneRows()
{
    QTest::addColumn<bool>("load");
    QTest::addColumn<bool>("notified");
    QTest::addColumn<int>("distance");
    QTest::addColumn<QString>("text");
    const QString name = QStringLiteral("event");
    const auto border = [](const char *what, bool load, bool notified, int at, const QString &before,
                           const QString &after) {
        for (const int distance : {at - 1, at, at + 1}) {
            QTest::addRow("%s, %d", what, distance)
                << load << notified << distance << (distance < at ? before : after);
        }
    };
    border("neither", false, false, 29, name, name);
    border("neither", false, false, 46, name, name);
    border("neither", false, false, 62, name, name);
    border("load", true, false, 29, name, loadText);
    border("load", true, false, 46, loadText, name);
    border("load", true, false, 62, name, name);
    border("notified", false, true, 29, name, notificationText);
    border("notified", false, true, 46, notificationText, name);
    border("notified", false, true, 62, name, name);
    border("both", true, true, 29, name, notificationText);
    border("both", true, true, 46, notificationText, loadText);
    border("both", true, true, 62, loadText, name);
}

void ToolTipperTest::checkZone(int shift)
{
    QFETCH(bool, load);
    QFETCH(bool, notified);
    QFETCH(int, distance);
    QFETCH(QString, text);
    m_event->generatesLoad = load;
    m_event->notificationState
        = notified ? EventTreeItem::NotificationSwitchedOn : EventTreeItem::NotificationOff;
    QCOMPARE(toolTipAt(m_event, distance - shift), text);
}

void ToolTipperTest::zonesOfTheFirstColumn_data()
{
    zoneRows();
}

void ToolTipperTest::zonesOfTheFirstColumn()
{
    checkZone(0);
}

void ToolTipperTest::zonesAreMirroredFromRightToLeft_data()
{
    zoneRows();
}

void ToolTipperTest::zonesAreMirroredFromRightToLeft()
{
    m_view->setLayoutDirection(Qt::RightToLeft);
    checkZone(0);
}

void ToolTipperTest::withoutCheckBoxTheIconsComeEarlier_data()
{
    zoneRows();
}

void ToolTipperTest::withoutCheckBoxTheIconsComeEarlier()
{
    m_event->checkable = false;
    checkZone(26);
}

void ToolTipperTest::valuesShowTheirOwnText()
{
    m_event->generatesLoad = true;
    QCOMPARE(toolTipOfValue(m_parameter), QStringLiteral("pts/1"));
    m_event->setData(1, QStringLiteral("a value"));
    QCOMPARE(toolTipOfValue(m_event), QStringLiteral("a value"));
}

void ToolTipperTest::parametersShowTheirNameInTheUsersLanguage()
{
    QCOMPARE(toolTipAt(m_parameter, 40), QStringLiteral("tty"));
    m_parameter->localizedName = QStringLiteral("Терминал");
    QCOMPARE(toolTipAt(m_parameter, 40), QStringLiteral("Терминал"));
}

void ToolTipperTest::branchesShowTheTextOfTheirRow()
{
    m_event->generatesLoad = true;
    QCOMPARE(toolTipAt(m_event, -5), QStringLiteral("event"));
}

void ToolTipperTest::emptySpaceAndEmptyCellsShowNothing()
{
    QCOMPARE(toolTipAt(m_event, 100), QStringLiteral("event"));
    QCOMPARE(toolTipAt(QPoint(100, m_view->viewport()->height() - 5)), QStringLiteral("before"));
    QTRY_COMPARE(QToolTip::text(), QString());
    QCOMPARE(toolTipOfValue(m_event), QStringLiteral("before"));
    QTRY_COMPARE(QToolTip::text(), QString());
}

void ToolTipperTest::markupInAValueIsShownAsItIs()
{
    m_parameter->setData(1, QStringLiteral("<b>bold</b> & more"));
    QCOMPARE(toolTipOfValue(m_parameter), QStringLiteral("<qt>&lt;b&gt;bold&lt;/b&gt; &amp; more</qt>"));
}

void ToolTipperTest::longTextsAreBrokenAndCut()
{
    m_parameter->setData(1, QString(200, QLatin1Char('x')));
    QCOMPARE(toolTipOfValue(m_parameter),
             QString(QStringLiteral("<qt>") + QString(200, QLatin1Char('x')) + QStringLiteral("</qt>")));
    m_parameter->setData(1, QString(5000, QLatin1Char('x')));
    QCOMPARE(toolTipOfValue(m_parameter),
             QString(QStringLiteral("<qt>") + QString(1000, QLatin1Char('x')) + QChar(0x2026)
                     + QStringLiteral("</qt>")));
}

void ToolTipperTest::iconsOfADirectViewAreFound()
{
    m_view->setModel(&**m_model);
    m_view->expandAll();
    m_event->generatesLoad = true;
    const QRect rect = m_view->visualRect((*m_model)->indexOf(m_event));
    QCOMPARE(toolTipAt(QPoint(rect.left() + 29, rect.center().y())), loadText);
    QCOMPARE(toolTipAt(QPoint(rect.left() + 28, rect.center().y())), QStringLiteral("event"));
}

void ToolTipperTest::otherEventsGoTheirWay()
{
    const QRect rect = m_view->visualRect(shownIndex(m_parameter));
    QTest::mouseClick(m_view->viewport(), Qt::LeftButton, {}, rect.center());
    QCOMPARE(m_view->currentIndex(), shownIndex(m_parameter));
}

QTEST_MAIN(ToolTipperTest)

#include "tooltippertest.moc"
