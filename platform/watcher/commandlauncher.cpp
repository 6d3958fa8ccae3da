// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "commandlauncher.h"

#include <KLocalizedString>
#include <KShell>

#include <QDir>
#include <QProcess>
#include <QProcessEnvironment>

namespace NivraWatcher {

namespace {

QString variableName(const QString &valueName)
{
    QString name = QStringLiteral("NIVRA_EVENT_VALUE_");
    for (const QChar c : valueName) {
        const bool plain = c.unicode() < 128 && c.isLetterOrNumber();
        name += plain ? c : QLatin1Char('_');
    }
    return name;
}

/** The environment ends a value at such a character. */
QString withoutNul(QString value)
{
    return value.remove(QChar(QChar::Null));
}

QProcessEnvironment environmentOf(const Event &event)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const auto &[name, value] : event.values) {
        environment.insert(variableName(name), withoutNul(value));
    }
    environment.insert(QStringLiteral("NIVRA_EVENT"), event.key);
    environment.insert(QStringLiteral("NIVRA_EVENT_TITLE"), withoutNul(event.title));
    environment.insert(QStringLiteral("NIVRA_EVENT_TEXT"), withoutNul(event.text));
    environment.insert(QStringLiteral("NIVRA_EVENT_TIME"), event.time.toString(Qt::ISODate));
    return environment;
}

} // namespace

QString CommandLauncher::start(const QString &command, const Event &event)
{
    KShell::Errors error = KShell::NoError;
    QStringList words = KShell::splitArgs(command, KShell::TildeExpand, &error);
    if (error != KShell::NoError || words.isEmpty() || words.constFirst().isEmpty()) {
        return i18n("The command \"%1\" cannot be understood.", command);
    }
    QProcess process;
    process.setProgram(words.takeFirst());
    process.setArguments(words);
    process.setProcessEnvironment(environmentOf(event));
    process.setWorkingDirectory(QDir::homePath());
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    if (!process.startDetached()) {
        return i18n("The command \"%1\" cannot be started: %2", command, process.errorString());
    }
    return {};
}

} // namespace NivraWatcher
