// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "formerarchive.h"

#include <KLocalizedString>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {
bool rename(const QString &from, const QString &to)
{
    return std::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0;
}

/// An empty file of the permissions that another one has; false when there is one already.
bool makeLike(const QString &path, const QString &other)
{
    constexpr mode_t privateFile = 0600;
    const int descriptor
        = ::open(QFile::encodeName(path).constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, privateFile);
    if (descriptor < 0) {
        return false;
    }
    ::close(descriptor);
    return QFile::setPermissions(path, QFile::permissions(other));
}
} // namespace

FormerArchive::FormerArchive(const QString &path)
    : m_path(path)
{
}

FormerArchive::~FormerArchive()
{
    (void)putBack(); // there is nobody left to be told
}

QString FormerArchive::setAside()
{
    const QFileInfo present(m_path);
    if (!present.isFile() || present.size() == 0 || moveAside() || copyAside()) {
        return {};
    }
    return i18n("The present file %1 cannot be kept until the new one is written: %2.", m_path, m_problem);
}

bool FormerArchive::moveAside()
{
    QTemporaryFile place(m_path + QStringLiteral(".XXXXXX~"));
    if (!place.open() || !rename(m_path, place.fileName())) {
        return false;
    }
    place.setAutoRemove(false);
    if (!makeLike(m_path, place.fileName())) {
        m_problem = QString::fromLocal8Bit(std::strerror(errno));
        (void)rename(place.fileName(), m_path);
        return false;
    }
    m_aside = place.fileName();
    return true;
}

bool FormerArchive::copyAside()
{
    QFile present(m_path);
    QTemporaryFile place(QDir::temp().filePath(QFileInfo(m_path).fileName() + QStringLiteral(".XXXXXX~")));
    if (!present.open(QIODevice::ReadOnly)) {
        m_problem = present.errorString();
        return false;
    }
    const QByteArray bytes = present.readAll();
    if (present.error() != QFileDevice::NoError || !place.open() || place.write(bytes) != bytes.size()
        || !place.flush()) {
        m_problem = present.error() != QFileDevice::NoError ? present.errorString() : place.errorString();
        return false;
    }
    place.setAutoRemove(false);
    m_aside = place.fileName();
    m_isCopy = true;
    return true;
}

bool FormerArchive::copyBack()
{
    QFile copy(m_aside);
    QFile file(m_path);
    if (!copy.open(QIODevice::ReadOnly) || !file.open(QIODevice::WriteOnly)) {
        return false;
    }
    const QByteArray bytes = copy.readAll();
    return copy.error() == QFileDevice::NoError && file.write(bytes) == bytes.size() && file.flush()
        && QFile::remove(m_aside);
}

QString FormerArchive::putBack()
{
    if (m_aside.isEmpty()) {
        return {};
    }
    const QString aside = m_aside;
    const bool isBack = m_isCopy ? copyBack() : rename(m_aside, m_path);
    m_aside.clear();
    return isBack ? QString() : i18n("The former file is kept as %1.", aside);
}

void FormerArchive::drop()
{
    if (!m_aside.isEmpty()) {
        QFile::remove(m_aside);
        m_aside.clear();
    }
}
