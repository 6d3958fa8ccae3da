// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "auditassembler.h"
#include "eventmatcher.h"
#include "messagematcher.h"
#include "recordsocket.h"
#include "systemmessage.h"

#include <QCoreApplication>
#include <QSocketNotifier>
#include <QTimer>

#include <array>

#include <csignal>
#include <sys/signalfd.h>
#include <unistd.h>

using namespace NivraRecorder;

namespace {

constexpr int chunk = 64 * 1024;
// No line of the daemon is longer.
constexpr int lineLimit = 256 * 1024;

/** Reads lines of the audit daemon or of the journal, and hands over the records of the events that they are.
 */
class Recorder
{
public:
    /** @param readsJournal the lines are those of "journalctl --output=json", not the audit daemon's. */
    Recorder(const QString &root, bool readsJournal)
        : m_readsJournal(readsJournal)
        , m_matcher(root + QStringLiteral("/etc/nivra-syslog.conf"))
        , m_messageMatcher(root + QStringLiteral("/etc/nivra-syslog.conf"))
        , m_socket(root + QStringLiteral("/run/syslog-ng/nivra-events"))
    {
    }

    /** Takes what there is on standard input; false at its end. */
    bool read()
    {
        std::array<char, chunk> bytes;
        const ssize_t count = ::read(STDIN_FILENO, bytes.data(), bytes.size());
        if (count <= 0) {
            return false;
        }
        m_buffer.append(bytes.data(), int(count));
        int begin = 0;
        for (int end = m_buffer.indexOf('\n'); end >= 0; end = m_buffer.indexOf('\n', begin)) {
            take(m_buffer.mid(begin, end - begin));
            begin = end + 1;
        }
        m_buffer.remove(0, begin);
        if (m_buffer.size() > lineLimit) {
            m_buffer.clear();
        }
        return true;
    }

    void catchUp() { record(m_assembler.takeOverdue()); }

    /** Nothing more will come. */
    void finish() { record(m_assembler.takeAll()); }

private:
    void take(const QByteArray &line)
    {
        if (!m_readsJournal) {
            record(m_assembler.add(line));
        } else if (const std::optional<SystemMessage> message = SystemMessage::parse(line)) {
            send(m_messageMatcher.records(*message));
        }
    }

    void send(const QList<QByteArray> &records)
    {
        for (const QByteArray &record : records) {
            m_socket.send(record);
        }
    }

    void record(const QList<AuditEvent> &events)
    {
        for (const AuditEvent &event : events) {
            // What the logging service itself opens would make it log without end.
            if (event.fields.value(QStringLiteral("exe")) == QLatin1String("/usr/sbin/syslog-ng")
                && event.fields.value(QStringLiteral("key")).startsWith(QLatin1String("nivra-subject-"))) {
                continue;
            }
            send(m_matcher.records(event));
        }
    }

    bool m_readsJournal;
    AuditAssembler m_assembler;
    EventMatcher m_matcher;
    MessageMatcher m_messageMatcher;
    RecordSocket m_socket;
    QByteArray m_buffer;
};

/**
 * The audit daemon passes two signals on (auditd-plugins(5)): SIGHUP to read settings again, which happens by
 * itself, and SIGTERM to end.
 * @return a descriptor that tells of them (signalfd(2)).
 */
int openSignals()
{
    sigset_t signals;
    ::sigemptyset(&signals);
    ::sigaddset(&signals, SIGHUP);
    ::sigaddset(&signals, SIGTERM);
    ::sigprocmask(SIG_BLOCK, &signals, nullptr);
    return ::signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK);
}

/** Takes one signal; whether it asks to end. */
bool asksToEnd(int signals)
{
    signalfd_siginfo signal = {};
    return ::read(signals, &signal, sizeof(signal)) == sizeof(signal) && signal.ssi_signo == SIGTERM;
}

} // namespace

int main(int argc, char **argv)
{
    const int signalDescriptor = openSignals();
    QCoreApplication application(argc, argv);
    const bool readsJournal = QCoreApplication::arguments().contains(QStringLiteral("--journal"));
    // The catalog library follows the same variable.
    Recorder recorder(qEnvironmentVariable("ADMINEVENTS_ROOT"), readsJournal);
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &application, [&] {
        if (!recorder.read()) {
            QCoreApplication::quit();
        }
    });
    QSocketNotifier signals(signalDescriptor, QSocketNotifier::Read);
    QObject::connect(&signals, &QSocketNotifier::activated, &application, [signalDescriptor] {
        if (asksToEnd(signalDescriptor)) {
            QCoreApplication::quit();
        }
    });
    QTimer overdue;
    QObject::connect(&overdue, &QTimer::timeout, &application, [&] { recorder.catchUp(); });
    overdue.start(500);
    const int code = QCoreApplication::exec();
    recorder.finish();
    return code;
}
