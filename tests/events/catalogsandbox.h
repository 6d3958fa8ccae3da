// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <eventtreeitem.h>
#include <singleeventsparser.h>

#include <QJsonObject>
#include <QTemporaryDir>

#include <memory>

/**
 * A root directory of a test's own with an event catalog, settings and a node
 * dictionary. While it lives, the module and the catalog library take it for
 * the system. Texts are UTF-8.
 */
class CatalogSandbox
{
public:
    CatalogSandbox();
    ~CatalogSandbox();
    CatalogSandbox(const CatalogSandbox &) = delete;
    CatalogSandbox &operator=(const CatalogSandbox &) = delete;

    /// Writes a group's file, named so in both languages.
    void addGroup(const char *id, const char *englishName, const char *russianName) const;
    /// Writes an event's file with @p json as it is; @p directory is made without a group file.
    void addEvent(const char *directory, const char *id, const QByteArray &json) const;
    /// Writes the settings file with @p json as it is.
    void setSettings(const QByteArray &json) const;
    void setDictionary(const QByteArray &json) const;
    /// The catalog's directory does not exist any more.
    void removeCatalog() const;
    /// Writes a file below the root, with its directories.
    void write(const QString &path, const QByteArray &content) const;
    [[nodiscard]] QString path(const QString &path) const;

    /// A tree of the catalog with the settings; null when the catalog cannot be used.
    [[nodiscard]] std::unique_ptr<EventTreeItem> parse(const QStringList &users = {},
                                                       const QStringList &groups = {}) const;

private:
    QTemporaryDir m_root;
};

namespace Tree {
/// The node that a path of native names, separated by "/", leads to; null when a step is missing.
[[nodiscard]] EventTreeItem *at(const EventTreeItem &from, const char *path);
[[nodiscard]] EventTreeItem *at(const std::unique_ptr<EventTreeItem> &from, const char *path);
/// Column 1 of the node at @p path; "<missing>" when there is none.
[[nodiscard]] QString valueAt(const std::unique_ptr<EventTreeItem> &from, const char *path);
/// The native names of the children of @p item.
[[nodiscard]] QStringList childNames(const EventTreeItem *item);
/// The native names of a node's links.
[[nodiscard]] QStringList names(const QVector<EventTreeItem *> &nodes);
/// @p item and all below it, in pre-order.
[[nodiscard]] QVector<EventTreeItem *> all(EventTreeItem *item);
/// The paths of all nodes below @p item that carry the overlay flag, sorted.
[[nodiscard]] QStringList overlayPaths(EventTreeItem *item);
/// The object that @p json holds; a text that holds none ends the test program.
[[nodiscard]] QJsonObject object(const QByteArray &json);
/// Whether this process runs for a Russian user.
[[nodiscard]] bool isRussian();
/// The text that fits the language of this process.
[[nodiscard]] QString inLanguage(const char *english, const char *russian);
} // namespace Tree
