// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "auditoperations.h"

#include <QSet>

#include <sys/utsname.h>

namespace AdminEventsHelper {

namespace {

/** Which names an architecture has; see syscall(2) and ausyscall(8). */
enum class Table { Amd64, I386, Generic64, Arm, Ppc64, S390x };

struct Arch
{
    QByteArray name;
    Table table;
};

struct Group
{
    QString identifier;
    QByteArray names; // of all architectures; those that one lacks are left out
    QByteArray fields;
};

// The flag O_CREAT of the opening calls.
const QByteArray createsBySecond("-F a1&0x40");
const QByteArray createsByThird("-F a2&0x40");

const QByteArray attributeCalls("setxattr,lsetxattr,fsetxattr,removexattr,lremovexattr,fremovexattr");

const QList<Group> &groups()
{
    static const QList<Group> all{
        {QStringLiteral("create"), "creat,mkdir,mkdirat,mknod,mknodat,link,linkat,symlink,symlinkat", {}},
        {QStringLiteral("create"), "open", createsBySecond},
        {QStringLiteral("create"), "openat", createsByThird},
        {QStringLiteral("open"), "open,openat,openat2,open_by_handle_at", {}},
        {QStringLiteral("exec"), "execve,execveat", {}},
        {QStringLiteral("delete"), "unlink,unlinkat,rmdir", {}},
        {QStringLiteral("rename"), "rename,renameat,renameat2", {}},
        {QStringLiteral("chmod"), "chmod,fchmod,fchmodat", {}},
        {QStringLiteral("chown"), "chown,fchown,lchown,fchownat,chown32,fchown32,lchown32", {}},
        {QStringLiteral("acl"), attributeCalls, {}},
        {QStringLiteral("mac"), attributeCalls, {}},
        {QStringLiteral("cap"), "capset", {}},
        {QStringLiteral("uid"),
         "setuid,setreuid,setresuid,setfsuid,setuid32,setreuid32,setresuid32,setfsuid32",
         {}},
        {QStringLiteral("gid"),
         "setgid,setregid,setresgid,setfsgid,setgroups,"
         "setgid32,setregid32,setresgid32,setfsgid32,setgroups32",
         {}},
        {QStringLiteral("chroot"), "chroot,pivot_root", {}},
        {QStringLiteral("mount"), "mount,umount,umount2,move_mount,mount_setattr", {}},
        {QStringLiteral("module"), "init_module,finit_module,delete_module", {}},
        // The kernel is told about auditing over a netlink socket of the protocol 9.
        {QStringLiteral("audit"), "socket", "-F a0=0x10 -F a2=0x9"},
        {QStringLiteral("net"), "connect,accept,accept4,bind,listen", {}},
        // The former way to the same calls: bind, connect, listen and accept are its numbers 2 to 5.
        {QStringLiteral("net"), "socketcall", "-F a0>=0x2 -F a0<=0x5"},
        {QStringLiteral("net"), "socketcall", "-F a0=0x12"},
    };
    return all;
}

bool isWide(const QByteArray &name)
{
    return name.endsWith("32");
}

bool hasCall(Table table, const QByteArray &name)
{
    static const QSet<QByteArray> former{"open",   "creat",  "mkdir", "mknod", "link",  "symlink",
                                         "rename", "unlink", "rmdir", "chmod", "chown", "lchown"};
    switch (table) {
    case Table::Amd64:
        return !isWide(name) && name != "umount" && name != "socketcall";
    case Table::I386:
        return name != "accept";
    case Table::Generic64:
        return !isWide(name) && name != "umount" && name != "socketcall" && !former.contains(name);
    case Table::Arm:
        return name != "socketcall";
    case Table::Ppc64:
        return !isWide(name);
    case Table::S390x:
        break;
    }
    return !isWide(name) && name != "accept";
}

QList<Arch> archesOf(const QString &machine)
{
    if (machine == QLatin1String("x86_64")) {
        return {{"b64", Table::Amd64}, {"b32", Table::I386}};
    }
    if (machine == QLatin1String("aarch64")) {
        return {{"b64", Table::Generic64}, {"b32", Table::Arm}};
    }
    if (machine == QLatin1String("ppc64le")) {
        return {{"b64", Table::Ppc64}};
    }
    if (machine == QLatin1String("s390x")) {
        return {{"b64", Table::S390x}};
    }
    if (machine.startsWith(QLatin1String("armv"))) {
        return {{"b32", Table::Arm}};
    }
    // i386 to i686
    if (machine.size() == 4 && machine.startsWith(QLatin1Char('i'))
        && machine.endsWith(QLatin1String("86"))) {
        return {{"b32", Table::I386}};
    }
    return {};
}

} // namespace

const QStringList &AuditOperations::identifiers()
{
    static const QStringList names = [] {
        QStringList list;
        for (const Group &group : groups()) {
            if (!list.contains(group.identifier)) {
                list << group.identifier;
            }
        }
        return list;
    }();
    return names;
}

QString AuditOperations::twinOf(const QString &identifier)
{
    return identifier == QLatin1String("acl") ? QStringLiteral("mac") : QString();
}

QString AuditOperations::thisMachine()
{
    utsname names = {};
    return ::uname(&names) == 0 ? QString::fromLatin1(names.machine) : QString();
}

QList<AuditOperations::Calls> AuditOperations::calls(const QString &identifier, const QString &machine)
{
    QList<Calls> found;
    const QList<Arch> arches = archesOf(machine);
    for (const Group &group : groups()) {
        if (group.identifier != identifier) {
            continue;
        }
        for (const Arch &arch : arches) {
            QByteArray names;
            const QList<QByteArray> all = group.names.split(',');
            for (const QByteArray &name : all) {
                if (hasCall(arch.table, name)) {
                    names += names.isEmpty() ? name : ',' + name;
                }
            }
            if (!names.isEmpty()) {
                found.append({arch.name, names, group.fields});
            }
        }
    }
    return found;
}

} // namespace AdminEventsHelper
