// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "page.h"

#include "site.h"

#include <changemarker.h>
#include <eventtreeitem.h>
#include <singleeventsparser.h>
#include <systempaths.h>

#include <QCoreApplication>
#include <QHeaderView>

namespace {
QString catalogOf(const Site &site)
{
    site.select();
    return SystemPaths::resolve(SystemPaths::eventSettingsDirectory());
}
} // namespace

Page::Page(const Site &site)
    : m_storage(catalogOf(site))
    , m_working(m_storage)
    , m_reference(m_storage)
    , m_valid(load(site, m_working, m_reference))
{
    (void)m_storage.getOne(QString()); // so that nothing is read beside what is measured
    m_proxy.setSourceModel(&m_working);
    m_view.setModel(&m_proxy);
    m_view.header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
    m_view.setUniformRowHeights(true);
    m_view.setUpdatesEnabled(false);
    m_view.resize(800, 600);
    m_view.show();
    openGroups();
    QCoreApplication::processEvents();
}

bool Page::load(const Site &site, CheckableTreeModel &working, CheckableTreeModel &reference)
{
    site.select();
    const SingleEventsParser parser(site.accounts().users, site.accounts().groups, nullptr);
    if (!parser.isConfigCorrect()) {
        return false;
    }
    working.setRootItem(parser.parse());
    reference.setRootItem(parser.parse());
    return true;
}

QModelIndex Page::lastEvent() const
{
    const QModelIndex group = m_working.index(m_working.rowCount() - 1, 0);
    for (int row = m_working.rowCount(group) - 1; row >= 0; --row) {
        const QModelIndex event = m_working.index(row, 0, group);
        if (m_working.itemAt(event)->checkable) {
            return event;
        }
    }
    return {};
}

bool Page::click(const QModelIndex &event)
{
    m_working.setData(event, Qt::Checked, Qt::CheckStateRole);
    return !ChangeMarker::compareTrees(referenceRoot(), *m_working.rootItem());
}

void Page::openGroups()
{
    m_view.expandToDepth(0);
}

void Page::type(const QString &query)
{
    m_proxy.setFilterQuery(query);
}

void Page::layOut()
{
    QCoreApplication::processEvents();
}

int Page::shownEvents() const
{
    int count = 0;
    for (int row = 0; row < m_proxy.rowCount(); ++row) {
        count += m_proxy.rowCount(m_proxy.index(row, 0));
    }
    return count;
}
