// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "notificationfragment.h"

#include "notificationname.h"

#include <abstractwriter.h>
#include <treeitem.h>

namespace {
const QLatin1String everybody("@all");
const QLatin1String administrators("nivra-admin");

TreeItem *addNode(TreeItem *parent, const QString &name, const QString &objectName, const QString &value)
{
    auto *node = new TreeItem({name, objectName, value}, parent);
    parent->appendChild(node);
    return node;
}

/// The destination's body; the tabs and line breaks are part of the format.
QString destinationTemplate()
{
    return QStringLiteral(
        "\n\tclass(\"syslog_ng_mod_nivra.nivra_syslog_ng_destination.NivraSyslogNgDestination\")"
        "\n\toptions(\"destination_type\", \"dbus\""
        "\n\t\t\"message_type\", \"%1\""
        "\n\t\t\"event_user\", \"%2\""
        "\n\t\t\"event_group\", \"%3\""
        "\n\t\t\"event_id\", \"%4\""
        "\n\t\t\"event_title\", \"%5\""
        "\n\t\t\"event_icon\", \"\""
        "\n\t\t\"event_params\", \"%6\""
        "\n\t\t\"event_format\", \"%7\")"
        "\n\tpersist-name(\"%8\")"
        "\n\t");
}

QString destinationBody(const NotificationFragment &fragment)
{
    QString user;
    QString group;
    if (fragment.recipients == NotificationFragment::AllUsers) {
        user = everybody;
        group = everybody;
    } else if (fragment.recipients == NotificationFragment::Administrators) {
        user = everybody;
        group = administrators;
    }
    QStringList format;
    for (int i = 0; i < fragment.parameters.size(); ++i) {
        format << QLatin1Char('{') + QString::number(i) + QLatin1Char('}');
    }
    QString title = fragment.title;
    title.replace(QLatin1Char('"'), QLatin1String("\\\""));
    // All at once: a "%1" in the title is text.
    return destinationTemplate().arg(
        fragment.messageType, user, group, NotificationName::key(fragment.messageId), title,
        fragment.parameters.join(QLatin1Char(',')), format.join(QLatin1Char(' ')), fragment.messageId);
}
} // namespace

std::unique_ptr<TreeItem> NotificationFragment::tree() const
{
    const QString filterName = QLatin1String("nivra_") + messageId + QLatin1String("_filter");
    const QString destinationName = QLatin1String("nivra_") + messageId + QLatin1String("_dbus_dst");
    auto root = std::make_unique<TreeItem>(
        QVector<QVariant>{QStringLiteral("Parameter"), QStringLiteral("Name"), QStringLiteral("Value")});
    TreeItem *filter = addNode(root.get(), QStringLiteral("filter"), filterName, {});
    addNode(filter, QStringLiteral("match"), {},
            QLatin1String("\"^") + messageId + QLatin1String("$\" value(\"MSG.nivra-") + messageType
                + QLatin1String(".message_id\")"));
    TreeItem *destination = addNode(root.get(), QStringLiteral("destination"), destinationName, {});
    addNode(destination, QStringLiteral("python"), {}, destinationBody(*this));
    TreeItem *log = addNode(root.get(), QStringLiteral("log"), {}, {});
    addNode(log, QStringLiteral("source"), {}, QStringLiteral("nivra_events_src"));
    addNode(log, QStringLiteral("parser"), {}, QStringLiteral("nivra_events_parser"));
    addNode(log, QStringLiteral("filter"), {}, filterName);
    addNode(log, QStringLiteral("destination"), {}, destinationName);
    return root;
}

QStringList NotificationFragment::lines(AbstractWriter &writer) const
{
    const std::unique_ptr<TreeItem> root = tree();
    QStringList lines = writer.getConfig(root.get()).join(QString()).split(QLatin1Char('\n'));
    // What follows the last line break is no line; kept, it would grow the file by one.
    if (!lines.isEmpty() && lines.last().isEmpty()) {
        lines.removeLast();
    }
    return lines;
}
