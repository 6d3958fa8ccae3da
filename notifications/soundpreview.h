// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QString>
#include <QtPlugin>

#include <functional>
#include <memory>

/** Plays sounds to someone who chooses one. */
class SoundPreview
{
public:
    /// Told why a sound cannot be played, translated.
    using Listener = std::function<void(const QString &reason)>;

    SoundPreview() = default;
    virtual ~SoundPreview() = default;
    SoundPreview(const SoundPreview &) = delete;
    SoundPreview &operator=(const SoundPreview &) = delete;

    /**
     * A new one, from the plug-in that has the toolkit's multimedia library: loaded with the page, that
     * library and the sound libraries behind it would take a good part of the page's start, for a button that
     * few press.
     * @return null when the plug-in cannot be loaded; @p failed has been told
     */
    [[nodiscard]] static std::unique_ptr<SoundPreview> create(const Listener &failed);

    /// Whether there is a device that can be heard. Without one, playing goes on in silence.
    [[nodiscard]] virtual bool hasDevice() const = 0;
    /// The file has not been opened yet.
    [[nodiscard]] virtual bool isLoading() const = 0;
    /// Begins to play a file, in place of what is played.
    virtual void play(const QString &path) = 0;
    virtual void stop() = 0;
};

/** What the plug-in offers. */
class SoundPreviewMaker
{
public:
    SoundPreviewMaker() = default;
    virtual ~SoundPreviewMaker() = default;
    SoundPreviewMaker(const SoundPreviewMaker &) = delete;
    SoundPreviewMaker &operator=(const SoundPreviewMaker &) = delete;

    /// @param failed told of what fails later, as long as the preview lives
    [[nodiscard]] virtual std::unique_ptr<SoundPreview> make(const SoundPreview::Listener &failed) = 0;
};
Q_DECLARE_INTERFACE(SoundPreviewMaker, "org.nivra.adminevents.SoundPreviewMaker")
