// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "tooltipper.h"

#include "checkabletreemodel.h"
#include "eventdisplay.h"
#include "eventtreeitem.h"

#include <QHelpEvent>
#include <QTextDocument>
#include <QToolTip>
#include <QTreeView>

namespace {
// A check box of 20 pixels and icons of 16, each with a margin of three on both sides.
constexpr int boxWidth = 26;
constexpr int firstIcon = 29;
constexpr int secondIcon = 46;
constexpr int afterIcons = 62;
} // namespace

ToolTipper::ToolTipper(QTreeView *view)
    : QObject(view)
    , m_view(view)
{
}

bool ToolTipper::eventFilter(QObject *object, QEvent *event)
{
    if (event->type() != QEvent::ToolTip || object != m_view->viewport()) {
        return QObject::eventFilter(object, event);
    }
    showToolTip(static_cast<const QHelpEvent &>(*event));
    return true;
}

void ToolTipper::showToolTip(const QHelpEvent &event)
{
    const QModelIndex index = m_view->indexAt(event.pos());
    const EventTreeItem *item = CheckableTreeModel::shownItem(index);
    if (!item) {
        QToolTip::hideText();
        return;
    }
    QRect area = m_view->visualRect(index);
    QString text;
    if (index.column() == 0) {
        const bool mirrored = m_view->isRightToLeft();
        const int distance = mirrored ? area.right() - event.pos().x() : event.pos().x() - area.left();
        const Zone zone = zoneAt(*item, distance, area.width());
        text = zone.text;
        // The tip goes when the pointer leaves the zone, and comes back with the text of the next one.
        const int left = mirrored ? area.right() + 1 - zone.end : area.left() + zone.begin;
        area = QRect(left, area.top(), zone.end - zone.begin, area.height());
    }
    QToolTip::showText(event.globalPos(), text.isEmpty() ? cellText(index, *item) : text, m_view->viewport(),
                       area);
}

ToolTipper::Zone ToolTipper::zoneAt(const EventTreeItem &item, int distance, int width)
{
    const bool notified = item.isNotificationOn();
    const bool both = notified && item.generatesLoad;
    if (!notified && !item.generatesLoad) {
        return {qMin(distance, 0), qMax(width, distance + 1), QString()};
    }
    const int shift = item.checkable ? 0 : boxWidth;
    const int first = firstIcon - shift;
    const int second = secondIcon - shift;
    const int after = both ? afterIcons - shift : second;
    if (distance < first) {
        return {qMin(distance, 0), first, QString()};
    }
    if (distance < second) {
        return {first, second, notified ? EventDisplay::notificationText() : EventDisplay::loadText()};
    }
    if (distance < after) {
        return {second, after, EventDisplay::loadText()};
    }
    return {after, qMax(width, distance + 1), QString()};
}

QString ToolTipper::cellText(const QModelIndex &index, const EventTreeItem &item)
{
    const bool translated = index.column() == 0 && item.kind >= EventTreeItem::Parameter;
    QString text = translated && !item.localizedName.isEmpty() ? item.localizedName
                                                               : index.data(Qt::DisplayRole).toString();
    constexpr int mostCharacters = 1000;
    constexpr int longLine = 80;
    if (text.size() > mostCharacters) {
        text = text.left(mostCharacters) + QChar(0x2026);
    }
    // Marked up, a long text is broken into lines, and what only looks like markup is shown as it is.
    return text.size() > longLine || Qt::mightBeRichText(text)
        ? QStringLiteral("<qt>%1</qt>").arg(text.toHtmlEscaped())
        : text;
}
