// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "notificationpage.h"

#include <QJsonDocument>
#include <QLineEdit>
#include <QTest>

void NotificationPage::start()
{
    const QString problem = m_machine.start();
    QVERIFY2(problem.isEmpty(), qPrintable(problem));
}

void NotificationPage::prepare()
{
    m_machine.reset();
    QVERIFY(m_machine.bus->setAllowed(true));
    for (const char *id : {"user-login", "user_login", "log_in-failed", "plainword", "twin"}) {
        addEvent(QStringLiteral("event ") + QLatin1String(id),
                 QLatin1String(id) == QLatin1String("twin") ? QStringLiteral("log-in_failed")
                                                            : QString(QLatin1String(id)));
    }
    m_machine.write(
        m_machine.root() + QStringLiteral("/usr/share/knotifications5/nivra-event-watcher_circle.notifyrc"),
        "[Event/userLogin]\nAction=Popup|Sound\nSound=/system.ogg\n[Event/logInFailed]\nAction=Popup\n"
        "[Event/plainword]\nAction=Popup\n");
}

void NotificationPage::addEvent(const QString &id, const QString &messageId, const QJsonObject &more)
{
    QJsonObject event = more;
    event.insert(QStringLiteral("event-group"), QStringLiteral("first"));
    event.insert(QStringLiteral("enabled"), QStringLiteral("1"));
    if (!event.contains(QStringLiteral("message-type"))) {
        event.insert(QStringLiteral("message-type"), QStringLiteral("auth"));
    }
    event.insert(QStringLiteral("message-params"),
                 QJsonObject{{QStringLiteral("message_id"), messageId},
                             {QStringLiteral("name_en"), id},
                             {QStringLiteral("name_ru"), id}});
    event.insert(QStringLiteral("extend-message-params"),
                 QJsonObject{{QStringLiteral("user"), QStringLiteral("${U}")},
                             {QStringLiteral("terminal"), QStringLiteral("${T}")}});
    m_machine.write(QStringLiteral("%1/first/%2.json").arg(m_machine.catalogPath(), id),
                    QJsonDocument(event).toJson());
}

QString NotificationPage::fragment(const QString &name) const
{
    return m_machine.root() + QStringLiteral("/etc/syslog-ng/conf.d/mod-nivra-") + name
        + QStringLiteral(".conf");
}

QString NotificationPage::ownFile() const
{
    return m_machine.root() + QStringLiteral("/root/.config/nivra-event-watcher_circle.notifyrc");
}

void NotificationPage::setUp(AdminEventsModule &page, const QString &id, const QString &title)
{
    page.switchDbus(eventOf(page, id), true);
    QVERIFY(dialog(page)->isVisible());
    field<QLineEdit>(page, "titleLineEdit")->setText(title);
    clickOk(page);
    QVERIFY(!dialog(page)->isVisible());
}

void NotificationPage::retitle(AdminEventsModule &page, const QString &id, const QString &title)
{
    page.notificationSettings(eventOf(page, id));
    auto *edit = field<QLineEdit>(page, "titleLineEdit");
    edit->setFocus();
    edit->selectAll();
    QTest::keyClicks(edit, title);
    clickOk(page);
}
