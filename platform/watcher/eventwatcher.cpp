// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "eventwatcher.h"

#include "commandlauncher.h"
#include "logfile.h"
#include "messagetext.h"

#include <KLocalizedString>

#include <QCoreApplication>
#include <QDBusError>

#include <unistd.h>

namespace NivraWatcher {

namespace {

// A value may be as long as a record; nobody reads that in a notification.
constexpr int valueLimit = 4096;
// One kind of event must not bury the desktop or the machine: so many within ten seconds.
constexpr int floodLimit = 10;
constexpr qint64 floodSpanMs = 10000;
// Writing a line may itself be an event of which there is to be a line.
constexpr int logFloodLimit = 200;
// Nobody can acknowledge what only sounds.
constexpr int unseenRepeats = 10;
// What has been switched off goes that soon, however long its interval.
constexpr int lookoutMs = 5000;

QString service()
{
    return QStringLiteral("org.nivra.EventLog");
}

void report(const QString &error)
{
    if (!error.isEmpty()) {
        qWarning("%s", qPrintable(error));
    }
}

} // namespace

class EventWatcher::Repetition : public QTimer
{
public:
    using QTimer::QTimer;

    Event event;
    Presentation presentation;
    int left = 0; ///< how often it still sounds, when nothing is shown
};

EventWatcher::EventWatcher(const QString &settingsFile, QObject *parent)
    : QObject(parent)
    , m_repetition(settingsFile)
    , m_popupGuard(floodLimit, floodSpanMs)
    , m_commandGuard(floodLimit, floodSpanMs)
    , m_logGuard(logFloodLimit, floodSpanMs)
{
    connect(&m_popups, &Popups::acknowledged, this, &EventWatcher::endRepetition);
    m_lookout.setInterval(lookoutMs);
    connect(&m_lookout, &QTimer::timeout, this, [this] { followSettings(); });
}

EventWatcher::~EventWatcher() = default;

QString EventWatcher::start(QDBusConnection system, QDBusConnection session)
{
    if (!session.isConnected()) {
        return i18n("The session's message bus cannot be reached: %1", session.lastError().message());
    }
    if (!system.isConnected()) {
        return i18n("The system's message bus cannot be reached: %1", system.lastError().message());
    }
    // Only signals of the name's owner come through, and the bus lets nobody but the system own it.
    if (!system.connect(service(), QStringLiteral("/org/nivra/EventLog"), service(), QStringLiteral("Event"),
                        this, SLOT(receive(QString, QString, QString, QString, QStringList, QStringList)))) {
        return i18n("The system's message bus refuses: %1", system.lastError().message());
    }
    session.connect(QString(), QStringLiteral("/Config"), QStringLiteral("org.kde.knotification"),
                    QStringLiteral("reparseConfiguration"), this, SLOT(reparse(QString)));
    const QString name = QStringLiteral("org.nivra.EventWatcher.u%1_p%2")
                             .arg(::getuid())
                             .arg(QCoreApplication::applicationPid());
    if (!system.registerService(name)) {
        return i18n("The system's message bus refuses the name \"%1\": %2", name,
                    system.lastError().message());
    }
    return {};
}

void EventWatcher::reparse(const QString &component)
{
    if (component.isEmpty() || component.startsWith(QLatin1String("nivra-event-watcher"))) {
        m_settings.reparse();
        followSettings();
    }
}

void EventWatcher::receive(const QString &key, const QString &title, const QString &icon,
                           const QString &format, const QStringList &names, const QStringList &values)
{
    Event event{key, title, icon, QString(), {}, QDateTime::currentDateTime()};
    QStringList shortened;
    for (int i = 0; i < values.size(); ++i) {
        shortened << MessageText::cut(values.at(i), valueLimit);
        if (i < names.size()) {
            event.values.append({names.at(i), shortened.last()});
        }
    }
    event.text = MessageText::compose(format, shortened);
    present(event);
}

void EventWatcher::present(const Event &received)
{
    const std::optional<Presentation> presentation = m_settings.find(received.key);
    if (!presentation) {
        report(i18n("The event \"%1\" has no notification settings.", received.key));
        return;
    }
    Event event = received;
    if (event.title.isEmpty()) {
        event.title = presentation->name;
    }
    if (presentation->log && m_logGuard.allows(event.key)) {
        report(LogFile::append(presentation->logFile, event));
    }
    if (presentation->execute && m_commandGuard.allows(event.key)) {
        report(CommandLauncher::start(presentation->command, event));
    }
    const int seconds = m_repetition.interval(event.key);
    if (seconds > 0 && (presentation->popup || presentation->sound)) {
        beginRepetition(event, *presentation, seconds);
    } else if (m_popupGuard.allows(event.key)) {
        if (presentation->popup) {
            m_popups.show(event);
        }
        play(*presentation);
    }
}

void EventWatcher::beginRepetition(const Event &event, const Presentation &presentation, int seconds)
{
    Repetition *repetition = m_repetitions.value(event.key);
    const bool isNew = repetition == nullptr;
    if (isNew) {
        repetition = new Repetition(this);
        m_repetitions.insert(event.key, repetition);
        connect(repetition, &QTimer::timeout, this, [this, key = event.key] { repeat(key); });
        m_lookout.start();
    }
    repetition->event = event;
    repetition->presentation = presentation;
    repetition->left = unseenRepeats + 1;
    // In a flood the next repetition shows the last event of it.
    if (m_popupGuard.allows(event.key) || isNew) {
        repetition->start(seconds * 1000);
        repeat(event.key);
    }
}

void EventWatcher::repeat(const QString &key)
{
    if (!followSettings(key)) {
        return;
    }
    Repetition *repetition = m_repetitions.value(key);
    repetition->setInterval(m_repetition.interval(key) * 1000);
    play(repetition->presentation);
    if (repetition->presentation.popup) {
        m_popups.showAgain(repetition->event);
    } else if (--repetition->left <= 0) {
        endRepetition(key);
    }
}

// The administrator or the user may have changed his mind since the event.
bool EventWatcher::followSettings(const QString &key)
{
    Repetition *repetition = m_repetitions.value(key);
    const std::optional<Presentation> presentation = m_settings.find(key);
    const bool goesOn = repetition != nullptr && m_repetition.interval(key) > 0 && presentation
        && (presentation->popup || presentation->sound);
    if (!goesOn || !presentation->popup) {
        m_popups.takeDown(key);
    }
    if (goesOn) {
        repetition->presentation = *presentation;
    } else {
        endRepetition(key);
    }
    return goesOn;
}

void EventWatcher::followSettings()
{
    const QStringList keys = m_repetitions.keys();
    for (const QString &key : keys) {
        followSettings(key);
    }
}

void EventWatcher::endRepetition(const QString &key)
{
    if (Repetition *repetition = m_repetitions.take(key)) {
        repetition->stop();
        // It may be in its own signal.
        repetition->deleteLater();
    }
    if (m_repetitions.isEmpty()) {
        m_lookout.stop();
    }
}

void EventWatcher::play(const Presentation &presentation)
{
    if (presentation.sound) {
        report(m_player.play(presentation.soundFile));
    }
}

} // namespace NivraWatcher
