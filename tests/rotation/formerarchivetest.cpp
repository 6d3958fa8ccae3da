// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include <formerarchive.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

namespace {
constexpr int privateMode = 0600;

bool put(const QString &path, const QByteArray &content)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

QByteArray get(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QByteArray("") + file.readAll() : QByteArray();
}

int modeOf(const QString &path)
{
    struct stat status = {};
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 ? int(status.st_mode & 07777) : -1;
}
} // namespace

/// The archive that an export replaces.
class FormerArchiveTest : public QObject
{
    Q_OBJECT

private:
    [[nodiscard]] QString path() const { return m_folder->filePath(QStringLiteral("a.tar.gz")); }
    [[nodiscard]] QStringList names() const
    {
        return QDir(m_folder->path()).entryList(QDir::Files | QDir::Hidden | QDir::System, QDir::Name);
    }

    std::unique_ptr<QTemporaryDir> m_folder;

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(put(path(), "former"));
        QVERIFY(QFile::setPermissions(path(), QFile::ReadOwner | QFile::WriteOwner));
    }

    void waitsBesideItsPlace()
    {
        FormerArchive former(path());
        QCOMPARE(former.setAside(), QString());
        QCOMPARE(get(path()), QByteArray(""));
        QCOMPARE(modeOf(path()), privateMode);
        QCOMPARE(names().size(), 2);
        QVERIFY(names().last().startsWith(QLatin1String("a.tar.gz.")));
        QCOMPARE(get(m_folder->filePath(names().last())), QByteArray("former"));
    }

    void goesWhenItIsDropped()
    {
        FormerArchive former(path());
        QCOMPARE(former.setAside(), QString());
        QVERIFY(put(path(), "new"));
        former.drop();
        QCOMPARE(former.putBack(), QString());
        QCOMPARE(get(path()), QByteArray("new"));
        QCOMPARE(names(), QStringList{QStringLiteral("a.tar.gz")});
    }

    void comesBackAsItWas()
    {
        const QByteArray name = QFile::encodeName(path());
        struct stat before = {};
        QCOMPARE(::stat(name.constData(), &before), 0);
        {
            FormerArchive former(path());
            QCOMPARE(former.setAside(), QString());
            QVERIFY(put(path(), "half of a new one"));
            QCOMPARE(former.putBack(), QString());
        }
        struct stat after = {};
        QCOMPARE(::stat(name.constData(), &after), 0);
        QCOMPARE(after.st_ino, before.st_ino);
        QCOMPARE(get(path()), QByteArray("former"));
        QCOMPARE(names(), QStringList{QStringLiteral("a.tar.gz")});
    }

    void comesBackWhenNobodySaysWhatBecameOfTheNewOne()
    {
        {
            FormerArchive former(path());
            QCOMPARE(former.setAside(), QString());
        }
        QCOMPARE(get(path()), QByteArray("former"));
    }

    void anotherNameOfTheFileKeepsItsContent()
    {
        const QString other = m_folder->filePath(QStringLiteral("other"));
        QCOMPARE(::link(QFile::encodeName(path()).constData(), QFile::encodeName(other).constData()), 0);
        FormerArchive former(path());
        QCOMPARE(former.setAside(), QString());
        QVERIFY(put(path(), "new"));
        former.drop();
        QCOMPARE(get(other), QByteArray("former"));
    }

    void isCopiedWhereTheDirectoryTakesNoNames()
    {
        if (::geteuid() != 0) {
            QSKIP("only root may make a directory immutable");
        }
        const QString chattr = QStringLiteral("chattr");
        if (QProcess::execute(chattr, {QStringLiteral("+i"), m_folder->path()}) != 0) {
            QSKIP("the file system knows no immutable directories");
        }
        QByteArray back;
        QByteArray replaced;
        QStringList problems;
        {
            FormerArchive former(path());
            problems << former.setAside();
            put(path(), "half");
            problems << former.putBack();
            back = get(path());
            problems << former.setAside();
            put(path(), "new");
            former.drop();
            replaced = get(path());
        }
        QCOMPARE(QProcess::execute(chattr, {QStringLiteral("-i"), m_folder->path()}), 0);
        QCOMPARE(problems, (QStringList{QString(), QString(), QString()}));
        QCOMPARE(back, QByteArray("former"));
        QCOMPARE(replaced, QByteArray("new"));
        QCOMPARE(QDir::temp().entryList({QStringLiteral("a.tar.gz.*~")}).size(), 0);
    }

    void saysWhereItIsWhenItsPlaceIsTaken()
    {
        FormerArchive former(path());
        QCOMPARE(former.setAside(), QString());
        const QString aside = m_folder->filePath(names().last());
        QVERIFY(QFile::remove(path()));
        QVERIFY(QDir().mkdir(path()));
        const QString told = former.putBack();
        QVERIFY2(told.contains(aside), qPrintable(told));
        QCOMPARE(get(aside), QByteArray("former"));
    }

    void nothingIsKeptOfWhatIsNotThere()
    {
        QVERIFY(QFile::remove(path()));
        FormerArchive none(path());
        QCOMPARE(none.setAside(), QString());
        QVERIFY(!QFile::exists(path()));
        QCOMPARE(none.putBack(), QString());
        QVERIFY(put(path(), ""));
        QCOMPARE(none.setAside(), QString());
        QCOMPARE(names(), QStringList{QStringLiteral("a.tar.gz")});
    }
};

QTEST_GUILESS_MAIN(FormerArchiveTest)

#include "formerarchivetest.moc"
