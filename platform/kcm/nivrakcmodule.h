// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <KCModule>

namespace KCMNV {

class StateWidget;

/**
 * A settings page with two hooks, one to load and one to apply, and a bar that shows its state.
 *
 * A derived page builds its widgets on the page itself, with a box layout, in its constructor; the state bar
 * is appended to that layout when the page is first shown. It reports unsaved changes with
 * KCModule::changed(bool), which the bar follows.
 */
class NivraKCModule : public KCModule
{
    Q_OBJECT

public:
    /**
     * @param componentName name of the page's component, the same as its translation domain
     * @param parent the widget of the shell that takes the page in
     * @param args the arguments that the shell was started with
     */
    NivraKCModule(const QString &componentName, QWidget *parent, const QVariantList &args);

    /** Load hook: reads the settings and shows them. Called when the page is first shown and whenever the
     * shell, or the reset button, asks for a reload; afterwards the page counts as unchanged. */
    virtual void access();

    /** Apply hook: stores what the page shows. Called when the user applies. A page that could not store
     * everything says so with setApplyFailed(). */
    virtual void change();

    /** Whether what the page shows may be stored. save() leaves an invalid page alone, and changed.
     *  @return true in the base */
    [[nodiscard]] virtual bool isValid() const;

    /** Called whenever the shell brings the page to the front; does nothing in the base. */
    virtual void chooseModule();

    /** Called whenever the shell puts the page away; does nothing in the base. */
    virtual void unchooseModule();

    /** Returns the component name that the page was constructed with. */
    [[nodiscard]] QString componentName() const;

    /** Returns the bar that shows the page's state; never null, owned by the page. */
    [[nodiscard]] StateWidget *stateWidget() const;

public Q_SLOTS:
    /** Calls access() and reports the page as unchanged. */
    void load() override;

    /**
     * Calls change(). After a success the bar shows "saved". After a failure the page stays changed, and the
     * shell is told so once it is done with its own bookkeeping, so that the user can apply again.
     */
    void save() override;

protected:
    /** To be called in change(): whether storing failed. Each save() starts with "it did not". */
    void setApplyFailed(bool failed);

    /** Appends the state bar to the page's layout, which must be a box layout. Happens once, at the first
     * show. */
    void placeStateWidget();

    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void keepChanged();

    const QString m_componentName;
    StateWidget *const m_stateWidget;
    bool m_applyFailed = false;
    bool m_stateWidgetPlaced = false;
};

} // namespace KCMNV
