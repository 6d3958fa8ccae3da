// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QDialog>
#include <QJsonDocument>

#include <memory>

class EventTreeItem;
class QStandardItemModel;
class Ui_EventExample;

/**
 * Shows what a log entry of an event looks like, as the record that is written
 * to the event log and as the fields that the event viewer makes of it.
 *
 * What only a real occurrence would supply comes from a file of dummy data, a
 * JSON object: the member of a parameter's name is an object whose member
 * "text" is the dummy value. "time", "priority", "source" and "host" are
 * members of the same kind.
 */
class EventExample : public QDialog
{
    Q_OBJECT

public:
    /// Reads the file of dummy data; showExample() tells when it cannot be used.
    explicit EventExample(QWidget *parent = nullptr);
    ~EventExample() override;

    /// Fills table and text for @p item, an event of a built tree, of which nothing is kept.
    void prepareExample(EventTreeItem *item);
    /// Opens the dialog without waiting for it; before, a message box says when there are no dummy data.
    void showExample();
    /// The dummy value of @p key; a translated "value" when there is none.
    [[nodiscard]] QString getDummyDataFromFile(const QString &key) const;

private:
    struct Field;

    /// The dummy data, a null document when the file is missing or holds no JSON.
    [[nodiscard]] QJsonDocument readEventExampleFile() const;
    [[nodiscard]] QVector<Field> extendedFields(const EventTreeItem &event) const;
    [[nodiscard]] QString recordText(const EventTreeItem &event, const QString &messageId) const;
    void insertParamInModel(int row, const QString &name, const QString &value);

    std::unique_ptr<Ui_EventExample> m_ui;
    QStandardItemModel *m_model;
    QJsonDocument m_dummyData;
};
