// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

namespace NivraRecorder {

/** The socket on which the logging service takes records of events. */
class RecordSocket
{
public:
    /** @param path of the datagram socket, which need not exist yet. */
    explicit RecordSocket(const QString &path);
    ~RecordSocket();
    RecordSocket(const RecordSocket &) = delete;
    RecordSocket &operator=(const RecordSocket &) = delete;

    /** Hands over a record, as a notice of the facility "user". It is lost when the service does not run. */
    bool send(const QByteArray &record);

private:
    QByteArray m_path;
    int m_socket;
    bool m_complained = false;
};

} // namespace NivraRecorder
