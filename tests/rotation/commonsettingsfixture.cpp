// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "commonsettingsfixture.h"

#include <systempaths.h>

#include <KLocalizedString>

#include <QApplication>
#include <QDialogButtonBox>
#include <QDir>
#include <QPushButton>
#include <QSpinBox>
#include <QTabWidget>
#include <QTest>

namespace {
constexpr char mainConfiguration[]
    = "source nivra_events_src {\n    internal();\n};\n"
      "destination nivra_json_dst {\n    file(\"/x\");\n};\n"
      "log {\n    source(nivra_events_src);\n    destination(nivra_json_dst);\n};\n";
constexpr char rotation[] = "/a {\n\trotate 4\n}\n";
} // namespace

void CommonSettingsFixture::write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    QVERIFY2(file.open(QIODevice::WriteOnly), qPrintable(path));
    QCOMPARE(file.write(content), content.size());
}

QByteArray CommonSettingsFixture::read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString CommonSettingsFixture::asked() const
{
    return QString::fromLocal8Bit(read(m_bus.root() + QStringLiteral("/asked")))
        .remove(m_bus.root() + QLatin1Char('/'))
        .trimmed();
}

void CommonSettingsFixture::show(const char *tab) const
{
    m_window->open();
    find<QTabWidget>("tabWidget")->setCurrentWidget(find<QWidget>(tab));
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
}

QLineEdit *CommonSettingsFixture::fileLine(const char *page) const
{
    return find<QWidget>(page)->findChild<QLineEdit *>(QStringLiteral("fileLineEdit"));
}

void CommonSettingsFixture::clickOk() const
{
    QTest::mouseClick(find<QDialogButtonBox>("buttonBox")->button(QDialogButtonBox::Ok), Qt::LeftButton);
}

void CommonSettingsFixture::editRotation(int number) const
{
    find<QSpinBox>("numberOfLogs")->setValue(number);
}

void CommonSettingsFixture::initTestCase()
{
    KLocalizedString::setLanguages({QStringLiteral("en")});
    QVERIFY2(m_bus.start(), qPrintable(m_bus.errorString()));
    qputenv("ADMINEVENTS_ROOT", m_bus.root().toLocal8Bit());
    m_helper = std::make_unique<LeashedProcess>();
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("STAGED_HELPER_LOG"), m_bus.root() + QStringLiteral("/asked"));
    m_helper->setProcessEnvironment(environment);
    m_helper->setProcessChannelMode(QProcess::ForwardedChannels);
    m_helper->start(QStringLiteral(STAGED_HELPER_PATH), QStringList());
    QVERIFY(m_helper->waitForStarted());
    QTRY_COMPARE(m_bus.helperPid(), m_helper->processId());
    QVERIFY(QDir().mkpath(m_bus.root() + SystemPaths::eventLogDirectory()));
}

void CommonSettingsFixture::init()
{
    QVERIFY(m_bus.setAllowed(true));
    QFile::remove(m_bus.root() + QStringLiteral("/asked"));
    write(m_bus.root() + SystemPaths::mainConfiguration(), mainConfiguration);
    write(m_bus.root() + SystemPaths::rotationFile(), rotation);
    m_service = std::make_unique<ConfigAccessService>(nullptr);
    m_window = std::make_unique<CommonSettingsWindow>(*m_service, nullptr);
}

void CommonSettingsFixture::cleanup()
{
    m_window.reset();
    m_service.reset();
    QVERIFY(!QGuiApplication::overrideCursor());
}
