// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "pagefixture.h"

#include <checkabletreemodel.h>
#include <eventlookup.h>
#include <eventtreeitem.h>

#include <QAbstractProxyModel>
#include <QDialog>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QTreeView>

namespace {
QJsonObject switchedEvent(const QString &group, const QString &id, const QString &enabled)
{
    return {{QStringLiteral("event-group"), group},
            {QStringLiteral("enabled"), enabled},
            {QStringLiteral("message-type"), QStringLiteral("auth")},
            {QStringLiteral("message-params"),
             QJsonObject{{QStringLiteral("message_id"), QString(id + QStringLiteral("_msg"))},
                         {QStringLiteral("name_en"), QString(QStringLiteral("Event ") + id)},
                         {QStringLiteral("name_ru"), QString(QStringLiteral("Событие ") + id)}}}};
}
} // namespace

PageFixture::PageFixture(const QStringList &helperArguments)
{
    qputenv("ADMINEVENTS_ROOT", m_root.path().toLocal8Bit());
    qputenv("HOME", m_root.filePath(QStringLiteral("root")).toLocal8Bit());
    QDir(m_root.path()).mkpath(QStringLiteral("bin"));
    const QString manager = m_root.filePath(QStringLiteral("bin/systemctl"));
    qputenv("PATH", (m_root.filePath(QStringLiteral("bin:")) + qEnvironmentVariable("PATH")).toLocal8Bit());
    const QStringList always{QStringLiteral("--systemctl"), manager, QStringLiteral("--home"),
                             m_root.filePath(QStringLiteral("root"))};
    bus = std::make_unique<PrivateBus>(m_root.path(), always + helperArguments);
}

QString PageFixture::start()
{
    reset();
    if (!bus->start()) {
        return bus->errorString();
    }
    // The session's bus, too: nothing of a test reaches the desktop of whoever runs it.
    qputenv("DBUS_SESSION_BUS_ADDRESS", bus->address().toLocal8Bit());
    return {};
}

void PageFixture::reset()
{
    QDir(m_root.filePath(QStringLiteral("etc"))).removeRecursively();
    QDir(m_root.filePath(QStringLiteral("usr"))).removeRecursively();
    QDir(m_root.filePath(QStringLiteral("root"))).removeRecursively();
    const QStringList folders{QStringLiteral("etc/audit/rules.d"), QStringLiteral("etc/syslog-ng/conf.d"),
                              QStringLiteral("etc/zep-admin-events"),
                              QStringLiteral("usr/share/knotifications5"), QStringLiteral("root/.config")};
    for (const QString &folder : folders) {
        QDir(m_root.path()).mkpath(folder);
    }
    const QStringList groups{QStringLiteral("first"), QStringLiteral("middle"), QStringLiteral("last")};
    for (const QString &group : groups) {
        QDir().mkpath(catalogPath() + QLatin1Char('/') + group);
        const QJsonObject params{{QStringLiteral("name_en"), group}, {QStringLiteral("name_ru"), group}};
        write(QStringLiteral("%1/%2.json").arg(catalogPath(), group),
              QJsonDocument(QJsonObject{{QStringLiteral("group-params"), params}}).toJson());
    }
    const auto add = [this](const QString &group, const QString &id, QJsonObject event) {
        write(QStringLiteral("%1/%2/%3.json").arg(catalogPath(), group, id), QJsonDocument(event).toJson());
    };
    QJsonObject login = switchedEvent(QStringLiteral("first"), QStringLiteral("login"), QStringLiteral("1"));
    login.insert(QStringLiteral("extend-message-params"),
                 QJsonObject{{QStringLiteral("tty"),
                              QJsonObject{{QStringLiteral("enabled"), QStringLiteral("0")},
                                          {QStringLiteral("source"), QStringLiteral("pam")}}}});
    add(QStringLiteral("first"), QStringLiteral("login"), login);
    add(QStringLiteral("middle"), QStringLiteral("plain"),
        switchedEvent(QStringLiteral("middle"), QStringLiteral("plain"), QStringLiteral("0")));
    QJsonObject watch = switchedEvent(QStringLiteral("last"), QStringLiteral("watch"), QStringLiteral("0"));
    watch.insert(QStringLiteral("message-audit-rules"),
                 QStringLiteral("-w /etc/shadow -p wa -k /etc/shadow"));
    watch.insert(QStringLiteral("interval"), QStringLiteral("30"));
    add(QStringLiteral("last"), QStringLiteral("watch"), watch);
    write(m_root.filePath(QStringLiteral("usr/share/knotifications5/nivra-event-watcher_page.notifyrc")),
          "[Event/loginMsg]\nAction=Popup\n[Event/plainMsg]\nAction=Popup\n[Event/watchMsg]\nAction=Popup\n");
    writeServiceManager();
}

void PageFixture::writeServiceManager()
{
    write(m_root.filePath(QStringLiteral("bin/calls")), {});
    write(m_root.filePath(QStringLiteral("bin/status")), "0");
    const QString manager = m_root.filePath(QStringLiteral("bin/systemctl"));
    write(manager,
          "#!/bin/sh\n"
          "dir=$(dirname \"$0\")\n"
          "echo \"$@\" >> \"$dir/calls\"\n"
          "case $1 in\n"
          "status) exit $(cat \"$dir/status\") ;;\n"
          "stop) echo 3 > \"$dir/status\" ;;\n"
          "*) echo 0 > \"$dir/status\" ;;\n"
          "esac\n");
    QFile::setPermissions(
        manager, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner | QFile::ReadOther | QFile::ExeOther);
}

QString PageFixture::serviceCalls() const
{
    return QString::fromUtf8(read(m_root.filePath(QStringLiteral("bin/calls"))));
}

std::unique_ptr<AdminEventsModule> PageFixture::openPage(const QVariantList &args)
{
    auto page = std::make_unique<AdminEventsModule>(nullptr, args);
    page->resize(900, 600);
    page->show();
    // The shell's base class loads a page from the event loop, when it is shown for the first time.
    const bool loaded = QTest::qWaitFor([&page] { return page->workingModel()->rowCount() > 0; }, 5000);
    // What the page leaves for after its first painting: the state of the service, and its dialogs.
    const auto *serviceState = serviceLabel(*page);
    const bool settled = loaded && QTest::qWaitFor([&page, serviceState] {
                             return !serviceState->text().isEmpty()
                                 && page->findChild<QDialog *>(QStringLiteral("DBusDialog"));
                         });
    return settled ? std::move(page) : nullptr;
}

QString PageFixture::settingsPath() const
{
    return m_root.filePath(QStringLiteral("etc/nivra-syslog.conf"));
}

QString PageFixture::rulesPath() const
{
    return m_root.filePath(QStringLiteral("etc/audit/rules.d/nivra-syslog.rules"));
}

QString PageFixture::catalogPath() const
{
    return m_root.filePath(QStringLiteral("usr/share/syslog-ng-mod-nivra/event-settings"));
}

void PageFixture::write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
        qFatal("cannot write %s", qPrintable(path));
    }
}

void PageFixture::replace(const QString &path, const QByteArray &content)
{
    const QString beside = path + QStringLiteral(".new");
    write(beside, content);
    if (::rename(QFile::encodeName(beside).constData(), QFile::encodeName(path).constData()) != 0) {
        qFatal("cannot replace %s", qPrintable(path));
    }
}

QByteArray PageFixture::read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QJsonObject PageFixture::settings() const
{
    return QJsonDocument::fromJson(read(settingsPath())).object();
}

EventTreeItem *PageFixture::node(CheckableTreeModel *model, const QString &event, const QStringList &path)
{
    EventTreeItem *item = EventLookup::findEvent(*model->rootItem(), event);
    for (const QString &name : path) {
        item = item ? item->findChildTopLevelByNativeName(name) : nullptr;
    }
    return item;
}

void PageFixture::toggle(AdminEventsModule &page, const QString &event)
{
    CheckableTreeModel *model = page.workingModel();
    QVERIFY(model->setData(model->indexOf(node(model, event)), QVariant(), Qt::CheckStateRole));
}

void PageFixture::type(AdminEventsModule &page, const QString &event, const QStringList &path,
                       const QString &text)
{
    CheckableTreeModel *model = page.workingModel();
    QVERIFY(model->setData(model->indexOf(node(model, event, path), 1), text, Qt::EditRole));
}

QTreeView *PageFixture::view(const AdminEventsModule &page)
{
    return page.findChild<QTreeView *>(QStringLiteral("singleEventsView"));
}

QModelIndex PageFixture::shown(const AdminEventsModule &page, const QString &event, const QStringList &path,
                               int column)
{
    const EventTreeItem *item = node(page.workingModel(), event, path);
    const auto *proxy = qobject_cast<const QAbstractProxyModel *>(view(page)->model());
    return item ? proxy->mapFromSource(page.workingModel()->indexOf(item, column)) : QModelIndex();
}

QPushButton *PageFixture::serviceButton(const AdminEventsModule &page)
{
    return page.findChild<QPushButton *>(QStringLiteral("sngStartStopButton"));
}

QLabel *PageFixture::serviceLabel(const AdminEventsModule &page)
{
    return page.findChild<QLabel *>(QStringLiteral("sngStatusLabel"));
}
