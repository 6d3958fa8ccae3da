// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QWidget>

class QLabel;
class QPushButton;

namespace KCMNV {

/**
 * A slim bar that tells the user whether the page holds unsaved changes, and lets him drop them.
 *
 * The state is told by a text and an icon; colour alone never carries it. The reset button is enabled only
 * while there is something to drop.
 */
class StateWidget : public QWidget
{
    Q_OBJECT

public:
    enum class State {
        Unchanged, ///< The page shows what is stored.
        Changed, ///< The page holds edits that are not stored.
        Saved, ///< The page shows what is stored, and the user stored it himself since the last load.
    };
    Q_ENUM(State)

    explicit StateWidget(QWidget *parent = nullptr);

    /** Returns the state shown. */
    [[nodiscard]] State state() const;

    /** Shows "unchanged", whatever was shown before. */
    void resetState();

    /**
     * Follows the page's own report.
     *
     * @param changed true: the page holds unsaved changes. false: it holds none; a bar that shows "saved"
     * keeps showing it, since nothing was edited since.
     */
    void setChanged(bool changed);

    /** Shows "saved": all changes have just been stored. */
    void setSaved();

    /** Shows or hides the reset button; it is hidden at first. */
    void setResetButtonVisible(bool visible);

Q_SIGNALS:
    /** The user wants the unsaved changes dropped. The state stays as it is until the page was loaded again.
     */
    void resetRequested();

protected:
    void changeEvent(QEvent *event) override;

private:
    void setState(State state);
    void showState();

    QLabel *m_icon;
    QLabel *m_text;
    QPushButton *m_reset;
    State m_state = State::Unchanged;
};

} // namespace KCMNV
