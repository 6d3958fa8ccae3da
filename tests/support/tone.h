// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QByteArray>

namespace Tone {

/** One second of a tone, as a WAV file. */
QByteArray wav();

} // namespace Tone
