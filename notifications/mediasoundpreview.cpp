// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "mediasoundpreview.h"

#include <QAudioDeviceInfo>
#include <QUrl>

#include <algorithm>
#include <utility>

MediaSoundPreview::MediaSoundPreview(Listener failed)
{
    QObject::connect(&m_player, qOverload<QMediaPlayer::Error>(&QMediaPlayer::error), &m_player,
                     [this, failed = std::move(failed)] { failed(m_player.errorString()); });
}

bool MediaSoundPreview::hasDevice() const
{
    const QList<QAudioDeviceInfo> devices = QAudioDeviceInfo::availableDevices(QAudio::AudioOutput);
    return std::any_of(devices.begin(), devices.end(), [](const QAudioDeviceInfo &device) {
        const QString name = device.deviceName();
        // Sound systems name placeholders as well; a card of the kernel's is known by its name.
        return device.realm() == QLatin1String("alsa")
            ? name.contains(QLatin1String("CARD="))
            : !name.isEmpty() && name != QLatin1String("auto_null") && name != QLatin1String("default");
    });
}

bool MediaSoundPreview::isLoading() const
{
    return m_player.mediaStatus() == QMediaPlayer::LoadingMedia;
}

void MediaSoundPreview::play(const QString &path)
{
    m_player.setMedia(QUrl::fromLocalFile(path));
    m_player.play();
}

void MediaSoundPreview::stop()
{
    m_player.stop();
}

std::unique_ptr<SoundPreview> MediaSoundPreviewMaker::make(const SoundPreview::Listener &failed)
{
    return std::make_unique<MediaSoundPreview>(failed);
}
