// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "settingswindow.h"

#include "pagefixture.h"

#include <adddestinationdialog.h>
#include <checkabletreemodel.h>
#include <dbusdialog.h>
#include <destinationsmodel.h>
#include <destinationssettings.h>
#include <systempaths.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileInfo>
#include <QLineEdit>
#include <QProcess>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QStandardPaths>
#include <QTabWidget>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <QTreeView>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {
template <typename Widget> Widget *find(const QWidget &parent, const char *name)
{
    auto *widget = parent.findChild<Widget *>(QLatin1String(name));
    if (!widget) {
        qFatal("no %s", name);
    }
    return widget;
}

void describe(const QAbstractItemModel &model, const QModelIndex &parent, const QString &indent,
              QStringList &lines)
{
    for (int row = 0; row < model.rowCount(parent); ++row) {
        QString line = indent;
        for (int column = 0; column < model.columnCount(parent); ++column) {
            const QModelIndex index = model.index(row, column, parent);
            line += index.data().toString() + QLatin1Char('|') + index.data(Qt::CheckStateRole).toString()
                + QLatin1Char('|');
        }
        lines << line;
        describe(model, model.index(row, 0, parent), indent + QLatin1Char(' '), lines);
    }
}

/// What the fields of a window or a page of it hold, whatever order they were made in.
void describe(const QWidget &window, QStringList &lines)
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QStringList fields;
    const auto add = [&](const QWidget &widget, const QString &value) {
        if (widget.isVisibleTo(&window)) {
            fields << window.objectName() + QLatin1Char(' ') + widget.objectName() + QLatin1Char(' ') + value;
        }
    };
    for (const auto *button : window.findChildren<QAbstractButton *>()) {
        add(*button, button->text() + (button->isChecked() ? u" on" : u" off"));
    }
    for (const auto *edit : window.findChildren<QLineEdit *>()) {
        add(*edit, edit->text());
    }
    for (const auto *box : window.findChildren<QComboBox *>()) {
        add(*box, box->currentText());
    }
    fields.sort();
    lines << fields;
}
} // namespace

bool SettingsWindow::putShippedFiles(const PageFixture &machine, const QString &data)
{
    const auto put = [&](const QString &path, const QString &shipped) {
        const QByteArray content = PageFixture::read(data + shipped);
        const QString target = machine.root() + path;
        if (content.isEmpty() || !QDir().mkpath(QFileInfo(target).path())) {
            return false;
        }
        PageFixture::write(target, content);
        return true;
    };
    return put(SystemPaths::mainConfiguration(), QStringLiteral("/syslog-ng/mod-nivra.conf"))
        && put(SystemPaths::rotationFile(), QStringLiteral("/logrotate/syslog-ng-mod-nivra"));
}

CommonSettingsWindow &SettingsWindow::of(const AdminEventsModule &page)
{
    return *page.findChild<CommonSettingsWindow *>();
}

void SettingsWindow::open(const AdminEventsModule &page, const char *tab)
{
    find<QPushButton>(page, "commonSettingsButton")->click();
    find<QTabWidget>(of(page), "tabWidget")->setCurrentWidget(find<QWidget>(of(page), tab));
}

void SettingsWindow::clickOk(const AdminEventsModule &page)
{
    auto *buttons = find<QDialogButtonBox>(of(page), "buttonBox");
    QTest::mouseClick(buttons->button(QDialogButtonBox::Ok), Qt::LeftButton);
}

void SettingsWindow::transfer(const AdminEventsModule &page, const char *tab, const QString &archive)
{
    open(page, tab);
    find<QLineEdit>(*find<QWidget>(of(page), tab), "fileLineEdit")->setText(archive);
    clickOk(page);
}

void SettingsWindow::setNumberOfLogs(const AdminEventsModule &page, int number)
{
    open(page, "logRotateTab");
    find<QSpinBox>(of(page), "numberOfLogs")->setValue(number);
    clickOk(page);
}

bool SettingsWindow::addFileDestination(const AdminEventsModule &page, const QString &name,
                                        const QString &path)
{
    open(page, "destinationsTab");
    bool accepted = false;
    // The dialog runs an event loop of its own.
    QTimer::singleShot(0, [&] {
        auto *dialog = of(page).findChild<AddDestinationDialog *>();
        if (!dialog) {
            return;
        }
        find<QComboBox>(*dialog, "typeEdit")->setCurrentIndex(0);
        QTest::keyClicks(find<QLineEdit>(*dialog, "nameEdit"), name);
        QTest::keyClicks(find<QLineEdit>(*dialog, "addressEdit"), path);
        auto *buttons = find<QDialogButtonBox>(*dialog, "buttonBox");
        QTest::mouseClick(buttons->button(QDialogButtonBox::Ok), Qt::LeftButton);
        accepted = !dialog->isVisible();
        if (!accepted) {
            dialog->reject();
        }
    });
    QTest::mouseClick(find<QToolButton>(of(page), "addButton"), Qt::LeftButton);
    clickOk(page);
    return accepted && !of(page).isVisible();
}

bool SettingsWindow::removeDestination(const AdminEventsModule &page, const QString &name)
{
    open(page, "destinationsTab");
    auto *view = find<QTreeView>(of(page), "destinationsView");
    const QModelIndexList found = view->model()->match(view->model()->index(0, DestinationsModel::NameColumn),
                                                       Qt::DisplayRole, name, 1, Qt::MatchExactly);
    if (found.isEmpty()) {
        return false;
    }
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, view->visualRect(found.first()).center());
    QTest::mouseClick(find<QToolButton>(of(page), "removeButton"), Qt::LeftButton);
    clickOk(page);
    return !of(page).isVisible();
}

QStringList SettingsWindow::picture(AdminEventsModule &page, const QStringList &notifyingEvents)
{
    QStringList lines;
    describe(*page.workingModel(), {}, QString(), lines);
    open(page, "destinationsTab");
    describe(*of(page).findChild<DestinationsSettings *>()->model(), {}, QStringLiteral("to "), lines);
    describe(*find<QWidget>(of(page), "logRotationSettings"), lines);
    of(page).reject();
    for (const QString &event : notifyingEvents) {
        page.notificationSettings(PageFixture::node(page.workingModel(), event));
        auto *dialog = page.findChild<DBusDialog *>();
        lines << event + (dialog->isVisible() ? u" notifies" : u" is quiet");
        describe(*dialog, lines);
        dialog->reject();
    }
    return lines;
}

bool RealService::prepare(const PageFixture &machine, const QString &systemctl)
{
    const QStringList places{QStringLiteral("/usr/sbin"), QStringLiteral("/sbin")};
    if (QStandardPaths::findExecutable(QStringLiteral("syslog-ng"), places).isEmpty()) {
        return false;
    }
    QByteArray config = PageFixture::read(QFileInfo(systemctl).path() + QStringLiteral("/syslog-ng.conf.in"));
    config.replace("@ROOT@", machine.root().toUtf8());
    PageFixture::write(machine.root() + QStringLiteral("/etc/syslog-ng/syslog-ng.conf"), config);
    QDir(machine.root()).mkpath(QStringLiteral("run"));
    const QString manager = machine.root() + QStringLiteral("/bin/systemctl");
    PageFixture::replace(manager,
                         "#!/bin/sh\nexec '" + systemctl.toUtf8() + "' --sandbox '" + machine.root().toUtf8()
                             + "' \"$@\"\n");
    QFile::setPermissions(manager, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    return QProcess::execute(manager, {QStringLiteral("start"), QStringLiteral("auditd")}) == 0;
}

void RealService::stop(const PageFixture &machine, const QString &systemctl)
{
    QProcess::execute(
        systemctl,
        {QStringLiteral("--sandbox"), machine.root(), QStringLiteral("stop"), QStringLiteral("syslog-ng")});
}

bool RealService::send(const PageFixture &machine, const QByteArray &record)
{
    const QByteArray path = QFile::encodeName(machine.root() + QStringLiteral("/run/syslog-ng/nivra-events"));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= int(sizeof address.sun_path)) {
        return false;
    }
    std::copy(path.cbegin(), path.cend(), address.sun_path);
    const int descriptor = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    const bool sent = ::sendto(descriptor, record.constData(), size_t(record.size()), 0,
                               reinterpret_cast<const sockaddr *>(&address), sizeof address)
        == record.size();
    ::close(descriptor);
    return sent;
}
