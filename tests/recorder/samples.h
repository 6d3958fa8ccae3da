// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

/** What the audit daemon says when a user writes to /etc/passwd, with the names that it adds to the numbers.
 */
inline QByteArray passwdWritten(const QByteArray &serial = "420", const QByteArray &key = "\"/etc/passwd\"",
                                const QByteArray &success = "yes")
{
    const QByteArray id = " msg=audit(1773469613.123:" + serial + "): ";
    return "type=SYSCALL" + id + "arch=c000003e syscall=257 success=" + success
        + " exit=3 a0=ffffff9c a1=55d a2=241 a3=1b6 items=2 ppid=900 pid=2417 auid=1000 uid=0 gid=0 euid=0 "
          "suid=0 "
          "fsuid=0 egid=0 sgid=0 fsgid=0 tty=pts0 ses=3 comm=\"vim\" exe=\"/usr/bin/vim.basic\" "
          "subj=unconfined key="
        + key
        + "\x1d"
          "ARCH=x86_64 SYSCALL=openat AUID=\"ivanov\" UID=\"root\" GID=\"root\"\n"
          "type=CWD"
        + id + "cwd=\"/etc\"\ntype=PATH" + id
        + "item=0 name=\"/etc/\" inode=1 dev=08:01 mode=040755 ouid=0 ogid=0 rdev=00:00 nametype=PARENT "
          "cap_fp=0\x1dOUID=\"root\" OGID=\"root\"\ntype=PATH"
        + id
        + "item=1 name=\"passwd\" inode=2 dev=08:01 mode=0100644 ouid=0 ogid=0 rdev=00:00 nametype=NORMAL "
          "cap_fp=0\x1dOUID=\"root\" OGID=\"root\"\ntype=PROCTITLE"
        + id + "proctitle=76696D00706173737764\ntype=EOE" + id + "\n";
}
