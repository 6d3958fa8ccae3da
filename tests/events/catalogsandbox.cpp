// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "catalogsandbox.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QLocale>

namespace {
const QString catalogPath = QStringLiteral("usr/share/syslog-ng-mod-nivra/event-settings");

void collect(EventTreeItem *item, QVector<EventTreeItem *> &nodes)
{
    nodes.append(item);
    for (int row = 0; row < item->childCount(); ++row) {
        collect(item->eventChild(row), nodes);
    }
}

void collectOverlays(EventTreeItem *item, const QString &path, QStringList &paths)
{
    for (int row = 0; row < item->childCount(); ++row) {
        EventTreeItem *child = item->eventChild(row);
        const QString childPath
            = path.isEmpty() ? child->nativeName : path + QLatin1Char('/') + child->nativeName;
        if (child->overlay) {
            paths.append(childPath);
        }
        collectOverlays(child, childPath, paths);
    }
}
} // namespace

CatalogSandbox::CatalogSandbox()
{
    if (!m_root.isValid() || !QDir(m_root.path()).mkpath(catalogPath)) {
        qFatal("no room for a temporary directory");
    }
    qputenv("ADMINEVENTS_ROOT", QFile::encodeName(m_root.path()));
}

CatalogSandbox::~CatalogSandbox()
{
    qunsetenv("ADMINEVENTS_ROOT");
}

QString CatalogSandbox::path(const QString &path) const
{
    return m_root.filePath(path);
}

void CatalogSandbox::write(const QString &path, const QByteArray &content) const
{
    const QString target = m_root.filePath(path);
    QFile file(target);
    if (!QDir().mkpath(QFileInfo(target).path()) || !file.open(QIODevice::WriteOnly)
        || file.write(content) != content.size()) {
        qFatal("cannot write %s", qPrintable(target));
    }
}

void CatalogSandbox::addGroup(const char *id, const char *englishName, const char *russianName) const
{
    const QJsonObject params{{QStringLiteral("name_en"), QString::fromUtf8(englishName)},
                             {QStringLiteral("name_ru"), QString::fromUtf8(russianName)}};
    write(catalogPath + QLatin1Char('/') + QString::fromUtf8(id) + QStringLiteral(".json"),
          QJsonDocument(QJsonObject{{QStringLiteral("group-params"), params}}).toJson());
}

void CatalogSandbox::addEvent(const char *directory, const char *id, const QByteArray &json) const
{
    write(QStringList{catalogPath, QString::fromUtf8(directory),
                      QString::fromUtf8(id) + QStringLiteral(".json")}
              .join(QLatin1Char('/')),
          json);
}

void CatalogSandbox::setSettings(const QByteArray &json) const
{
    write(QStringLiteral("etc/nivra-syslog.conf"), json);
}

void CatalogSandbox::setDictionary(const QByteArray &json) const
{
    write(QStringLiteral("etc/zep-admin-events/eventsdictionary.json"), json);
}

void CatalogSandbox::removeCatalog() const
{
    if (!QDir(m_root.filePath(catalogPath)).removeRecursively()) {
        qFatal("cannot remove the catalog");
    }
}

std::unique_ptr<EventTreeItem> CatalogSandbox::parse(const QStringList &users,
                                                     const QStringList &groups) const
{
    const SingleEventsParser parser(users, groups, nullptr);
    return std::unique_ptr<EventTreeItem>(parser.parse());
}

EventTreeItem *Tree::at(const EventTreeItem &from, const char *path)
{
    const EventTreeItem *node = &from;
    EventTreeItem *found = nullptr;
    const QStringList steps = QString::fromUtf8(path).split(QLatin1Char('/'));
    for (const QString &step : steps) {
        found = node->findChildTopLevelByNativeName(step);
        if (!found) {
            return nullptr;
        }
        node = found;
    }
    return found;
}

EventTreeItem *Tree::at(const std::unique_ptr<EventTreeItem> &from, const char *path)
{
    return from ? at(*from, path) : nullptr;
}

QString Tree::valueAt(const std::unique_ptr<EventTreeItem> &from, const char *path)
{
    const EventTreeItem *node = at(from, path);
    return node ? node->data(1).toString() : QStringLiteral("<missing>");
}

QStringList Tree::childNames(const EventTreeItem *item)
{
    QStringList result;
    for (int row = 0; row < item->childCount(); ++row) {
        result.append(item->eventChild(row)->nativeName);
    }
    return result;
}

QStringList Tree::names(const QVector<EventTreeItem *> &nodes)
{
    QStringList result;
    for (const EventTreeItem *node : nodes) {
        result.append(node->nativeName);
    }
    return result;
}

QVector<EventTreeItem *> Tree::all(EventTreeItem *item)
{
    QVector<EventTreeItem *> nodes;
    collect(item, nodes);
    return nodes;
}

QStringList Tree::overlayPaths(EventTreeItem *item)
{
    QStringList paths;
    collectOverlays(item, {}, paths);
    paths.sort();
    return paths;
}

QJsonObject Tree::object(const QByteArray &json)
{
    const QJsonDocument document = QJsonDocument::fromJson(json);
    if (!document.isObject()) {
        qFatal("no JSON object: %s", json.constData());
    }
    return document.object();
}

bool Tree::isRussian()
{
    return QLocale::system().language() == QLocale::Russian;
}

QString Tree::inLanguage(const char *english, const char *russian)
{
    return QString::fromUtf8(isRussian() ? russian : english);
}
