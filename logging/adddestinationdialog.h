// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QDialog>
#include <QStringList>
#include <QVariant>
#include <QVector>

#include <memory>

class TreeItem;

namespace Ui {
class AddDestinationDialog;
}

/// Asks for a new destination of the event log.
class AddDestinationDialog : public QDialog
{
    Q_OBJECT

public:
    explicit AddDestinationDialog(QWidget *parent = nullptr);
    ~AddDestinationDialog() override;

    /// The destinations whose names (column 1) are taken; only the names are kept.
    void setDestItems(const QVector<TreeItem *> &items);
    /// Names that destinations in other files of the logging daemon bear.
    void setOtherNames(const QStringList &names) { m_otherNames = names; }

    /// Kind, name, address, port and protocol.
    [[nodiscard]] QVector<QVariant> values() const;
    /// The kind as the main logging configuration names it.
    [[nodiscard]] QString destinationType() const;

    /// What is wrong with the input, translated; empty when nothing is.
    [[nodiscard]] QString nameValidationError() const;
    [[nodiscard]] QString addressValidationError() const;
    [[nodiscard]] QString inputValidationError() const;
    /// Shows what is wrong with the input; whether it is right.
    bool validateInput();
    /// Adapts the fields to the kind of destination.
    void updateControls();

    /// Closes the dialog if the destination can be kept in the file, else shows the reason.
    void accept() override;

private:
    void chooseFile();
    void showWarning(const QString &text);
    [[nodiscard]] bool isNetwork() const;

    std::unique_ptr<Ui::AddDestinationDialog> m_ui;
    QStringList m_takenNames;
    QStringList m_otherNames;
};
