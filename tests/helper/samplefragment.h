// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QByteArray>

/** The fragment of the event "a-b_c" of the type "auth", for administrators, with two parameters. */
inline QByteArray sampleFragment(const QByteArray &title = "Failed login")
{
    return "filter nivra_a-b_c_filter {\n"
           "    match(\"^a-b_c$\" value(\"MSG.nivra-auth.message_id\"));\n"
           "};\n"
           "destination nivra_a-b_c_dbus_dst {\n"
           "    python(\n"
           "\tclass(\"syslog_ng_mod_nivra.nivra_syslog_ng_destination.NivraSyslogNgDestination\")\n"
           "\toptions(\"destination_type\", \"dbus\"\n"
           "\t\t\"message_type\", \"auth\"\n"
           "\t\t\"event_user\", \"@all\"\n"
           "\t\t\"event_group\", \"nivra-admin\"\n"
           "\t\t\"event_id\", \"aBC\"\n"
           "\t\t\"event_title\", \""
        + title
        + "\"\n"
          "\t\t\"event_icon\", \"\"\n"
          "\t\t\"event_params\", \"user,terminal\"\n"
          "\t\t\"event_format\", \"{0} {1}\")\n"
          "\tpersist-name(\"a-b_c\")\n"
          "\t);\n"
          "};\n"
          "log {\n"
          "    source(nivra_events_src);\n"
          "    parser(nivra_events_parser);\n"
          "    filter(nivra_a-b_c_filter);\n"
          "    destination(nivra_a-b_c_dbus_dst);\n"
          "};\n";
}

/** The same for another identifier, of letters only. */
inline QByteArray sampleFragmentOf(const QByteArray &id)
{
    return sampleFragment().replace("a-b_c", id).replace("aBC", id);
}
