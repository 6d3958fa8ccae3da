// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "fuzzinput.h"

#include <auditassembler.h>
#include <eventmatcher.h>
#include <messagematcher.h>
#include <systemmessage.h>

#include <QDebug>
#include <QJsonDocument>
#include <QTemporaryDir>

using namespace NivraRecorder;

namespace {

/// A machine with the shipped catalog, all events switched on.
struct Machine
{
    Machine()
    {
        const QString shipped = QStringLiteral(ADMINEVENTS_DATA_PATH "/event-settings");
        const QString place = root.filePath(QStringLiteral("usr/share/syslog-ng-mod-nivra"));
        require(QDir().mkpath(place) && QFile::link(shipped, place + QLatin1String("/event-settings")),
                "the catalog is there");
        QJsonObject settings;
        const QStringList groups = QDir(shipped).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
        for (const QString &group : groups) {
            const QStringList events = QDir(shipped + QLatin1Char('/') + group).entryList(QDir::Files);
            for (const QString &event : events) {
                settings.insert(event.section(QLatin1Char('.'), 0, 0),
                                QJsonObject{{QStringLiteral("enabled"), QStringLiteral("1")}});
            }
        }
        putFile(settingsFile(), QJsonDocument(settings).toJson());
        qputenv("ADMINEVENTS_ROOT", root.path().toUtf8());
    }
    QString settingsFile() const { return root.filePath(QStringLiteral("etc/nivra-syslog.conf")); }

    QTemporaryDir root;
};

/// The logging service takes a record for a line.
void check(const QList<QByteArray> &records)
{
    for (const QByteArray &record : records) {
        const QJsonObject object = QJsonDocument::fromJson(record).object();
        require(object.keys() == QStringList{QStringLiteral("MSG")} && !record.contains('\n'),
                "a record is one line of JSON", QString::fromUtf8(record));
    }
}

} // namespace

/// Whatever the audit daemon and the journal say becomes records or nothing.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const Machine machine;
    static EventMatcher events(machine.settingsFile());
    static MessageMatcher messages(machine.settingsFile());
    FuzzInput input(data, size);
    const bool isAudit = input.mode(2) == 0;
    const QList<QByteArray> lines = input.rest().split('\n');
    AuditAssembler assembler;
    for (const QByteArray &line : lines) {
        if (!isAudit) {
            const std::optional<SystemMessage> message = SystemMessage::parse(line);
            check(message ? messages.records(*message) : QList<QByteArray>());
            continue;
        }
        const QList<AuditEvent> complete = assembler.add(line);
        for (const AuditEvent &event : complete) {
            check(events.records(event));
        }
    }
    const QList<AuditEvent> left = assembler.takeAll();
    for (const AuditEvent &event : left) {
        check(events.records(event));
    }
    return 0;
}
