// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QByteArray>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

/// Receives records on a free port of the loopback interface.
class LoopbackListener
{
public:
    /// @param type SOCK_STREAM or SOCK_DGRAM
    explicit LoopbackListener(int type)
        : m_isStream(type == SOCK_STREAM)
        , m_socket(::socket(AF_INET, type | SOCK_CLOEXEC, 0))
    {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        auto *any = reinterpret_cast<sockaddr *>(&address);
        socklen_t size = sizeof(address);
        if (::bind(m_socket, any, size) == 0 && (!m_isStream || ::listen(m_socket, 4) == 0)
            && ::getsockname(m_socket, any, &size) == 0) {
            m_port = ntohs(address.sin_port);
        }
    }
    ~LoopbackListener()
    {
        ::close(m_socket);
        if (m_connection >= 0) {
            ::close(m_connection);
        }
    }
    LoopbackListener(const LoopbackListener &) = delete;
    LoopbackListener &operator=(const LoopbackListener &) = delete;

    /// 0 when the machine has no loopback interface.
    [[nodiscard]] int port() const { return m_port; }

    /// Whether @p text arrives within ten seconds.
    [[nodiscard]] bool receives(const QByteArray &text)
    {
        while (!m_received.contains(text)) {
            if (m_isStream && m_connection < 0) {
                if (!waitFor(m_socket)) {
                    return false;
                }
                m_connection = ::accept4(m_socket, nullptr, nullptr, SOCK_CLOEXEC);
            }
            const int from = m_isStream ? m_connection : m_socket;
            char buffer[65536];
            const ssize_t size = waitFor(from) ? ::recv(from, buffer, sizeof(buffer), 0) : -1;
            if (size <= 0) {
                return false;
            }
            m_received.append(buffer, static_cast<int>(size));
        }
        return true;
    }
    [[nodiscard]] const QByteArray &received() const { return m_received; }

private:
    static bool waitFor(int socket)
    {
        pollfd waiting{socket, POLLIN, 0};
        return ::poll(&waiting, 1, 10000) == 1;
    }

    bool m_isStream;
    int m_socket;
    int m_connection = -1;
    int m_port = 0;
    QByteArray m_received;
};
