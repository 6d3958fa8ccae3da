// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "startupprobe.h"

#include <QAbstractItemView>
#include <QCoreApplication>
#include <QEvent>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <array>
#include <climits>
#include <cstdio>
#include <ctime>
#include <unistd.h>

namespace {
/// Reports that what was just painted has reached the display.
class Reached : public QEvent
{
public:
    explicit Reached(bool content)
        : QEvent(User)
        , withContent(content)
    {
    }

    const bool withContent;
};

const QWidget *pageOf(const QWidget *widget)
{
    while (widget && !widget->inherits("KCModule")) {
        widget = widget->parentWidget();
    }
    return widget;
}

/// The page is as the user is to see it: no view on it is empty.
bool hasContent(const QWidget &page)
{
    const QList<QAbstractItemView *> views = page.findChildren<QAbstractItemView *>();
    return std::none_of(views.begin(), views.end(), [](const QAbstractItemView *view) {
        return view->isVisible() && (!view->model() || view->model()->rowCount() == 0);
    });
}
} // namespace

StartupProbe::StartupProbe(int descriptor)
    : m_descriptor(descriptor)
{
    qApp->installEventFilter(this);
}

bool StartupProbe::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Paint && watched->isWidgetType()) {
        const QWidget *page = pageOf(static_cast<QWidget *>(watched));
        if (page) {
            const bool content = hasContent(*page);
            if (!m_painted || content) {
                // Delivered next of all events, after everything is painted and handed to the display.
                QCoreApplication::postEvent(this, new Reached(content), INT_MAX);
            }
        }
    }
    return false;
}

void StartupProbe::customEvent(QEvent *event)
{
    if (!m_painted) {
        m_painted = true;
        write("painted");
    }
    if (!m_shown && static_cast<Reached *>(event)->withContent) {
        m_shown = true;
        qApp->removeEventFilter(this);
        write("shown");
        waitUntilSettled();
    }
}

void StartupProbe::waitUntilSettled()
{
    auto *timer = new QTimer(this);
    connect(timer, &QTimer::timeout, this, [this, timer] {
        if (thread()->loopLevel() <= 1) {
            write("settled");
            timer->stop();
        }
    });
    timer->start(1);
}

void StartupProbe::write(const char *word) const
{
    const auto nanoseconds = [](clockid_t clock) {
        timespec now{};
        clock_gettime(clock, &now);
        return static_cast<long long>(now.tv_sec) * 1000000000LL + now.tv_nsec;
    };
    std::array<char, 80> line{};
    const int length = std::snprintf(line.data(), line.size(), "%s %lld %lld\n", word,
                                     nanoseconds(CLOCK_MONOTONIC), nanoseconds(CLOCK_PROCESS_CPUTIME_ID));
    (void)!::write(m_descriptor, line.data(), static_cast<std::size_t>(length));
}

QObject *StartupProbePlugin::create(const QString &name, const QString &specification)
{
    Q_UNUSED(specification)
    bool ok = false;
    const int descriptor = qEnvironmentVariableIntValue("STARTUP_PROBE_FD", &ok);
    return ok && name == QLatin1String("startupprobe") ? new StartupProbe(descriptor) : nullptr;
}
