// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "catalogrules.h"

#include "nodedictionary.h"

#include <QRegularExpression>
#include <QTest>

/// The node dictionary and the example data, measured against the shipped catalog.
class ShippedDictionaryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void everyParameterHasAnEntry();
    void everyAuditOperationHasAnEntry();
    void everyEntryIsUsed();
    void entriesHoldKnownMembersOnly();
    void russianNamesAreUnique();
    void internalsAreHidden();
    void whatAnAdministratorNeedsIsShown();
    void identifiersCannotBeEdited();
    void filterValuesCanBeEdited();
    void switchableParametersAreNotGreyedOut();
    void theIntervalIsANumberInItsRange();
    void numbersHaveARange();
    void everyExtendedParameterHasAnExample();
    void theFixedFieldsOfARecordHaveAnExample();
    void everyExampleIsUsed();

private:
    /// What the page knows about @p name; a plain entry when it knows nothing.
    [[nodiscard]] NodeDictionary::Entry entry(const QString &name) const
    {
        const NodeDictionary::Entry *found = m_dictionary.find(name);
        return found ? *found : NodeDictionary::Entry();
    }

    [[nodiscard]] QString member(const QString &name, const char *key) const
    {
        return m_entries.value(name).toObject().value(QLatin1String(key)).toString();
    }

    CatalogFiles m_catalog;
    QJsonObject m_entries;
    QJsonObject m_examples;
    NodeDictionary m_dictionary; ///< the same entries as the page reads them
    QSet<QString> m_names;
    QSet<QString> m_extended;
};

void ShippedDictionaryTest::initTestCase()
{
    const QString dictionary = QStringLiteral(SHIPPED_DATA "/zep-admin-events/eventsdictionary.json");
    QStringList problems;
    m_catalog = CatalogFiles::read(QStringLiteral(SHIPPED_DATA "/event-settings"));
    m_entries = readJsonObject(dictionary, &problems);
    m_examples
        = readJsonObject(QStringLiteral(SHIPPED_DATA "/zep-admin-events/eventexample.json"), &problems);
    m_dictionary = NodeDictionary::fromFile(dictionary);
    problems += m_catalog.problems;
    QVERIFY2(problems.isEmpty(), qPrintable(problems.join(QLatin1Char('\n'))));
    for (const CatalogFiles::Event &event : std::as_const(m_catalog.events)) {
        m_names.unite(memberNames(event.description));
        const QStringList extended = extendedParameters(event).keys();
        m_extended.unite(QSet<QString>(extended.begin(), extended.end()));
    }
    QVERIFY(m_names.size() > 50 && m_extended.size() > 20);
}

void ShippedDictionaryTest::everyParameterHasAnEntry()
{
    for (const QString &name : std::as_const(m_names)) {
        QVERIFY2(m_dictionary.find(name), qPrintable(name));
        QVERIFY2(!entry(name).russianName.isEmpty(), qPrintable(name));
    }
}

void ShippedDictionaryTest::everyAuditOperationHasAnEntry()
{
    const QStringList identifiers = CatalogRules::auditIdentifiers();
    for (const QString &identifier : identifiers) {
        QVERIFY2(m_dictionary.find(identifier), qPrintable(identifier));
    }
}

void ShippedDictionaryTest::everyEntryIsUsed()
{
    const QStringList names = m_entries.keys();
    for (const QString &name : names) {
        QVERIFY2(m_names.contains(name), qPrintable(name));
    }
}

void ShippedDictionaryTest::entriesHoldKnownMembersOnly()
{
    static const QSet<QString> flags{QStringLiteral("visible"), QStringLiteral("editable"),
                                     QStringLiteral("children_editable")};
    static const QSet<QString> texts{QStringLiteral("ru"), QStringLiteral("type"), QStringLiteral("min"),
                                     QStringLiteral("max"), QStringLiteral("unit")};
    for (auto it = m_entries.constBegin(); it != m_entries.constEnd(); ++it) {
        const QJsonObject members = it->toObject();
        for (const QString &flag : flags) {
            const QString value = members.value(flag).toString();
            QVERIFY2(value == QLatin1String("true") || value == QLatin1String("false"), qPrintable(it.key()));
        }
        const QStringList keys = members.keys();
        for (const QString &key : keys) {
            QVERIFY2(flags.contains(key) || texts.contains(key),
                     qPrintable(it.key() + QLatin1Char('/') + key));
            QVERIFY2(members.value(key).isString(), qPrintable(it.key() + QLatin1Char('/') + key));
        }
    }
}

void ShippedDictionaryTest::russianNamesAreUnique()
{
    static const QRegularExpression form(QStringLiteral("\\A[А-ЯЁ][^\\x00-\\x1f]*[^ ]\\z|\\AIP-адрес\\z"));
    QHash<QString, QString> owners;
    for (auto it = m_entries.constBegin(); it != m_entries.constEnd(); ++it) {
        const QString russian = member(it.key(), "ru");
        QVERIFY2(form.match(russian).hasMatch(), qPrintable(it.key()));
        const QString folded = russian.toLower();
        QVERIFY2(!owners.contains(folded),
                 qPrintable(it.key() + QLatin1String(" is called like ") + owners.value(folded)));
        owners.insert(folded, it.key());
    }
}

void ShippedDictionaryTest::internalsAreHidden()
{
    for (const char *name :
         {"enabled", "event-group", "name_en", "name_ru", "message-depends", "conflicts-with",
          "is-not-redirected", "generates-load", "message-audit-rules"}) {
        QVERIFY2(!entry(QLatin1String(name)).visible, name);
    }
}

void ShippedDictionaryTest::whatAnAdministratorNeedsIsShown()
{
    for (const char *name : {"message_id", "message-type", "extend-message-params", "filter-values",
                             ".auditd.key", "notification_repetition", "interval", "directories",
                             "message-audit-events", "users", "groups", "other", "succ", "fail"}) {
        QVERIFY2(m_dictionary.find(QLatin1String(name)), name);
        QVERIFY2(entry(QLatin1String(name)).visible, name);
    }
}

void ShippedDictionaryTest::identifiersCannotBeEdited()
{
    for (const char *name : {"message_id", "message-type", "field"}) {
        QVERIFY2(m_dictionary.find(QLatin1String(name)), name);
        QVERIFY2(!entry(QLatin1String(name)).editable, name);
    }
    // A child that may be edited because its parent says so would be editable after all.
    for (const char *name : {"message-params", "extend-message-params"}) {
        QVERIFY2(!entry(QLatin1String(name)).childrenEditable, name);
    }
    for (const QString &name : std::as_const(m_extended)) {
        QVERIFY2(!entry(name).childrenEditable, qPrintable(name));
    }
}

void ShippedDictionaryTest::filterValuesCanBeEdited()
{
    QVERIFY(entry(QStringLiteral("filter-values")).childrenEditable);
    for (const CatalogFiles::Event &event : std::as_const(m_catalog.events)) {
        const QStringList names = event.description.value(QLatin1String("filter-values")).toObject().keys();
        for (const QString &name : names) {
            QVERIFY2(entry(name).visible, qPrintable(name));
        }
    }
}

void ShippedDictionaryTest::switchableParametersAreNotGreyedOut()
{
    for (const CatalogFiles::Event &event : std::as_const(m_catalog.events)) {
        const QJsonObject parameters = extendedParameters(event);
        for (auto it = parameters.begin(); it != parameters.end(); ++it) {
            QVERIFY2(entry(it.key()).editable == it->isObject(),
                     qPrintable(event.id + QLatin1Char('/') + it.key()));
        }
    }
}

void ShippedDictionaryTest::theIntervalIsANumberInItsRange()
{
    const NodeDictionary::Entry interval = entry(QStringLiteral("interval"));
    QVERIFY(interval.isNumber && interval.hasRange && interval.editable);
    QCOMPARE(interval.minimum, 5);
    QCOMPARE(interval.maximum, 3600);
}

void ShippedDictionaryTest::numbersHaveARange()
{
    int numbers = 0;
    for (auto it = m_entries.constBegin(); it != m_entries.constEnd(); ++it) {
        const NodeDictionary::Entry read = entry(it.key());
        const bool typed = it->toObject().contains(QLatin1String("type"));
        QVERIFY2(typed == read.isNumber, qPrintable(it.key()));
        QVERIFY2(typed == (read.hasRange && read.minimum < read.maximum), qPrintable(it.key()));
        QVERIFY2(typed != member(it.key(), "unit").isEmpty(), qPrintable(it.key()));
        numbers += typed;
    }
    QCOMPARE(numbers, 3);
}

void ShippedDictionaryTest::everyExtendedParameterHasAnExample()
{
    for (const QString &name : std::as_const(m_extended)) {
        const QString text = m_examples.value(name).toObject().value(QLatin1String("text")).toString();
        QVERIFY2(!text.isEmpty(), qPrintable(name));
    }
}

void ShippedDictionaryTest::theFixedFieldsOfARecordHaveAnExample()
{
    for (const char *name : {"time", "priority", "source", "host"}) {
        const QString text
            = m_examples.value(QLatin1String(name)).toObject().value(QLatin1String("text")).toString();
        QVERIFY2(!text.isEmpty(), name);
    }
    const QString source
        = m_examples.value(QLatin1String("source")).toObject().value(QLatin1String("text")).toString();
    QVERIFY(source.startsWith(QLatin1String("nivra-")));
    const bool isType = std::any_of(
        m_catalog.events.cbegin(), m_catalog.events.cend(), [&source](const auto &event) {
            return QLatin1String("nivra-") + event.description.value(QLatin1String("message-type")).toString()
                == source;
        });
    QVERIFY2(isType, qPrintable(source));
}

void ShippedDictionaryTest::everyExampleIsUsed()
{
    static const QSet<QString> fixed{QStringLiteral("time"), QStringLiteral("priority"),
                                     QStringLiteral("source"), QStringLiteral("host")};
    for (auto it = m_examples.constBegin(); it != m_examples.constEnd(); ++it) {
        QVERIFY2(fixed.contains(it.key()) || m_extended.contains(it.key()), qPrintable(it.key()));
        QCOMPARE(it->toObject().keys(), QStringList{QStringLiteral("text")});
    }
}

QTEST_GUILESS_MAIN(ShippedDictionaryTest)

#include "shippeddictionarytest.moc"
