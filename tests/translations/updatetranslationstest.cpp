// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

namespace {

const auto code = QByteArrayLiteral("auto a = i18n(\"Plain text\");\n"
                                    "auto b = i18nc(\"a place\", \"Text of %1\", x);\n");
const auto form = QByteArrayLiteral(
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<ui version=\"4.0\"><class>Form</class><widget class=\"QLabel\" name=\"Form\">"
    "<property name=\"text\"><string>Text &amp; form</string></property>"
    "<property name=\"title\"><string notr=\"true\">Left alone</string></property></widget></ui>\n");
const auto header
    = QByteArrayLiteral("msgid \"\"\nmsgstr \"\"\n"
                        "\"Project-Id-Version: sample\\n\"\n\"PO-Revision-Date: 2026-01-01 00:00+0000\\n\"\n"
                        "\"Last-Translator: Nobody\\n\"\n\"Language-Team: Russian\\n\"\n\"Language: ru\\n\"\n"
                        "\"MIME-Version: 1.0\\n\"\n\"Content-Type: text/plain; charset=UTF-8\\n\"\n"
                        "\"Content-Transfer-Encoding: 8bit\\n\"\n\n");
const auto plain = QByteArrayLiteral("msgid \"Plain text\"\nmsgstr \"Простой текст\"\n\n");
const auto placed
    = QByteArrayLiteral("#, kde-format\nmsgctxt \"a place\"\nmsgid \"Text of %1\"\nmsgstr \"Текст %1\"\n\n");
const auto formed = QByteArrayLiteral("msgid \"Text & form\"\nmsgstr \"Текст и форма\"\n\n");

struct Outcome
{
    int exitCode = -1;
    QString output;
};

} // namespace

/** The command on a project of three texts. */
class UpdateTranslationsTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        m_project = std::make_unique<QTemporaryDir>();
        QVERIFY(m_project->isValid());
        for (const char *name : {"tools/update-translations", "tools/lib.sh", "po/forms.its"}) {
            copy(QLatin1String(name));
        }
        write("module/page.cpp", code);
        write("forms/page.ui", form);
        write("tests/pagetest.cpp", "auto a = i18n(\"Only tested\");\n");
        write("build/generated.cpp", "auto a = i18n(\"Only generated\");\n");
        write("elsewhere/CMakeCache.txt", "");
        write("elsewhere/generated.cpp", "auto a = i18n(\"Generated elsewhere\");\n");
        write(translation, header + plain + placed + formed);
    }

    void aCompleteTranslationPasses()
    {
        const Outcome outcome = run({QStringLiteral("--check")});
        QCOMPARE(outcome.output, QString());
        QCOMPARE(outcome.exitCode, 0);
    }

    void whatIsWrongIsNamed_data()
    {
        QTest::addColumn<QByteArray>("messages");
        QTest::addColumn<QString>("complaint");
        QTest::newRow("missing") << plain + placed << QStringLiteral("not translated: Text & form\n");
        QTest::newRow("missing with context")
            << plain + formed << QStringLiteral("not translated: [a place] Text of %1\n");
        QTest::newRow("untranslated") << QByteArray("msgid \"Plain text\"\nmsgstr \"\"\n\n") + placed + formed
                                      << QStringLiteral("not translated: Plain text\n");
        QTest::newRow("fuzzy") << "#, fuzzy\n" + plain + placed + formed
                               << QStringLiteral("fuzzy: Plain text\n");
        QTest::newRow("unused") << plain + placed + formed + "msgid \"Gone\"\nmsgstr \"Прочь\"\n"
                                << QStringLiteral("no longer in the sources: Gone\n");
        QTest::newRow("obsolete") << plain + placed + formed + "#~ msgid \"Gone\"\n#~ msgstr \"Прочь\"\n"
                                  << QStringLiteral("no longer in the sources: Gone\n");
        QTest::newRow("straight quotes")
            << QByteArray("msgid \"Plain text\"\nmsgstr \"\\\"Простой\\\" текст\"\n\n") + placed + formed
            << QStringLiteral("straight quotation marks in the translation: Plain text\n");
        const QByteArray lost = "msgctxt \"a place\"\nmsgid \"Text of %1\"\nmsgstr \"Текст\"\n";
        QTest::newRow("lost placeholder")
            << plain + formed + "#, kde-format\n" + lost << QStringLiteral("not well-formed\n");
        QTest::newRow("lost placeholder without mark")
            << plain + formed + lost << QStringLiteral("fuzzy: [a place] Text of %1\n");
        QTest::newRow("no file of messages")
            << QByteArray("msgid \"Plain text\n") << QStringLiteral("not well-formed\n");
    }

    void whatIsWrongIsNamed()
    {
        QFETCH(const QByteArray, messages);
        QFETCH(const QString, complaint);
        write(translation, header + messages);
        const Outcome outcome = run({QStringLiteral("--check")});
        QCOMPARE(outcome.exitCode, 1);
        QVERIFY2(outcome.output.endsWith(QStringLiteral("po/ru/nivra_kcm_admin_events.po: ") + complaint),
                 qPrintable(outcome.output));
        QCOMPARE(read(translation), header + messages);
    }

    void aNewTextIsFoundInEverySourceFolder()
    {
        write("another/deeper/new.h", "const auto a = ki18n(\"New text\");\n");
        const Outcome outcome = run({QStringLiteral("--check")});
        QCOMPARE(outcome.exitCode, 1);
        QVERIFY2(outcome.output.endsWith(QLatin1String("not translated: New text\n")),
                 qPrintable(outcome.output));
    }

    void anUpdateKeepsTranslationsAndMarksWhatIsNew()
    {
        write("module/page.cpp", code + "auto c = i18n(\"Something else entirely\");\n");
        write(translation, header + plain + placed + formed + "msgid \"Gone\"\nmsgstr \"Прочь\"\n");
        QCOMPARE(run({}).exitCode, 0);
        const QByteArray updated = read(translation);
        QVERIFY(updated.contains("msgid \"Plain text\"\nmsgstr \"Простой текст\"\n"));
        QVERIFY(updated.contains("msgid \"Text & form\"\nmsgstr \"Текст и форма\"\n"));
        QVERIFY(updated.contains("msgid \"Something else entirely\"\nmsgstr \"\"\n"));
        QVERIFY(!updated.contains("Gone"));
        QVERIFY(!updated.contains("Left alone"));
        QVERIFY(!updated.contains("Only tested"));
        QVERIFY(!updated.contains("enerated"));
        const Outcome outcome = run({QStringLiteral("--check")});
        QCOMPARE(outcome.exitCode, 1);
        QCOMPARE(outcome.output.count(QLatin1Char('\n')), 1);
    }

    void aSecondUpdateChangesNothing()
    {
        QCOMPARE(run({}).exitCode, 0);
        QByteArray updated = read(translation);
        // As if it had been written earlier.
        const int date = updated.indexOf("POT-Creation-Date: 2") + int(qstrlen("POT-Creation-Date: "));
        updated.replace(date, 4, "2001");
        write(translation, updated);
        QCOMPARE(run({}).exitCode, 0);
        QCOMPARE(read(translation), updated);
    }

    void anUnknownArgumentIsRefused()
    {
        const Outcome outcome = run({QStringLiteral("--chek")});
        QCOMPARE(outcome.exitCode, 1);
        QVERIFY(outcome.output.contains(QLatin1String("--chek")));
    }

    void aProjectWithoutTranslationFails()
    {
        QVERIFY(QFile::remove(pathOf(translation)));
        QCOMPARE(run({QStringLiteral("--check")}).exitCode, 1);
    }

private:
    static constexpr auto translation = "po/ru/nivra_kcm_admin_events.po";

    [[nodiscard]] QString pathOf(const char *name) const { return m_project->filePath(QLatin1String(name)); }

    void copy(QLatin1String name)
    {
        const QString target = m_project->filePath(name);
        QVERIFY(QDir().mkpath(QFileInfo(target).path()));
        QVERIFY(QFile::copy(QLatin1String(SOURCE_DIR "/") + name, target));
    }

    void write(const char *name, const QByteArray &content)
    {
        QVERIFY(QDir().mkpath(QFileInfo(pathOf(name)).path()));
        QFile file(pathOf(name));
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        QCOMPARE(file.write(content), qint64(content.size()));
    }

    [[nodiscard]] QByteArray read(const char *name) const
    {
        QFile file(pathOf(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    [[nodiscard]] Outcome run(const QStringList &arguments) const
    {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove(QStringLiteral("ADMINEVENTS_BUILD"));
        environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
        process.setProcessEnvironment(environment);
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(pathOf("tools/update-translations"), arguments);
        if (!process.waitForFinished()) {
            return {-1, process.errorString()};
        }
        return {process.exitCode(), QString::fromUtf8(process.readAll())};
    }

    std::unique_ptr<QTemporaryDir> m_project;
};

QTEST_GUILESS_MAIN(UpdateTranslationsTest)
#include "updatetranslationstest.moc"
