// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "destinationnames.h"

#include <algorithm>
#include <array>

namespace {
/// Words that a syslog-ng 3.38 does not take for a name at this place, in order. "if" and "channel" would
/// also make the writer use braces.
// clang-format off
constexpr std::array reserved{
    "add_prefix", "bad_hostname", "batch_lines", "batch_timeout", "block", "cast", "chain_hostnames",
    "channel", "check_hostname", "condition", "create_dirs", "custom_domain", "default_facility",
    "default_level", "default_priority", "default_severity", "destination", "dir_group", "dir_owner",
    "dir_perm", "dns_cache", "dns_cache_expire", "dns_cache_expire_failed", "dns_cache_hosts",
    "dns_cache_size", "elif", "else", "encoding", "exclude", "fetch_no_data_delay", "file_template",
    "filter", "flags", "flush_lines", "flush_timeout", "format", "frac_digits", "group", "host_override",
    "if", "include", "internal", "junction", "keep_hostname", "keep_timestamp", "key", "local_time_zone",
    "log", "log_fetch_limit", "log_fifo_size", "log_iw_size", "log_msg_size", "log_prefix",
    "long_hostnames", "mark", "mark_freq", "mark_mode", "min_iw_size_per_reader", "no",
    "normalize_hostnames", "off", "on", "on_error", "optional", "options", "owner", "pad_size", "pair",
    "parser", "pass_unix_credentials", "perm", "persist_name", "persist_only", "program_override",
    "proto_template", "python", "read_old_records", "recv_time_zone", "rekey", "replace", "replace_prefix",
    "retries", "rewrite", "scope", "send_time_zone", "shift", "shift_levels", "source", "stats",
    "stats_freq", "stats_level", "stats_lifetime", "stats_max_dynamics", "suppress", "sync", "sync_freq",
    "tags", "template", "template_escape", "template_function", "threaded", "throttle", "time_reap",
    "time_reopen", "time_sleep", "time_zone", "trim_large_messages", "truncate_size", "ts_format", "type",
    "use_dns", "use_fqdn", "use_rcptid", "use_syslogng_pid", "use_time_recvd", "use_uniqid", "value",
    "value_pairs", "workers", "yes"};
// clang-format on

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
        && std::none_of(reserved.begin(), reserved.end(),
                        [&name](const char *word) { return name == QLatin1String(word); });
}
