// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "tone.h"

#include <QDataStream>

#include <cmath>

namespace {
constexpr int rate = 8000;
}

QByteArray Tone::wav()
{
    QByteArray samples;
    QDataStream stream(&samples, QIODevice::WriteOnly);
    stream.setByteOrder(QDataStream::LittleEndian);
    for (int i = 0; i < rate; ++i) {
        stream << qint16(20000 * std::sin(i * 2 * M_PI * 440 / rate));
    }
    QByteArray file;
    QDataStream header(&file, QIODevice::WriteOnly);
    header.setByteOrder(QDataStream::LittleEndian);
    header.writeRawData("RIFF", 4);
    header << quint32(36 + samples.size());
    header.writeRawData("WAVEfmt ", 8);
    header << quint32(16) << quint16(1) << quint16(1) << quint32(rate) << quint32(rate * 2) << quint16(2)
           << quint16(16);
    header.writeRawData("data", 4);
    header << quint32(samples.size());
    return file + samples;
}
