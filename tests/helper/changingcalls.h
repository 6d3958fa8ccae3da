// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QSet>

#include <fcntl.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>

/** Whether a traced thread that has stopped is about to change something on the disk, or to end. */
inline bool isAboutToChange(pid_t thread)
{
    static const QSet<quint64> changing{
        SYS_write,    SYS_fsync,  SYS_fchmod,   SYS_fchown, SYS_ftruncate, SYS_openat,    SYS_mkdirat,
        SYS_unlinkat, SYS_linkat, SYS_renameat, SYS_flock,  SYS_renameat2, SYS_fsetxattr, SYS_exit_group};
    __ptrace_syscall_info info = {};
    return ::ptrace(PTRACE_GET_SYSCALL_INFO, thread, sizeof info, &info) > 0
        && info.op == PTRACE_SYSCALL_INFO_ENTRY && changing.contains(info.entry.nr)
        && (info.entry.nr != SYS_openat || (info.entry.args[2] & O_CREAT) != 0);
}
