// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QString>

struct ca_context;

namespace NivraWatcher {

/** Plays sound files through the desktop's sound service. */
class SoundPlayer
{
public:
    SoundPlayer();
    ~SoundPlayer();
    SoundPlayer(const SoundPlayer &) = delete;
    SoundPlayer &operator=(const SoundPlayer &) = delete;

    /**
     * Starts to play a file and does not wait for its end.
     * @param file a path, with or without "file://", or the name of a file in one of the desktop's
     * directories for sounds.
     * @return empty, or what went wrong.
     */
    [[nodiscard]] QString play(const QString &file);

private:
    ca_context *m_context = nullptr;
};

} // namespace NivraWatcher
