// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include <fileeditor.h>

#include <KMessageWidget>

#include <QDialogButtonBox>
#include <QFile>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTextEdit>

/// Editing a file's text.
class FileEditorTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void showsTheFile();
    void writesWhatWasEdited();
    void resettingDropsTheEdits();
    void everyTextComesBackByteByByte_data();
    void everyTextComesBackByteByByte();
    void whatATextFieldWouldChangeIsOnlyShown_data();
    void whatATextFieldWouldChangeIsOnlyShown();
    void aFileChangedMeanwhileIsNotOverwritten();
    void aFileThatCannotBeReadIsNeverWritten();

private:
    void put(const QByteArray &content)
    {
        QFile file(m_path);
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        QCOMPARE(file.write(content), qint64(content.size()));
    }
    [[nodiscard]] QByteArray content() const
    {
        QFile file(m_path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
    }
    static QTextEdit *field(FileEditor &editor)
    {
        return editor.findChild<QTextEdit *>(QStringLiteral("textEdit"));
    }
    static QPushButton *button(FileEditor &editor, QDialogButtonBox::StandardButton which)
    {
        return editor.findChild<QDialogButtonBox *>()->button(which);
    }
    static bool complains(FileEditor &editor)
    {
        return editor.findChild<KMessageWidget *>()->isVisibleTo(&editor);
    }

    QTemporaryDir m_directory;
    QString m_path;
};

void FileEditorTest::init()
{
    m_path = m_directory.filePath(QStringLiteral("file"));
    put("first\nsecond\n");
}

void FileEditorTest::showsTheFile()
{
    FileEditor editor(m_path);
    QCOMPARE(editor.getFileContents(), QStringLiteral("first\nsecond\n"));
    QVERIFY(!complains(editor));
}

void FileEditorTest::writesWhatWasEdited()
{
    QVERIFY(QFile::setPermissions(m_path, QFile::ReadOwner | QFile::WriteOwner));
    FileEditor editor(m_path);
    editor.show();
    field(editor)->setPlainText(QStringLiteral("третья\n"));
    QTest::mouseClick(button(editor, QDialogButtonBox::Ok), Qt::LeftButton);
    QVERIFY(!editor.isVisible());
    QCOMPARE(content(), QByteArray("третья\n"));
    QVERIFY(!QFile::permissions(m_path).testFlag(QFile::ReadOther));
}

void FileEditorTest::resettingDropsTheEdits()
{
    FileEditor editor(m_path);
    editor.show();
    field(editor)->setPlainText(QStringLiteral("edited"));
    put("third\n");
    QTest::mouseClick(button(editor, QDialogButtonBox::Reset), Qt::LeftButton);
    QCOMPARE(editor.getFileContents(), QStringLiteral("third\n"));
    QVERIFY(editor.writeFile());
    QCOMPARE(content(), QByteArray("third\n"));
}

void FileEditorTest::everyTextComesBackByteByByte_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("no line end") << QByteArray("a");
    QTest::newRow("empty lines") << QByteArray("\n\n a \n\n");
    QTest::newRow("no-break space") << QByteArray("a\xc2\xa0"
                                                  "b\n");
    QTest::newRow("tabs and tags") << QByteArray("\t<b>a</b> &amp;\n");
}

void FileEditorTest::everyTextComesBackByteByByte()
{
    QFETCH(QByteArray, text);
    put(text);
    FileEditor editor(m_path);
    QVERIFY(!complains(editor));
    field(editor)->moveCursor(QTextCursor::End);
    field(editor)->insertPlainText(QStringLiteral("x"));
    QVERIFY(editor.writeFile());
    QCOMPARE(content(), text + 'x');
}

void FileEditorTest::whatATextFieldWouldChangeIsOnlyShown_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("line ends of other systems") << QByteArray("a\r\nb\r\n");
    QTest::newRow("no UTF-8") << QByteArray("caf\xe9\n");
    QTest::newRow("zero byte") << QByteArray("a\0b", 3);
    QTest::newRow("separators") << QByteArray("a\xe2\x80\xa9"
                                              "b");
}

void FileEditorTest::whatATextFieldWouldChangeIsOnlyShown()
{
    QFETCH(QByteArray, text);
    put(text);
    FileEditor editor(m_path);
    if (editor.getFileContents().toUtf8() == text) {
        QVERIFY(editor.writeFile()); // nothing would be lost after all
        QCOMPARE(content(), text);
        return;
    }
    QVERIFY(complains(editor));
    QVERIFY(field(editor)->isReadOnly());
    QVERIFY(!button(editor, QDialogButtonBox::Ok)->isEnabled());
    QVERIFY(!editor.writeFile());
    QCOMPARE(content(), text);
}

void FileEditorTest::aFileChangedMeanwhileIsNotOverwritten()
{
    FileEditor editor(m_path);
    editor.show();
    field(editor)->setPlainText(QStringLiteral("edited"));
    put("by another program\n");
    QTest::mouseClick(button(editor, QDialogButtonBox::Ok), Qt::LeftButton);
    QVERIFY(editor.isVisible());
    QVERIFY(complains(editor));
    QCOMPARE(content(), QByteArray("by another program\n"));
}

void FileEditorTest::aFileThatCannotBeReadIsNeverWritten()
{
    QVERIFY(QFile::remove(m_path));
    FileEditor editor(m_path);
    QVERIFY(complains(editor));
    QVERIFY(!button(editor, QDialogButtonBox::Ok)->isEnabled());
    field(editor)->setPlainText(QStringLiteral("edited"));
    QVERIFY(!editor.writeFile());
    QVERIFY(!QFile::exists(m_path));
    FileEditor directory(m_directory.path());
    QVERIFY(complains(directory));
    QVERIFY(!directory.writeFile());
}

QTEST_MAIN(FileEditorTest)

#include "fileeditortest.moc"
