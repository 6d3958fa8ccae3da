// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QGenericPlugin>
#include <QPointer>
#include <QWidget>

/**
 * Watches a settings shell from inside, whatever page it opens, and tells when the page is there.
 *
 * The toolkit loads it into any program whose environment has QT_QPA_GENERIC_PLUGINS=startupprobe. To the
 * file descriptor that STARTUP_PROBE_FD names it writes lines of a word, nanoseconds of the monotonic clock,
 * and nanoseconds of processor time that the program has used:
 *
 * - "painted": the page is on the display for the first time, as yet without its content perhaps;
 * - "shown": the page is on the display, and every item view on it has rows;
 * - "settled": after that the program has come back to its outermost event loop, so the page takes input.
 */
class StartupProbe : public QObject
{
    Q_OBJECT

public:
    explicit StartupProbe(int descriptor);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void customEvent(QEvent *event) override;

private:
    void write(const char *word) const;
    void waitUntilSettled();

    const int m_descriptor;
    bool m_painted = false;
    bool m_shown = false;
};

/// Makes the probe.
class StartupProbePlugin : public QGenericPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "startupprobe.json")

public:
    QObject *create(const QString &name, const QString &specification) override;
};
