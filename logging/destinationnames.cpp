// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "destinationnames.h"

#include <algorithm>
#include <array>

namespace {
/// Words that a syslog-ng 3.38 does not take for a name at this place, in order. "if" and "channel" would
/// also make the writer use braces.
constexpr std::array reserved{QLatin1String("add_prefix"),
                              QLatin1String("bad_hostname"),
                              QLatin1String("batch_lines"),
                              QLatin1String("batch_timeout"),
                              QLatin1String("block"),
                              QLatin1String("cast"),
                              QLatin1String("chain_hostnames"),
                              QLatin1String("channel"),
                              QLatin1String("check_hostname"),
                              QLatin1String("condition"),
                              QLatin1String("create_dirs"),
                              QLatin1String("custom_domain"),
                              QLatin1String("default_facility"),
                              QLatin1String("default_level"),
                              QLatin1String("default_priority"),
                              QLatin1String("default_severity"),
                              QLatin1String("destination"),
                              QLatin1String("dir_group"),
                              QLatin1String("dir_owner"),
                              QLatin1String("dir_perm"),
                              QLatin1String("dns_cache"),
                              QLatin1String("dns_cache_expire"),
                              QLatin1String("dns_cache_expire_failed"),
                              QLatin1String("dns_cache_hosts"),
                              QLatin1String("dns_cache_size"),
                              QLatin1String("elif"),
                              QLatin1String("else"),
                              QLatin1String("encoding"),
                              QLatin1String("exclude"),
                              QLatin1String("fetch_no_data_delay"),
                              QLatin1String("file_template"),
                              QLatin1String("filter"),
                              QLatin1String("flags"),
                              QLatin1String("flush_lines"),
                              QLatin1String("flush_timeout"),
                              QLatin1String("format"),
                              QLatin1String("frac_digits"),
                              QLatin1String("group"),
                              QLatin1String("host_override"),
                              QLatin1String("if"),
                              QLatin1String("include"),
                              QLatin1String("internal"),
                              QLatin1String("junction"),
                              QLatin1String("keep_hostname"),
                              QLatin1String("keep_timestamp"),
                              QLatin1String("key"),
                              QLatin1String("local_time_zone"),
                              QLatin1String("log"),
                              QLatin1String("log_fetch_limit"),
                              QLatin1String("log_fifo_size"),
                              QLatin1String("log_iw_size"),
                              QLatin1String("log_msg_size"),
                              QLatin1String("log_prefix"),
                              QLatin1String("long_hostnames"),
                              QLatin1String("mark"),
                              QLatin1String("mark_freq"),
                              QLatin1String("mark_mode"),
                              QLatin1String("min_iw_size_per_reader"),
                              QLatin1String("no"),
                              QLatin1String("normalize_hostnames"),
                              QLatin1String("off"),
                              QLatin1String("on"),
                              QLatin1String("on_error"),
                              QLatin1String("optional"),
                              QLatin1String("options"),
                              QLatin1String("owner"),
                              QLatin1String("pad_size"),
                              QLatin1String("pair"),
                              QLatin1String("parser"),
                              QLatin1String("pass_unix_credentials"),
                              QLatin1String("perm"),
                              QLatin1String("persist_name"),
                              QLatin1String("persist_only"),
                              QLatin1String("program_override"),
                              QLatin1String("proto_template"),
                              QLatin1String("python"),
                              QLatin1String("read_old_records"),
                              QLatin1String("recv_time_zone"),
                              QLatin1String("rekey"),
                              QLatin1String("replace"),
                              QLatin1String("replace_prefix"),
                              QLatin1String("retries"),
                              QLatin1String("rewrite"),
                              QLatin1String("scope"),
                              QLatin1String("send_time_zone"),
                              QLatin1String("shift"),
                              QLatin1String("shift_levels"),
                              QLatin1String("source"),
                              QLatin1String("stats"),
                              QLatin1String("stats_freq"),
                              QLatin1String("stats_level"),
                              QLatin1String("stats_lifetime"),
                              QLatin1String("stats_max_dynamics"),
                              QLatin1String("suppress"),
                              QLatin1String("sync"),
                              QLatin1String("sync_freq"),
                              QLatin1String("tags"),
                              QLatin1String("template"),
                              QLatin1String("template_escape"),
                              QLatin1String("template_function"),
                              QLatin1String("threaded"),
                              QLatin1String("throttle"),
                              QLatin1String("time_reap"),
                              QLatin1String("time_reopen"),
                              QLatin1String("time_sleep"),
                              QLatin1String("time_zone"),
                              QLatin1String("trim_large_messages"),
                              QLatin1String("truncate_size"),
                              QLatin1String("ts_format"),
                              QLatin1String("type"),
                              QLatin1String("use_dns"),
                              QLatin1String("use_fqdn"),
                              QLatin1String("use_rcptid"),
                              QLatin1String("use_syslogng_pid"),
                              QLatin1String("use_time_recvd"),
                              QLatin1String("use_uniqid"),
                              QLatin1String("value"),
                              QLatin1String("value_pairs"),
                              QLatin1String("workers"),
                              QLatin1String("yes")};

bool isLetter(QChar character)
{
    return (character >= QLatin1Char('a') && character <= QLatin1Char('z'))
        || (character >= QLatin1Char('A') && character <= QLatin1Char('Z'));
}

bool isNameCharacter(QChar character)
{
    return isLetter(character) || character == QLatin1Char('_')
        || (character >= QLatin1Char('0') && character <= QLatin1Char('9'));
}
} // namespace

bool DestinationNames::isValid(const QString &name)
{
    return !name.isEmpty() && isLetter(name.at(0)) && std::all_of(name.begin(), name.end(), isNameCharacter)
        && std::find(reserved.begin(), reserved.end(), name) == reserved.end();
}
