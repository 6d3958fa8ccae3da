// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <eventreader.h>

#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QPair>
#include <QString>
#include <QStringList>

namespace NivraRecorder {

/** An event of the catalog that is switched on, with the administrator's changes. */
struct CatalogEvent
{
    QJsonObject description;
    QJsonObject group;

    [[nodiscard]] QString messageType() const;
    /** What a message must say to be this event: values by the name of what it says. */
    [[nodiscard]] QJsonObject filter() const;
    /** The parameters that are switched on: each one's name, and what stands between the "${" and "}" of its
     * field. */
    [[nodiscard]] QList<QPair<QString, QString>> parameters() const;

    /**
     * The record of one occurrence: one line of JSON, an object with the member "MSG", as the logging
     * service's parser of events takes it. Long values are cut.
     * @param values of the parameters, by their names.
     */
    [[nodiscard]] QByteArray record(const QList<QPair<QString, QString>> &values) const;
};

/** The event catalog, changed by the event settings file, which is read again when it has changed. */
class CatalogEvents
{
public:
    /** @param settingsFile the event settings file. */
    explicit CatalogEvents(const QString &settingsFile);

    /** Reads what has changed; true when events() may be others now. */
    [[nodiscard]] bool refresh();
    /** Those that are switched on and have a message identifier. */
    [[nodiscard]] const QList<CatalogEvent> &events() const { return m_events; }

    /** The values that a member may name: a text, texts joined with commas, or an array of texts. */
    [[nodiscard]] static QStringList values(const QJsonValue &value);
    /** The parts of a text between its commas. */
    [[nodiscard]] static QStringList parts(const QString &text);

private:
    EventReader m_reader;
    QList<CatalogEvent> m_events;
};

} // namespace NivraRecorder
