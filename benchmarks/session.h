// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "loopwatch.h"

#include <QModelIndex>
#include <QString>
#include <QTimer>

#include <functional>
#include <memory>
#include <string>
#include <vector>

class AdminEventsModule;
class QTreeView;

/**
 * An administrator's sitting at the page on a large site: what mouse and keys do, one act after the other,
 * and how long each of them keeps the event loop.
 */
class Session
{
public:
    struct Act
    {
        std::string name;
        LoopWatch::Gap gap;
        double total = 0; ///< milliseconds until it had done what it is for
        bool busySign = false; ///< the user was shown that it takes its time
        bool mayTakeLonger = false; ///< by nature, when there is a sign of it
    };

    Session();
    ~Session();

    /// Goes through all acts; an error text, empty when every one of them did what it is for.
    [[nodiscard]] QString run();
    [[nodiscard]] const std::vector<Act> &acts() const { return m_acts; }

private:
    using Step = std::function<void()>;
    using Condition = std::function<bool()>;

    void open();
    void clickAround();
    void search();
    void expand();
    void openDialogs();
    void editAudited();
    void apply();
    void reload();

    /// Carries out an act from the event loop and waits until @p done holds and the loop has come to rest.
    void act(const char *name, const Step &step, const Condition &done);
    void click(const QModelIndex &index, bool box) const;
    void doubleClick(const QModelIndex &index) const;
    void closeWindow(const char *objectName);
    [[nodiscard]] QModelIndex show(const QString &event, const QStringList &path, int column) const;

    LoopWatch m_watch;
    std::unique_ptr<AdminEventsModule> m_page;
    QTreeView *m_view = nullptr;
    std::vector<Act> m_acts;
    QString m_error;
    QTimer m_boxes;
};
