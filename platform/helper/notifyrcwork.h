// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "callerprocess.h"
#include "notifyrcfiles.h"
#include "outcome.h"

#include <QByteArray>

#include <sys/stat.h>
#include <vector>

namespace AdminEventsHelper {

struct NotifyrcReport;

/** What the child that has become a user does with the user's notification settings. */
class NotifyrcWork : public CallerProcess::Work
{
protected:
    /** @param home the absolute path of the home directory */
    NotifyrcWork(uid_t user, const QByteArray &home);

    // In the child; the report says why there is no descriptor.
    int openHome(NotifyrcReport &report) const;
    int openConfig(int home, NotifyrcReport &report) const;
    /** Whether the name may be used; its mode is 0 when nothing bears it. */
    bool examine(int directory, const char *name, struct stat &status, NotifyrcReport &report) const;

private:
    uid_t m_user;
    QByteArray m_home;
};

/** Reads all of them. */
class NotifyrcReading : public NotifyrcWork
{
public:
    NotifyrcReading(uid_t user, const QByteArray &home);

    /** How much the child tells at most. */
    static qsizetype mostBytes();

    void run(int pipe) const override;

    /** What the child has told. @param directory for messages */
    static Result<NotifyrcFiles::Contents> filesIn(const CallerProcess::Report &told,
                                                   const QString &directory);

private:
    bool send(int pipe, int directory, const char *name, NotifyrcReport &report) const;
};

/** Changes some of them, all or none. */
class NotifyrcWriting : public NotifyrcWork
{
public:
    /** @param changes must outlive this object. */
    NotifyrcWriting(uid_t user, const QByteArray &home, const NotifyrcFiles::Changes &changes);

    static qsizetype mostBytes();

    void run(int pipe) const override;

    static Outcome outcomeIn(const CallerProcess::Report &told, const QString &directory);

private:
    struct Change
    {
        QByteArray name;
        QByteArray temporary; // the new content until it takes the name
        QByteArray kept; // the former file until all is done
        QByteArray former; // and after that
        const QByteArray *content = nullptr; // none: it is to go
        bool hadFormer = false;
        bool isMade = false;
    };

    void changeAll(NotifyrcReport &report) const;
    bool stage(int directory, Change &change, NotifyrcReport &report) const;
    static bool make(int directory, Change &change, NotifyrcReport &report);
    static void takeBack(int directory, const Change &change, NotifyrcReport &report);
    static void tidy(int directory, const Change &change, bool done);

    // The child notes in its own copy how far it has come.
    mutable std::vector<Change> m_changes;
};

} // namespace AdminEventsHelper
