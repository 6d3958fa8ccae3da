// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "nivrakcmodule.h"

namespace KCMGS {

/**
 * A settings page whose hooks may wait in nested event loops (for an authorisation, for an answer of the
 * user).
 *
 * While a hook runs,
 * - a second request to load or to save is dropped: a load that runs ends with the stored settings anyway, so
 * does an apply that succeeds, and after one that failed the edits are still there, and the page still counts
 * as changed;
 * - the page's window takes no input and does not close, so that nothing is edited half-way and nothing is
 * destroyed under the hook. Modal dialogs, such as message boxes with the page as parent, and their own
 * pop-ups stay usable.
 */
class GuardKCModule : public KCMNV::NivraKCModule
{
    Q_OBJECT

public:
    /** @copydoc KCMNV::NivraKCModule::NivraKCModule */
    GuardKCModule(const QString &componentName, QWidget *parent, const QVariantList &args);

    /** Returns whether a hook runs. */
    [[nodiscard]] bool isBusy() const;

public Q_SLOTS:
    void load() override;
    void save() override;

private:
    bool m_busy = false;
};

} // namespace KCMGS
