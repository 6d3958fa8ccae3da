// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "pagefixture.h"

#include <checkabletreemodel.h>
#include <dbusdialog.h>
#include <eventtreeitem.h>

#include <QDialogButtonBox>
#include <QJsonObject>
#include <QPushButton>

/// A machine whose catalog has events that can have notifications, and ways to their dialog.
class NotificationPage
{
public:
    /// Starts the machine; once a test program.
    void start();
    /// Makes it as it was, before each test.
    void prepare();

    void addEvent(const QString &id, const QString &messageId, const QJsonObject &more = {});
    [[nodiscard]] QString fragment(const QString &name) const;
    [[nodiscard]] QString ownFile() const;
    [[nodiscard]] static DBusDialog *dialog(const AdminEventsModule &page)
    {
        return page.findChild<DBusDialog *>(QStringLiteral("DBusDialog"));
    }
    template <typename Widget> static Widget *field(const AdminEventsModule &page, const char *name)
    {
        return dialog(page)->findChild<Widget *>(QLatin1String(name));
    }
    static void clickOk(const AdminEventsModule &page)
    {
        field<QDialogButtonBox>(page, "buttonBox")->button(QDialogButtonBox::Ok)->click();
    }
    [[nodiscard]] static EventTreeItem *eventOf(const AdminEventsModule &page, const QString &id)
    {
        return PageFixture::node(page.workingModel(), id);
    }
    /// Switches the notifications of an event on and gives them a title.
    void setUp(AdminEventsModule &page, const QString &id, const QString &title);
    /// Opens the settings of an event whose notifications are on, types another title and accepts.
    static void retitle(AdminEventsModule &page, const QString &id, const QString &title);

    PageFixture m_machine;
};
