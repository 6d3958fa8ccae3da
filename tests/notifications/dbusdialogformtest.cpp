// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "notificationfixture.h"

#include <checkboxparam.h>
#include <configaccessservice.h>
#include <dbusdialog.h>
#include <eventtreeitem.h>
#include <loggingservice.h>
#include <notificationsdictionary.h>

#include <QApplication>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QSpinBox>
#include <QTest>
#include <QTimer>

namespace {

struct Part
{
    const char *name;
    const char *text; ///< nothing where the widget has none of its own
    const char *icon;
};

// Top to bottom.
constexpr Part parts[] = {
    {"eventTitleLabel", "Event:", nullptr},
    {"line", nullptr, nullptr},
    {"allUsersRadioButton", "Send notification to all users", nullptr},
    {"selectGroupRadioButton", "Send notification only to administrators", nullptr},
    {"userAndGroupRadioButton", "Send notification to the user and group specified in the event", nullptr},
    {"titleLabel", "Title:", nullptr},
    {"includeGroupBox", "Message content", nullptr},
    {"notifyTypeGroupBox", "Notification methods", nullptr},
    {"popupCheckBox", "Show a message in a popup", "zep-notifications"},
    {"soundCheckBox", "Play a sound", "media-playback-start"},
    {"logFileCheckBox", "Log to a file", "text-x-generic"},
    {"executeCheckBox", "Run command", "system-run"},
    {"repeatGroupBox", "Repeat settings", nullptr},
    {"repeatCheckBox", "Repeat every:", "chronometer"},
    {"buttonBox", nullptr, nullptr},
};

struct InRow
{
    const char *row; ///< a widget of the same row, to the left
    const char *name;
    const char *icon;
};

constexpr InRow rowParts[] = {
    {"eventTitleLabel", "eventLabel", nullptr},
    {"titleLabel", "titleLineEdit", nullptr},
    {"soundCheckBox", "playButton", "media-playback-start"},
    {"playButton", "soundEdit", nullptr},
    {"soundEdit", "soundDialogButton", "document-open"},
    {"logFileCheckBox", "logFileEdit", nullptr},
    {"logFileEdit", "logFileDialogButton", "document-open"},
    {"executeCheckBox", "executeEdit", nullptr},
    {"executeEdit", "executeDialogButton", "document-open"},
    {"repeatCheckBox", "intervalSpinBox", nullptr},
};

} // namespace

/** What the dialog is made of: texts, icons and places, and the file choosers behind its buttons. */
class DBusDialogFormTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup() { m_dialog.reset(); }

    void everyTextAndIconInItsPlace();
    void filesAreChosenInADialog_data();
    void filesAreChosenInADialog();
    void theStoredOrderOfTheParametersCounts();
    void manyParametersScroll();

private:
    QWidget *find(const char *name) const { return m_dialog->findChild<QWidget *>(QLatin1String(name)); }
    QPoint place(const char *name) const { return find(name)->mapTo(m_dialog.get(), QPoint()); }
    static QString iconName(const QWidget &widget) { return widget.property("icon").value<QIcon>().name(); }

    NotificationFixture m_machine;
    std::unique_ptr<ConfigAccessService> m_access;
    std::unique_ptr<LoggingService> m_logging;
    std::unique_ptr<DBusDialog> m_dialog;
    std::unique_ptr<EventTreeItem> m_event;
};

/** A theme with every icon that the dialog asks for, so that nothing depends on what is installed. */
void DBusDialogFormTest::initTestCase()
{
    QByteArray index = "[Icon Theme]\nName=all\nDirectories=16\n[16]\nSize=16\n";
    const QString theme = m_machine.path("/icons/all");
    QVERIFY(QDir().mkpath(theme + QStringLiteral("/16")));
    m_machine.write(theme + QStringLiteral("/index.theme"), index);
    QPixmap picture(16, 16);
    picture.fill(Qt::red);
    for (const char *name : {"zep-notifications", "media-playback-start", "text-x-generic", "system-run",
                             "chronometer", "document-open"}) {
        QVERIFY(picture.save(theme + QLatin1String("/16/") + QLatin1String(name) + QLatin1String(".png")));
    }
    QIcon::setThemeSearchPaths({m_machine.path("/icons")});
    QIcon::setThemeName(QStringLiteral("all"));
}

void DBusDialogFormTest::init()
{
    m_machine.reset();
    NotificationsDictionary::Instance()->init();
    m_access = std::make_unique<ConfigAccessService>(nullptr);
    m_logging = std::make_unique<LoggingService>(nullptr);
    m_dialog = std::make_unique<DBusDialog>(*m_access, *m_logging, nullptr);
    m_event = m_machine.makeEvent(QStringLiteral("a-b_c"));
    m_machine.addRepetition(m_event.get(), QStringLiteral("0"), QStringLiteral("30"));
    m_dialog->setDialogType(NotificationsDialogType::New);
    QVERIFY(m_dialog->setEvent(m_event.get()));
}

void DBusDialogFormTest::everyTextAndIconInItsPlace()
{
    m_dialog->resize(700, 800);
    m_dialog->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_dialog.get()));
    int above = -1;
    for (const Part &part : parts) {
        const QWidget *widget = find(part.name);
        QVERIFY2(widget && widget->isVisible(), part.name);
        const QString text = widget->property(widget->inherits("QGroupBox") ? "title" : "text").toString();
        QCOMPARE(text, QString(QLatin1String(part.text)));
        QCOMPARE(iconName(*widget), QString(QLatin1String(part.icon)));
        QVERIFY2(place(part.name).y() > above, part.name);
        above = place(part.name).y();
    }
    for (const InRow &part : rowParts) {
        const QWidget *widget = find(part.name);
        QVERIFY2(widget && widget->isVisible(), part.name);
        QVERIFY2(place(part.name).x() >= place(part.row).x() + find(part.row)->width(), part.name);
        QVERIFY2(qAbs(widget->geometry().center().y() - find(part.row)->geometry().center().y()) < 8,
                 part.name);
        QCOMPARE(iconName(*widget), QString(QLatin1String(part.icon)));
    }
    QCOMPARE(static_cast<QDialogButtonBox *>(find("buttonBox"))->standardButtons(),
             QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    QVERIFY(find("includeGroupBox")->isAncestorOf(find("scrollArea")));
}

void DBusDialogFormTest::filesAreChosenInADialog_data()
{
    QTest::addColumn<QString>("method");
    QTest::addColumn<QString>("caption");
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QStringList>("filters");
    const QStringList all{QStringLiteral("All Files (*)")};
    const QString home = m_machine.path("/root");
    QTest::newRow("sound") << QStringLiteral("sound") << QStringLiteral("Open sound")
                           << m_machine.path("/share/sounds")
                           << QStringList{QStringLiteral("Audio files (*.ogg *.wav)")};
    QTest::newRow("log file") << QStringLiteral("logFile") << QStringLiteral("Open log file") << home << all;
    QTest::newRow("command") << QStringLiteral("execute") << QStringLiteral("Open script file") << home
                             << all;
}

void DBusDialogFormTest::filesAreChosenInADialog()
{
    QFETCH(QString, method);
    QFETCH(QString, caption);
    QFETCH(QString, folder);
    QFETCH(QStringList, filters);
    QVERIFY(QDir().mkpath(m_machine.path("/share/sounds")));
    qputenv("XDG_DATA_HOME", QFile::encodeName(m_machine.path("/nowhere")));
    qputenv("XDG_DATA_DIRS", QFile::encodeName(m_machine.path("/share")));
    const QString chosen = folder + QStringLiteral("/chosen file.wav");
    m_machine.write(chosen, "x");
    static_cast<QCheckBox *>(find(QByteArray(method.toLatin1() + "CheckBox").constData()))->click();
    auto *edit = static_cast<QLineEdit *>(find(QByteArray(method.toLatin1() + "Edit").constData()));
    edit->setText(QStringLiteral("/typed"));
    QStringList said; // compared afterwards: a comparison that fails in here would leave the chooser open
    bool accept = false;
    QTimer timer;
    connect(&timer, &QTimer::timeout, this, [&] {
        auto *chooser = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
        if (!chooser) {
            return;
        }
        said << chooser->windowTitle() << chooser->directory().path() << chooser->nameFilters();
        if (!accept) {
            chooser->reject();
            return;
        }
        // Typed: a file that the dialog has not listed yet cannot be selected.
        chooser->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->setText(chosen);
        QMetaObject::invokeMethod(chooser, "accept");
    });
    timer.start(20);
    auto *button
        = static_cast<QPushButton *>(find(QByteArray(method.toLatin1() + "DialogButton").constData()));
    button->click();
    QCOMPARE(edit->text(), QStringLiteral("/typed"));
    accept = true;
    button->click();
    QCOMPARE(edit->text(), chosen);
    const QStringList expected = QStringList{caption, folder} + filters;
    QCOMPARE(said, expected + expected);
}

void DBusDialogFormTest::theStoredOrderOfTheParametersCounts()
{
    const auto open = [this](const QString &parameters) {
        m_dialog->clearParams();
        m_dialog->setParams(QStringLiteral("aBC"), m_machine.ownFile("first"),
                            {QStringLiteral("\"event_user\", \"@all\""),
                             QStringLiteral("\"event_group\", \"@all\""),
                             QStringLiteral("\"event_title\", \"x\""),
                             QStringLiteral("\"event_params\", \"%1\"").arg(parameters)});
        m_dialog->setDialogType(NotificationsDialogType::Existing);
        return m_dialog->setEvent(m_event.get());
    };
    QVERIFY(open(QStringLiteral("terminal,user")));
    QVERIFY(m_dialog->checkStartParams());
    QVERIFY(open(QStringLiteral("user,terminal")));
    QVERIFY2(!m_dialog->checkStartParams(), "what would be written is not what is stored");
    QVERIFY(open(QStringLiteral("terminal,gone,user")));
    QVERIFY(!m_dialog->checkStartParams());
}

void DBusDialogFormTest::manyParametersScroll()
{
    const auto event = m_machine.makeEvent(QStringLiteral("a-b_c"));
    EventTreeItem *more = event->findChildTopLevelByNativeName(QStringLiteral("extend-message-params"));
    for (int i = 0; i < 60; ++i) {
        m_machine.addChild(more, QStringLiteral("parameter%1").arg(i));
    }
    QVERIFY(m_dialog->setEvent(event.get()));
    m_dialog->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_dialog.get()));
    QVERIFY2(m_dialog->height() <= 800, QByteArray::number(m_dialog->height()).constData());
    auto *area = static_cast<QScrollArea *>(find("scrollArea"));
    QCheckBox *last = area->findChildren<CheckBoxParam *>().last();
    QVERIFY(last->visibleRegion().isEmpty());
    area->ensureWidgetVisible(last);
    QTRY_VERIFY(!last->visibleRegion().isEmpty());
    QVERIFY(find("buttonBox")->visibleRegion().boundingRect().height() == find("buttonBox")->height());
}

QTEST_MAIN(DBusDialogFormTest)

#include "dbusdialogformtest.moc"
