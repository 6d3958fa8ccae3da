// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include <catalogsandbox.h>
#include <eventexample.h>
#include <eventlookup.h>
#include <localekeeper.h>

#include <KLocalizedString>

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QDialogButtonBox>
#include <QDirIterator>
#include <QHeaderView>
#include <QJsonDocument>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTableView>
#include <QTest>
#include <QTimer>

namespace {
constexpr auto dummyData = R"({
    "time": {"text": "2026-01-02T03:04:05+00:00"},
    "priority": {"text": "notice"},
    "source": {"text": "auth"},
    "host": {"text": "station"},
    "tty": {"text": "pts/1"},
    "plain": "a string",
    "number": {"text": 17},
    "without": {"name": "x"},
    "flag": {"text": true},
    "list": ["text"]
})";

constexpr auto loginEvent = R"({
    "event-group": "logins",
    "enabled": "1",
    "message-params": {"message_id": "login_message", "name_en": "Login", "name_ru": "Вход"},
    "extend-message-params": {
        "tty": {"enabled": "1", "field": "${TTY}"},
        "time": "${TIME}",
        "overlay1": "hidden",
        "secret": "hidden",
        "address": "${ADDRESS}"
    }
})";

constexpr auto dictionary = R"({
    "message_id": {"visible": "true", "ru": "Идентификатор сообщения"},
    "tty": {"ru": "Терминал"},
    "secret": {"visible": "false"}
})";

void copyShipped(const CatalogSandbox &sandbox)
{
    const QString from = QStringLiteral(SHIPPED_DATA);
    const auto copy = [&](const QString &source, const QString &target) {
        QFile file(source);
        QVERIFY(file.open(QIODevice::ReadOnly));
        sandbox.write(target, file.readAll());
    };
    const QString catalog = from + QStringLiteral("/event-settings");
    QDirIterator files(catalog, {QStringLiteral("*.json")}, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString path = files.next();
        copy(path, QStringLiteral("usr/share/syslog-ng-mod-nivra/event-settings") + path.mid(catalog.size()));
    }
    for (const char *name : {"eventsdictionary.json", "eventexample.json"}) {
        const QString path = QStringLiteral("zep-admin-events/") + QLatin1String(name);
        copy(from + QLatin1Char('/') + path, QStringLiteral("etc/") + path);
    }
}

/// Closes message boxes, and keeps what they said.
class BoxReader : public QObject
{
public:
    BoxReader()
    {
        connect(&m_timer, &QTimer::timeout, this, [this] {
            if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget())) {
                titles.append(box->windowTitle());
                texts.append(box->informativeText());
                buttons = box->standardButtons();
                box->button(QMessageBox::Ok)->click();
            }
        });
        m_timer.start(10);
    }

    QStringList titles;
    QStringList texts;
    QMessageBox::StandardButtons buttons;

private:
    QTimer m_timer;
};
} // namespace

class EventExampleTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Forms and records are looked at in the language of the sources; that of the names is the system's.
    void initTestCase() { KLocalizedString::setLanguages({QStringLiteral("en")}); }
    void init();
    void cleanup();

    void tableShowsTheFieldsInTheirOrder();
    void textIsTheRecordOfTheEvent();
    void namesStandInTheRecordForTwoLanguagesOnly();
    void dummyValueIsTheTextOfAnObject_data();
    void dummyValueIsTheTextOfAnObject();
    void withoutDummyDataEveryValueIsTheSame_data();
    void withoutDummyDataEveryValueIsTheSame();
    void unusableFileIsToldAtEveryOpening();
    void usableFileOpensWithoutAWord_data();
    void usableFileOpensWithoutAWord();
    void fileIsReadOnce();
    void namesThatLookLikeMarkupOfTheRecordAreEscaped();
    void eventWithoutExtendedParametersHasNone();
    void eventWithoutMessageIdentifierStillHasAnExample();
    void nextEventReplacesTheFormer();
    void textsCanBeSelectedAndNotChanged();
    void dialogCanBeUsedWithTheKeyboard();
    void everyShippedEventHasAValidRecord();
    void everyShippedEventFitsIntoTheWindow();

private:
    [[nodiscard]] static EventTreeItem *event(const std::unique_ptr<EventTreeItem> &root, const char *id)
    {
        return EventLookup::findEvent(*root, QString::fromUtf8(id));
    }
    [[nodiscard]] static QPlainTextEdit *text(const EventExample &dialog)
    {
        return dialog.findChild<QPlainTextEdit *>(QStringLiteral("exampleText"));
    }
    [[nodiscard]] static QTableView *table(const EventExample &dialog)
    {
        return dialog.findChild<QTableView *>(QStringLiteral("exampleTable"));
    }
    /// The lines of the table, as "name=value".
    [[nodiscard]] static QStringList rows(const EventExample &dialog)
    {
        const QAbstractItemModel *model = table(dialog)->model();
        QStringList lines;
        for (int row = 0; row < model->rowCount(); ++row) {
            lines.append(model->index(row, 0).data().toString() + QLatin1Char('=')
                         + model->index(row, 1).data().toString());
        }
        return lines;
    }
    [[nodiscard]] static QJsonObject record(const EventExample &dialog)
    {
        QJsonParseError error{};
        const QByteArray json = text(dialog)->toPlainText().toUtf8();
        const QJsonObject object = QJsonDocument::fromJson(json, &error).object();
        if (error.error != QJsonParseError::NoError) {
            qWarning("%s in %s", qPrintable(error.errorString()), json.constData());
        }
        return object;
    }
    [[nodiscard]] static QJsonObject message(const EventExample &dialog)
    {
        const QJsonObject msg = record(dialog).value(QStringLiteral("MSG")).toObject();
        return msg.isEmpty() ? QJsonObject() : msg.begin().value().toObject();
    }
    void setDummyData(const QByteArray &json) const
    {
        m_sandbox->write(QStringLiteral("etc/zep-admin-events/eventexample.json"), json);
    }

    std::unique_ptr<CatalogSandbox> m_sandbox;
    std::unique_ptr<EventTreeItem> m_root;
};

void EventExampleTest::init()
{
    m_sandbox = std::make_unique<CatalogSandbox>();
    m_sandbox->addGroup("logins", "Logins", "Входы");
    m_sandbox->addEvent("logins", "login", loginEvent);
    m_sandbox->setDictionary(dictionary);
    setDummyData(dummyData);
    m_root = m_sandbox->parse();
    QVERIFY(m_root);
}

void EventExampleTest::cleanup()
{
    m_root.reset();
    m_sandbox.reset();
}

void EventExampleTest::tableShowsTheFieldsInTheirOrder()
{
    EventExample dialog;
    const QAbstractItemModelTester tester(table(dialog)->model(),
                                          QAbstractItemModelTester::FailureReportingMode::QtTest);
    dialog.prepareExample(event(m_root, "login"));
    const QStringList expected{
        QStringLiteral("№=1"),
        QStringLiteral("Date and time=2026-01-02T03:04:05+00:00"),
        Tree::inLanguage("message_id=login_message", "Идентификатор сообщения=login_message"),
        Tree::inLanguage("Event type=Logins", "Event type=Входы"),
        QStringLiteral("Priority=notice"),
        Tree::inLanguage("Event name=Login", "Event name=Вход"),
        QStringLiteral("Source=auth"),
        // The order in the catalog library's answer is that of the names.
        QStringLiteral("address=value"),
        Tree::inLanguage("tty=pts/1", "Терминал=pts/1"),
        QStringLiteral("Host=station"),
    };
    QCOMPARE(rows(dialog), expected);
    QCOMPARE(table(dialog)->model()->columnCount(), 2);
}

void EventExampleTest::textIsTheRecordOfTheEvent()
{
    EventExample dialog;
    dialog.prepareExample(event(m_root, "login"));
    QString names;
    if (Tree::isRussian()) {
        names = QStringLiteral("\"name_ru\":\"Вход\",\"type_ru\":\"Входы\",");
    } else if (LocaleKeeper::Instance()->language() == QLatin1String("English")) {
        names = QStringLiteral("\"name_en\":\"Login\",\"type_en\":\"Logins\",");
    }
    const QString expected = QStringLiteral("{\"PRIORITY\":\"notice\",\"MSG\":{\"auth\":{") + names
        + QStringLiteral("\"address\":\"value\",\"tty\":\"pts/1\",\"message_id\":\"login_message\"}},"
                         "\"ISODATE\":\"2026-01-02T03:04:05+00:00\",\"HOST\":\"station\","
                         "\"FACILITY\":\"user\"}");
    QCOMPARE(text(dialog)->toPlainText(), expected);
}

void EventExampleTest::namesStandInTheRecordForTwoLanguagesOnly()
{
    EventExample dialog;
    dialog.prepareExample(event(m_root, "login"));
    const QJsonObject members = message(dialog);
    const QString language = LocaleKeeper::Instance()->language();
    QCOMPARE(members.contains(QStringLiteral("name_ru")), language == QLatin1String("Russian"));
    QCOMPARE(members.contains(QStringLiteral("type_ru")), language == QLatin1String("Russian"));
    QCOMPARE(members.contains(QStringLiteral("name_en")), language == QLatin1String("English"));
    QCOMPARE(members.contains(QStringLiteral("type_en")), language == QLatin1String("English"));
    QVERIFY(members.contains(QStringLiteral("message_id")));
}

void EventExampleTest::dummyValueIsTheTextOfAnObject_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("value");
    const auto row = [](const char *key, const char *value) {
        QTest::newRow(key) << QString::fromUtf8(key) << QString::fromUtf8(value);
    };
    row("tty", "pts/1");
    row("number", "17");
    row("plain", "value");
    row("without", "value");
    row("flag", "value");
    row("list", "value");
    row("unknown", "value");
    row("", "value");
}

void EventExampleTest::dummyValueIsTheTextOfAnObject()
{
    QFETCH(QString, key);
    QFETCH(QString, value);
    const EventExample dialog;
    QCOMPARE(dialog.getDummyDataFromFile(key), value);
}

void EventExampleTest::withoutDummyDataEveryValueIsTheSame_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("missing") << QByteArray();
    QTest::newRow("no JSON") << QByteArray("{\"time\":");
    QTest::newRow("a list") << QByteArray("[\"time\"]");
    QTest::newRow("an empty object") << QByteArray("{}");
}

void EventExampleTest::withoutDummyDataEveryValueIsTheSame()
{
    QFETCH(QByteArray, content);
    setDummyData(content);
    if (content.isNull()) {
        QVERIFY(QFile::remove(m_sandbox->path(QStringLiteral("etc/zep-admin-events/eventexample.json"))));
    }
    EventExample dialog;
    dialog.prepareExample(event(m_root, "login"));
    const QString tty = Tree::inLanguage("tty", "Терминал");
    const QStringList fields{QStringLiteral("Date and time"), QStringLiteral("Priority"),
                             QStringLiteral("Source"),        QStringLiteral("address"),
                             QStringLiteral("Host"),          tty};
    for (const QString &field : fields) {
        QVERIFY2(rows(dialog).contains(field + QStringLiteral("=value")), qPrintable(field));
    }
    const QJsonObject object = record(dialog);
    QCOMPARE(object.value(QStringLiteral("HOST")).toString(), QStringLiteral("value"));
    QCOMPARE(object.value(QStringLiteral("ISODATE")).toString(), QStringLiteral("value"));
    QCOMPARE(object.value(QStringLiteral("PRIORITY")).toString(), QStringLiteral("value"));
    QVERIFY(object.value(QStringLiteral("MSG")).toObject().contains(QStringLiteral("value")));
    QCOMPARE(message(dialog).value(QStringLiteral("tty")).toString(), QStringLiteral("value"));
}

void EventExampleTest::unusableFileIsToldAtEveryOpening()
{
    setDummyData("nothing");
    const BoxReader boxes;
    EventExample dialog;
    dialog.prepareExample(event(m_root, "login"));
    QVERIFY(boxes.titles.isEmpty());
    dialog.showExample();
    QCOMPARE(boxes.titles, QStringList{QStringLiteral("No event configuration detected")});
    QCOMPARE(
        boxes.texts,
        QStringList{QStringLiteral("Config file \"%1\" is corrupted or does not exist.\n"
                                   "Some of dummy data will be empty.")
                        .arg(m_sandbox->path(QStringLiteral("etc/zep-admin-events/eventexample.json")))});
    QCOMPARE(boxes.buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
    QVERIFY(dialog.isVisible());
    QVERIFY(!dialog.isModal());
    dialog.close();
    dialog.showExample();
    QCOMPARE(boxes.titles.size(), 2);
    QVERIFY(dialog.isVisible());
}

void EventExampleTest::usableFileOpensWithoutAWord_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("complete") << QByteArray(dummyData);
    QTest::newRow("empty") << QByteArray("{}");
}

void EventExampleTest::usableFileOpensWithoutAWord()
{
    QFETCH(QByteArray, content);
    setDummyData(content);
    const BoxReader boxes;
    EventExample dialog;
    dialog.prepareExample(event(m_root, "login"));
    dialog.showExample();
    QVERIFY(dialog.isVisible());
    QTest::qWait(50);
    QVERIFY(boxes.titles.isEmpty());
}

void EventExampleTest::fileIsReadOnce()
{
    EventExample dialog;
    setDummyData("{}");
    dialog.prepareExample(event(m_root, "login"));
    QCOMPARE(dialog.getDummyDataFromFile(QStringLiteral("host")), QStringLiteral("station"));
}

void EventExampleTest::namesThatLookLikeMarkupOfTheRecordAreEscaped()
{
    const QString hostile
        = QStringLiteral("a\"b\\c\n\t%1 %2</b>{}\u2028\u2029\u00a0,\":\u0001") + QChar(0x7f);
    EventTreeItem *login = event(m_root, "login");
    login->localizedName = hostile;
    login->parentItem()->localizedName = hostile;
    EventLookup::findMessageParameter(*login, QStringLiteral("message_id"))->setData(1, hostile);
    EventTreeItem *tty = Tree::at(*login, "extend-message-params/tty");
    tty->nativeName = hostile;
    QJsonObject data = QJsonDocument::fromJson(dummyData).object();
    for (const char *key : {"time", "priority", "source", "host"}) {
        data.insert(QLatin1String(key), QJsonObject{{QStringLiteral("text"), hostile}});
    }
    data.insert(hostile, QJsonObject{{QStringLiteral("text"), QString(hostile + hostile)}});
    setDummyData(QJsonDocument(data).toJson());

    EventExample dialog;
    dialog.prepareExample(login);
    const QJsonObject object = record(dialog);
    QCOMPARE(object.size(), 5);
    QCOMPARE(object.value(QStringLiteral("HOST")).toString(), hostile);
    QCOMPARE(object.value(QStringLiteral("PRIORITY")).toString(), hostile);
    QCOMPARE(object.value(QStringLiteral("ISODATE")).toString(), hostile);
    QCOMPARE(object.value(QStringLiteral("MSG")).toObject().keys(), QStringList{hostile});
    const QJsonObject members = message(dialog);
    QCOMPARE(members.value(QStringLiteral("message_id")).toString(), hostile);
    QCOMPARE(members.value(hostile).toString(), QString(hostile + hostile));
    if (LocaleKeeper::Instance()->language() == QLatin1String("English")) {
        QCOMPARE(members.value(QStringLiteral("name_en")).toString(), hostile);
        QCOMPARE(members.value(QStringLiteral("type_en")).toString(), hostile);
    }
    // One line, whatever the names hold.
    QVERIFY(!text(dialog)->toPlainText().contains(QLatin1Char('\n')));
}

void EventExampleTest::eventWithoutExtendedParametersHasNone()
{
    m_sandbox->addEvent("logins", "bare",
                        R"({"event-group": "logins", "message-params": {"message_id": "bare_message"}})");
    m_root = m_sandbox->parse();
    EventExample dialog;
    dialog.prepareExample(event(m_root, "bare"));
    QCOMPARE(rows(dialog).size(), 8);
    QCOMPARE(rows(dialog).at(6), QStringLiteral("Source=auth"));
    QCOMPARE(rows(dialog).at(7), QStringLiteral("Host=station"));
    QCOMPARE(message(dialog).value(QStringLiteral("message_id")).toString(), QStringLiteral("bare_message"));
}

void EventExampleTest::eventWithoutMessageIdentifierStillHasAnExample()
{
    m_sandbox->addEvent("logins", "bare", R"({"event-group": "logins"})");
    m_root = m_sandbox->parse();
    EventExample dialog;
    dialog.prepareExample(event(m_root, "bare"));
    QCOMPARE(rows(dialog).at(2), QStringLiteral("message_id="));
    QCOMPARE(message(dialog).value(QStringLiteral("message_id")), QJsonValue(QString()));
}

void EventExampleTest::nextEventReplacesTheFormer()
{
    m_sandbox->addEvent("logins", "bare", R"({"event-group": "logins"})");
    m_root = m_sandbox->parse();
    EventExample dialog;
    dialog.prepareExample(event(m_root, "login"));
    const QStringList login = rows(dialog);
    const QString loginRecord = text(dialog)->toPlainText();
    dialog.prepareExample(event(m_root, "bare"));
    QCOMPARE(rows(dialog).size(), 8);
    QVERIFY(text(dialog)->toPlainText() != loginRecord);
    dialog.prepareExample(event(m_root, "login"));
    QCOMPARE(rows(dialog), login);
    QCOMPARE(text(dialog)->toPlainText(), loginRecord);
}

void EventExampleTest::textsCanBeSelectedAndNotChanged()
{
    EventExample dialog;
    dialog.prepareExample(event(m_root, "login"));
    dialog.showExample();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    const QString before = text(dialog)->toPlainText();
    text(dialog)->setFocus();
    QTest::keyClicks(text(dialog), QStringLiteral("x"));
    QCOMPARE(text(dialog)->toPlainText(), before);
    QTest::keyClick(text(dialog), Qt::Key_A, Qt::ControlModifier);
    QCOMPARE(text(dialog)->textCursor().selectedText(), before);
    const QModelIndex cell = table(dialog)->model()->index(0, 1);
    QTest::mouseDClick(table(dialog)->viewport(), Qt::LeftButton, {},
                       table(dialog)->visualRect(cell).center());
    QTest::keyClick(table(dialog), Qt::Key_F2);
    QVERIFY(table(dialog)->findChildren<QLineEdit *>().isEmpty());
}

void EventExampleTest::dialogCanBeUsedWithTheKeyboard()
{
    EventExample dialog;
    QCOMPARE(dialog.windowTitle(), QStringLiteral("Example of a log entry"));
    const auto *textLabel = dialog.findChild<QLabel *>(QStringLiteral("labelExampleText"));
    const auto *tableLabel = dialog.findChild<QLabel *>(QStringLiteral("labelExampleTable"));
    QCOMPARE(textLabel->text(), QStringLiteral("Example in /vortan/log/nivra/events:"));
    QCOMPARE(tableLabel->text(), QStringLiteral("Example in zep-event-viewer:"));
    QCOMPARE(textLabel->buddy(), text(dialog));
    QCOMPARE(tableLabel->buddy(), table(dialog));
    dialog.prepareExample(event(m_root, "login"));
    dialog.showExample();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    text(dialog)->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), table(dialog));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QPushButton *close
        = dialog.findChild<QDialogButtonBox *>(QStringLiteral("buttonBox"))->button(QDialogButtonBox::Close);
    QCOMPARE(QApplication::focusWidget(), close);
    QTest::keyClick(close, Qt::Key_Space);
    QVERIFY(!dialog.isVisible());
    dialog.showExample();
    QTest::keyClick(&dialog, Qt::Key_Escape);
    QVERIFY(!dialog.isVisible());
}

void EventExampleTest::everyShippedEventHasAValidRecord()
{
    copyShipped(*m_sandbox);
    m_root = m_sandbox->parse();
    const QHash<QString, EventTreeItem *> events = EventLookup::eventsById(*m_root);
    QVERIFY(events.size() > 100);
    EventExample dialog;
    for (EventTreeItem *shipped : events) {
        dialog.prepareExample(shipped);
        const QJsonObject object = record(dialog);
        QVERIFY2(object.size() == 5, qPrintable(shipped->nativeName));
        const QJsonObject members = message(dialog);
        QVERIFY2(!members.value(QStringLiteral("message_id")).toString().isEmpty(),
                 qPrintable(shipped->nativeName));
        // "1", six fields before and the host after the extended ones; identifier and names beside them.
        const bool named
            = members.contains(QStringLiteral("name_en")) || members.contains(QStringLiteral("name_ru"));
        QCOMPARE(rows(dialog).size(), 8 + members.size() - 1 - (named ? 2 : 0));
        const QStringList fields = rows(dialog);
        for (const QString &field : fields) {
            QVERIFY2(!field.startsWith(QLatin1Char('=')) && !field.endsWith(QLatin1Char('=')),
                     qPrintable(shipped->nativeName + QLatin1Char(' ') + field));
        }
    }
}

void EventExampleTest::everyShippedEventFitsIntoTheWindow()
{
    copyShipped(*m_sandbox);
    m_root = m_sandbox->parse();
    EventExample dialog;
    dialog.showExample();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    // What a window manager adds needs room as well.
    QVERIFY(dialog.width() <= 1000);
    QVERIFY(dialog.height() <= 700);
    const QHash<QString, EventTreeItem *> events = EventLookup::eventsById(*m_root);
    for (EventTreeItem *shipped : events) {
        dialog.prepareExample(shipped);
        QCoreApplication::processEvents();
        QVERIFY2(text(dialog)->verticalScrollBar()->maximum() == 0, qPrintable(shipped->nativeName));
        QVERIFY2(table(dialog)->horizontalScrollBar()->maximum() == 0, qPrintable(shipped->nativeName));
        QVERIFY2(table(dialog)->verticalScrollBar()->maximum() == 0, qPrintable(shipped->nativeName));
    }
}

QTEST_MAIN(EventExampleTest)

#include "eventexampletest.moc"
