// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "recordsocket.h"

#include <QFile>

#include <cerrno>
#include <cstring>
#include <sys/socket.h>
#include <sys/time.h>
#include <sys/un.h>
#include <unistd.h>

namespace NivraRecorder {

RecordSocket::RecordSocket(const QString &path)
    : m_path(QFile::encodeName(path))
    , m_socket(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0))
{
    // The audit daemon must not wait for a logging service that hangs.
    const timeval limit{1, 0};
    ::setsockopt(m_socket, SOL_SOCKET, SO_SNDTIMEO, &limit, sizeof(limit));
}

RecordSocket::~RecordSocket()
{
    ::close(m_socket);
}

bool RecordSocket::send(const QByteArray &record)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (static_cast<size_t>(m_path.size()) >= sizeof(address.sun_path)) {
        qWarning("the path of the socket is too long: %s", m_path.constData());
        return false;
    }
    std::memcpy(address.sun_path, m_path.constData(), static_cast<size_t>(m_path.size()));
    const QByteArray message = "<13>" + record;
    const ssize_t sent
        = ::sendto(m_socket, message.constData(), static_cast<size_t>(message.size()), MSG_NOSIGNAL,
                   reinterpret_cast<const sockaddr *>(&address), sizeof(address));
    if (sent == message.size()) {
        m_complained = false;
        return true;
    }
    if (!m_complained) {
        qWarning("the logging service takes no records at %s: %s", m_path.constData(), std::strerror(errno));
        m_complained = true;
    }
    return false;
}

} // namespace NivraRecorder
