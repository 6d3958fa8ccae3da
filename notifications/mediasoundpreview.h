// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "soundpreview.h"

#include <QMediaPlayer>

/** Plays through the toolkit's multimedia library. */
class MediaSoundPreview : public SoundPreview
{
public:
    explicit MediaSoundPreview(Listener failed);

    [[nodiscard]] bool hasDevice() const override;
    [[nodiscard]] bool isLoading() const override;
    void play(const QString &path) override;
    void stop() override;

private:
    QMediaPlayer m_player;
};

/** The plug-in. */
class MediaSoundPreviewMaker : public QObject, public SoundPreviewMaker
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.nivra.adminevents.SoundPreviewMaker")
    Q_INTERFACES(SoundPreviewMaker)

public:
    [[nodiscard]] std::unique_ptr<SoundPreview> make(const SoundPreview::Listener &failed) override;
};
