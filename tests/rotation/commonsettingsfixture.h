// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <commonsettingswindow.h>
#include <configaccessservice.h>
#include <leashedprocess.h>
#include <privatebus.h>

#include <QFile>
#include <QLineEdit>
#include <QObject>

#include <memory>

/// The window of the common settings over a helper that only notes what it is asked for.
class CommonSettingsFixture : public QObject
{
    Q_OBJECT

protected:
    static void write(const QString &path, const QByteArray &content);
    [[nodiscard]] static QByteArray read(const QString &path);
    /// What the helper was asked for, without the paths of this run.
    [[nodiscard]] QString asked() const;
    [[nodiscard]] QString archive(const char *name) const
    {
        return m_bus.root() + QLatin1Char('/') + QLatin1String(name);
    }

    template <typename Widget> Widget *find(const char *name) const
    {
        auto *widget = m_window->findChild<Widget *>(QLatin1String(name));
        if (!widget) {
            qFatal("no %s", name);
        }
        return widget;
    }
    /// Opens the window with that tab.
    void show(const char *tab) const;
    [[nodiscard]] QLineEdit *fileLine(const char *page) const;
    void clickOk() const;
    void editRotation(int number) const;

    PrivateBus m_bus;
    std::unique_ptr<LeashedProcess> m_helper;
    std::unique_ptr<ConfigAccessService> m_service;
    std::unique_ptr<CommonSettingsWindow> m_window;

protected Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
};
