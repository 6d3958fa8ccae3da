// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "notifyrcfile.h"

#include <KLocalizedString>

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>

NotifyrcFile::NotifyrcFile(const QString &path)
    : m_path(path)
    , m_file(readRegularFile(path))
{
}

QString NotifyrcFile::readProblem() const
{
    return m_file.state == RegularFile::Failed
        ? i18n("The notification settings in %1 cannot be read: %2.", m_path, m_file.reason)
        : QString();
}

NotifyrcGroup NotifyrcFile::group(const QString &key) const
{
    return NotifyrcText::readGroup(m_file.bytes, key);
}

QString NotifyrcFile::replaceGroup(const QString &key, const QStringList &content) const
{
    if (m_file.state == RegularFile::Failed) {
        return readProblem();
    }
    const QByteArray text = NotifyrcText::withGroup(m_file.bytes, key, content);
    if (m_file.state == RegularFile::Read && text == m_file.bytes) {
        return {};
    }
    QDir().mkpath(QFileInfo(m_path).path());
    QSaveFile file(m_path);
    bool written = file.open(QIODevice::WriteOnly);
    if (written && m_file.state == RegularFile::Absent) {
        // Like every settings file that the desktop makes.
        written = file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    }
    written = written && file.write(text) == text.size() && file.commit();
    return written
        ? QString()
        : i18n("The notification settings in %1 cannot be written: %2.", m_path, file.errorString());
}
