// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include <KCModule>
#include <KPluginFactory>

#include <QCborMap>
#include <QCborValue>
#include <QFile>
#include <QLibrary>
#include <QPluginLoader>
#include <QTemporaryDir>
#include <QTest>

/// The plug-in as a shell loads it: through the library file.
class FactoryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void metadataHoldsInterfaceAndClassNameOnly();
    void everyCallReturnsTheSameInstance();
    void factoryAnswersToItsNameAndToItsInterface();
    void factoryCreatesThePageWithoutAKeyword();

private:
    QTemporaryDir m_root;
};

void FactoryTest::initTestCase()
{
    qputenv("ADMINEVENTS_ROOT", m_root.path().toLocal8Bit());
}

void FactoryTest::metadataHoldsInterfaceAndClassNameOnly()
{
    // The function returns a pointer without a length, so the block is read where it lies in the library
    // file.
    QLibrary library(QStringLiteral(KCM_ADMINEVENTS_PATH));
    using Query = const char *(*)();
    const auto query = reinterpret_cast<Query>(library.resolve("qt_plugin_query_metadata"));
    QVERIFY2(query, qPrintable(library.errorString()));
    const QByteArray magic("QTMETADATA !");
    QCOMPARE(QByteArray(query(), magic.size()), magic);
    QFile file(QStringLiteral(KCM_ADMINEVENTS_PATH));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray content = file.readAll();
    const int start = content.indexOf(magic);
    QVERIFY(start >= 0);
    // Twelve characters of magic and four of version and build flags stand before the map.
    constexpr int header = 16;
    QCOMPARE(QByteArray(query(), header), content.mid(start, header));
    const QCborMap map = QCborValue::fromCbor(content.mid(start + header)).toMap();
    QCOMPARE(map.size(), qint64(2));
    QStringList values;
    for (const auto &entry : map) {
        values.append(entry.second.toString());
    }
    values.sort();
    QCOMPARE(values,
             (QStringList{QStringLiteral("AdminEventsFactory"), QStringLiteral("org.kde.KPluginFactory")}));
}

void FactoryTest::everyCallReturnsTheSameInstance()
{
    QLibrary library(QStringLiteral(KCM_ADMINEVENTS_PATH));
    using Instance = QObject *(*)();
    const auto instance = reinterpret_cast<Instance>(library.resolve("qt_plugin_instance"));
    QVERIFY(instance);
    QObject *first = instance();
    QVERIFY(first);
    QCOMPARE(instance(), first);
    delete first;
    QVERIFY(instance() != nullptr); // guarded: a destroyed factory is made anew
}

void FactoryTest::factoryAnswersToItsNameAndToItsInterface()
{
    QPluginLoader loader(QStringLiteral(KCM_ADMINEVENTS_PATH));
    QObject *factory = loader.instance();
    QVERIFY2(factory, qPrintable(loader.errorString()));
    QVERIFY(factory->qt_metacast("AdminEventsFactory"));
    QVERIFY(factory->qt_metacast("org.kde.KPluginFactory"));
    QVERIFY(!factory->qt_metacast("SomethingElse"));
    QVERIFY(qobject_cast<KPluginFactory *>(factory));
}

void FactoryTest::factoryCreatesThePageWithoutAKeyword()
{
    QPluginLoader loader(QStringLiteral(KCM_ADMINEVENTS_PATH));
    auto *factory = qobject_cast<KPluginFactory *>(loader.instance());
    QVERIFY(factory);
    QWidget parent;
    auto *page = factory->create<KCModule>(&parent, {QStringLiteral("one"), QStringLiteral("two")});
    QVERIFY(page);
    QCOMPARE(page->parentWidget(), &parent);
    QCOMPARE(page->metaObject()->className(), "AdminEventsModule");
    QVERIFY(page->inherits("KCMGS::GuardKCModule"));
    QVERIFY(page->inherits("KCMNV::NivraKCModule"));
    QCOMPARE(page->buttons(), KCModule::Help | KCModule::Apply);
}

QTEST_MAIN(FactoryTest)

#include "factorytest.moc"
