// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "soundplayer.h"

#include <KLocalizedString>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QVector>

#include <canberra.h>

namespace NivraWatcher {

namespace {

QString pathOf(QString file)
{
    const QString scheme = QStringLiteral("file://");
    if (file.startsWith(scheme)) {
        file.remove(0, scheme.size());
    }
    return QDir::isAbsolutePath(file)
        ? file
        : QStandardPaths::locate(QStandardPaths::GenericDataLocation, QLatin1String("sounds/") + file);
}

} // namespace

SoundPlayer::SoundPlayer()
{
    if (ca_context_create(&m_context) != CA_SUCCESS) {
        m_context = nullptr;
        return;
    }
    ca_context_change_props(m_context, CA_PROP_APPLICATION_NAME, "nivra-event-watcher", nullptr);
}

SoundPlayer::~SoundPlayer()
{
    // Never destroyed: the library would unload its driver while the thread that has played is still on its
    // way out.
    static auto *const left = new QVector<ca_context *>;
    left->append(m_context);
}

QString SoundPlayer::play(const QString &file)
{
    const QString path = pathOf(file);
    if (path.isEmpty() || !QFileInfo(path).isFile()) {
        return i18n("The sound file \"%1\" does not exist.", file);
    }
    const int result = m_context == nullptr
        ? CA_ERROR_NODRIVER
        : ca_context_play(m_context, 0, CA_PROP_MEDIA_FILENAME, QFile::encodeName(path).constData(), nullptr);
    if (result == CA_ERROR_NOTFOUND) {
        // Not the file, which is there.
        return i18n(
            "The sound file \"%1\" cannot be played: this computer has no sound device, or no access to it.",
            file);
    }
    return result == CA_SUCCESS
        ? QString()
        : i18n("The sound file \"%1\" cannot be played: %2", file, QString::fromUtf8(ca_strerror(result)));
}

} // namespace NivraWatcher
