// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "eventexample.h"

#include "ui_eventexample.h"

#include <coreutils.h>
#include <eventlookup.h>
#include <eventtreeitem.h>
#include <guiutils.h>
#include <jsontext.h>
#include <localekeeper.h>
#include <systempaths.h>

#include <KLocalizedString>

#include <QFontDatabase>
#include <QJsonObject>
#include <QMessageBox>
#include <QPointer>
#include <QStandardItemModel>

namespace {
QString typeName(const EventTreeItem &event)
{
    const EventTreeItem *type = event.parentItem();
    return type ? type->shownName() : QString();
}

/// Appends a member of a JSON object, in front of which @p record may hold another one.
void appendMember(QString &record, const QString &name, const QString &value)
{
    if (!record.endsWith(QLatin1Char('{'))) {
        record += QLatin1Char(',');
    }
    JsonText::appendQuoted(record, name);
    record += QLatin1Char(':');
    JsonText::appendQuoted(record, value);
}
} // namespace

struct EventExample::Field
{
    QString key;
    QString name;
    QString value;
};

EventExample::EventExample(QWidget *parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui_EventExample>())
    , m_model(new QStandardItemModel(0, 2, this))
    , m_dummyData(readEventExampleFile())
{
    m_ui->setupUi(this);
    m_ui->exampleTable->setModel(m_model);
    m_ui->exampleTable->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_ui->exampleTable->verticalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_ui->exampleText->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_ui->exampleText->setWordWrapMode(QTextOption::WrapAnywhere);
    constexpr int shownLines = 6;
    const QMargins margins = m_ui->exampleText->contentsMargins();
    m_ui->exampleText->setFixedHeight(shownLines * m_ui->exampleText->fontMetrics().lineSpacing()
                                      + 2 * qRound(m_ui->exampleText->document()->documentMargin())
                                      + margins.top() + margins.bottom());
}

EventExample::~EventExample() = default;

QJsonDocument EventExample::readEventExampleFile() const
{
    const auto content = Core::Utils::readFile(SystemPaths::resolve(SystemPaths::exampleData()));
    if (!content.success) {
        return {};
    }
    return Core::Utils::convertFromJson(content.payload()).payload();
}

QString EventExample::getDummyDataFromFile(const QString &key) const
{
    const QJsonValue text = m_dummyData.object().value(key).toObject().value(QLatin1String("text"));
    return text.isString() || text.isDouble() ? text.toVariant().toString() : i18n("value");
}

QVector<EventExample::Field> EventExample::extendedFields(const EventTreeItem &event) const
{
    QVector<Field> fields;
    const EventTreeItem *parameters = event.member(QLatin1String("extend-message-params"));
    const int count = parameters ? parameters->childCount() : 0;
    for (int row = 0; row < count; ++row) {
        const EventTreeItem &parameter = *parameters->eventChild(row);
        // The time of the record stands in a place of its own; hidden nodes are records of a merge.
        if (parameter.visible && parameter.nativeName != QLatin1String("time")) {
            fields.append(
                {parameter.nativeName, parameter.shownName(), getDummyDataFromFile(parameter.nativeName)});
        }
    }
    return fields;
}

void EventExample::prepareExample(EventTreeItem *item)
{
    m_model->removeRows(0, m_model->rowCount());
    m_model->setHorizontalHeaderLabels({i18n("Field"), i18n("Value")});
    const QString idKey = QStringLiteral("message_id");
    const EventTreeItem *id = EventLookup::findMessageParameter(*item, idKey);
    const QString messageId = id ? id->value(1).toString() : QString();

    int row = 0;
    const auto insert
        = [this, &row](const QString &name, const QString &value) { insertParamInModel(row++, name, value); };
    insert(i18n("№"), QStringLiteral("1"));
    insert(i18n("Date and time"), getDummyDataFromFile(QStringLiteral("time")));
    insert(id ? id->shownName() : idKey, messageId);
    insert(i18n("Event type"), typeName(*item));
    insert(i18n("Priority"), getDummyDataFromFile(QStringLiteral("priority")));
    insert(i18n("Event name"), item->shownName());
    insert(i18n("Source"), getDummyDataFromFile(QStringLiteral("source")));
    const QVector<Field> fields = extendedFields(*item);
    for (const Field &field : fields) {
        insert(field.name, field.value);
    }
    insert(i18n("Host"), getDummyDataFromFile(QStringLiteral("host")));
    m_ui->exampleText->setPlainText(recordText(*item, messageId));
    m_ui->exampleTable->scrollToTop();
}

QString EventExample::recordText(const EventTreeItem &event, const QString &messageId) const
{
    QString record = QStringLiteral("{");
    appendMember(record, QStringLiteral("PRIORITY"), getDummyDataFromFile(QStringLiteral("priority")));
    record += QLatin1String(",\"MSG\":{");
    JsonText::appendQuoted(record, getDummyDataFromFile(QStringLiteral("source")));
    record += QLatin1String(":{");
    const QString language = LocaleKeeper::Instance()->language();
    const bool russian = language == QLatin1String("Russian");
    if (russian || language == QLatin1String("English")) {
        const QString suffix = russian ? QStringLiteral("_ru") : QStringLiteral("_en");
        appendMember(record, QLatin1String("name") + suffix, event.shownName());
        appendMember(record, QLatin1String("type") + suffix, typeName(event));
    }
    const QVector<Field> fields = extendedFields(event);
    for (const Field &field : fields) {
        appendMember(record, field.key, field.value);
    }
    appendMember(record, QStringLiteral("message_id"), messageId);
    record += QLatin1String("}}");
    appendMember(record, QStringLiteral("ISODATE"), getDummyDataFromFile(QStringLiteral("time")));
    appendMember(record, QStringLiteral("HOST"), getDummyDataFromFile(QStringLiteral("host")));
    appendMember(record, QStringLiteral("FACILITY"), QStringLiteral("user"));
    record += QLatin1Char('}');
    // A text field takes these for line breaks or blanks; within the strings of a record they can be escaped.
    for (const char16_t special : {u'\u00a0', u'\u2028', u'\u2029', u'\ufdd0', u'\ufdd1'}) {
        record.replace(QChar(special), QStringLiteral("\\u%1").arg(uint(special), 4, 16, QLatin1Char('0')));
    }
    return record;
}

void EventExample::insertParamInModel(int row, const QString &name, const QString &value)
{
    m_model->insertRow(row, {new QStandardItem(name), new QStandardItem(value)});
}

void EventExample::showExample()
{
    const QPointer<EventExample> self(this); // may end in the message box
    if (m_dummyData.isNull()) {
        const QString path = SystemPaths::resolve(SystemPaths::exampleData());
        const QPointer<QMessageBox> box(
            new QMessageBox(QMessageBox::Warning, i18n("No event configuration detected"),
                            i18n("No event configuration detected"), QMessageBox::Ok, parentWidget()));
        box->setInformativeText(i18n("Config file \"%1\" is corrupted or does not exist.\n"
                                     "Some of dummy data will be empty.",
                                     path));
        box->exec();
        delete box;
    }
    if (self) {
        Gui::Utils::bringUp(*this);
    }
}
