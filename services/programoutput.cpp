// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "programoutput.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QVector>

#include <array>
#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern "C" {
#include <sys/pidfd.h> // glibc 2.36 forgets to say so itself
}

namespace {
constexpr std::size_t pieceSize = 65536; // what a pipe holds

/// What a child must not inherit: a blocked signal, and that the toolkit ignores broken pipes.
class SpawnAttributes
{
public:
    SpawnAttributes()
    {
        posix_spawnattr_init(&m_attributes);
        sigset_t signalSet;
        sigemptyset(&signalSet);
        posix_spawnattr_setsigmask(&m_attributes, &signalSet);
        sigaddset(&signalSet, SIGPIPE);
        posix_spawnattr_setsigdefault(&m_attributes, &signalSet);
        posix_spawnattr_setflags(&m_attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    }
    ~SpawnAttributes() { posix_spawnattr_destroy(&m_attributes); }
    SpawnAttributes(const SpawnAttributes &) = delete;
    SpawnAttributes &operator=(const SpawnAttributes &) = delete;

    [[nodiscard]] const posix_spawnattr_t *get() const { return &m_attributes; }

private:
    posix_spawnattr_t m_attributes{};
};

class SpawnFiles
{
public:
    explicit SpawnFiles(int output)
    {
        posix_spawn_file_actions_init(&m_actions);
        posix_spawn_file_actions_addopen(&m_actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        posix_spawn_file_actions_adddup2(&m_actions, output, STDOUT_FILENO);
    }
    ~SpawnFiles() { posix_spawn_file_actions_destroy(&m_actions); }
    SpawnFiles(const SpawnFiles &) = delete;
    SpawnFiles &operator=(const SpawnFiles &) = delete;

    [[nodiscard]] const posix_spawn_file_actions_t *get() const { return &m_actions; }

private:
    posix_spawn_file_actions_t m_actions{};
};
} // namespace

ProgramOutput::ProgramOutput(const QString &program, const QStringList &arguments)
{
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        return;
    }
    m_output = ends[0];
    fcntl(m_output, F_SETFL, O_NONBLOCK);

    QVector<QByteArray> words{QFile::encodeName(program)};
    for (const QString &argument : arguments) {
        words.append(argument.toLocal8Bit());
    }
    QVector<char *> pointers;
    for (QByteArray &word : words) {
        pointers.append(word.data());
    }
    pointers.append(nullptr);
    const SpawnFiles files(ends[1]);
    const SpawnAttributes attributes;
    if (posix_spawnp(&m_process, words.first().constData(), files.get(), attributes.get(), pointers.data(),
                     environ)
        != 0) {
        m_process = -1;
        closeOutput();
    }
    close(ends[1]);
}

ProgramOutput::~ProgramOutput()
{
    (void)wait(0);
}

void ProgramOutput::closeOutput()
{
    close(m_output);
    m_output = -1;
}

void ProgramOutput::read()
{
    std::array<char, pieceSize> piece{};
    while (m_output >= 0) {
        const ssize_t size = ::read(m_output, piece.data(), piece.size());
        if (size > 0) {
            m_text.append(piece.data(), static_cast<int>(size));
        } else if (size == 0 || (errno != EAGAIN && errno != EINTR)) {
            closeOutput();
        } else if (errno == EAGAIN) {
            return;
        }
    }
}

std::optional<QByteArray> ProgramOutput::wait(int limit)
{
    if (m_process < 0) {
        return {};
    }
    const QDeadlineTimer deadline(limit);
    int process = pidfd_open(m_process, 0); // absent, the end of the output has to do
    bool inTime = true;
    while (inTime && (m_output >= 0 || process >= 0)) {
        std::array<pollfd, 2> events{{{m_output, POLLIN, 0}, {process, POLLIN, 0}}};
        inTime = poll(events.data(), events.size(), static_cast<int>(deadline.remainingTime())) != 0;
        read();
        if (events[1].revents != 0) {
            break; // what a child of its own may still write is not waited for
        }
    }
    if (process >= 0) {
        close(process);
    }
    if (!inTime) {
        kill(m_process, SIGKILL);
    }
    if (m_output >= 0) {
        closeOutput();
    }
    int status = 0;
    const pid_t reaped = waitpid(m_process, &status, 0);
    m_process = -1;
    if (!inTime || reaped < 0 || !WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        return {};
    }
    return m_text;
}
