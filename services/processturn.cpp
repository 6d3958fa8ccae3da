// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "processturn.h"

#include <QCryptographicHash>
#include <QFileInfo>
#include <QLockFile>

ProcessTurn::ProcessTurn() = default;
ProcessTurn::~ProcessTurn() = default;

bool ProcessTurn::take()
{
    if (m_lock) {
        return true;
    }
    const QString path = lockPath();
    if (path.isEmpty()) {
        return true;
    }
    auto lock = std::make_unique<QLockFile>(path);
    // A question for a password may stand open for long; a program that has ended is noticed all the same.
    lock->setStaleLockTime(0);
    if (lock->tryLock(0)) {
        m_lock = std::move(lock);
        return true;
    }
    return lock->error() != QLockFile::LockFailedError;
}

void ProcessTurn::release()
{
    m_lock.reset();
}

QString ProcessTurn::lockPath()
{
    const QString directory = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (directory.isEmpty() || !QFileInfo(directory).isDir()) {
        return {};
    }
    // Another bus has another helper.
    const QByteArray bus
        = QCryptographicHash::hash(qgetenv("DBUS_SYSTEM_BUS_ADDRESS"), QCryptographicHash::Sha1).toHex();
    return directory + QLatin1String("/adminevents-actions-") + QString::fromLatin1(bus)
        + QLatin1String(".lock");
}
