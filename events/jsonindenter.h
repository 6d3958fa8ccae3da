// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QByteArray>
#include <QString>

#include <vector>

/**
 * Brings the JSON text of an object into the form that QJsonDocument writes:
 * indented, members in key order. Usual text is copied piece by piece, without
 * a document in between; whatever QJsonDocument might write in another way
 * than it was read (escapes, fractions, members of one name) is left to it.
 */
class JsonIndenter
{
public:
    /// The indented text of @p json, in UTF-8; empty when it is not an object's text or does not parse.
    [[nodiscard]] static QByteArray indented(const QString &json);
    /**
     * As indented(), but empty for all that is not usual text, too.
     * @param utf8 text without encoding errors; nothing here looks for them
     */
    [[nodiscard]] static QByteArray indentedUsual(const QByteArray &utf8);

private:
    /// A member in the text made so far, from the quote before its name.
    struct Member
    {
        int begin = 0;
        int nameSize = 0; // both quotes included
        int end = 0;
    };

    explicit JsonIndenter(const QByteArray &utf8);
    void skipBlanks();
    [[nodiscard]] bool take(char expected);
    [[nodiscard]] bool copyValue(int depth);
    [[nodiscard]] bool copyString();
    [[nodiscard]] bool copyWord();
    [[nodiscard]] bool copyNumber();
    [[nodiscard]] bool copyArray(int depth);
    [[nodiscard]] bool copyObject(int depth);
    [[nodiscard]] bool copyMembers(int depth);
    [[nodiscard]] bool sortMembers(std::size_t first, int depth);
    [[nodiscard]] int compareNames(const Member &left, const Member &right) const;
    void breakLine(int depth);

    const char *m_next;
    const char *m_end;
    QByteArray m_text; // made so far
    QByteArray m_sorted; // members being put in order
    std::vector<Member> m_members; // of all objects that are open
};
