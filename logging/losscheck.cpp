// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "losscheck.h"

#include "abstractconfigparser.h"
#include "commonwriter.h"
#include "configtokens.h"
#include "maintree.h"
#include "tokendiff.h"

#include <configaccessservice.h>
#include <treeitem.h>

#include <KLocalizedString>

#include <QHash>

#include <algorithm>

namespace {
using Change = TokenDiff::Change;

struct Finding
{
    int line;
    QString text;
};

/// Compares two texts, token by token.
class TextComparison
{
public:
    TextComparison(const QString &oldText, const QString &newText)
        : m_old(oldText)
        , m_new(newText)
    {
    }

    [[nodiscard]] QVector<Finding> findings();

private:
    [[nodiscard]] QVector<int> numbered(const ConfigTokens &tokens);
    [[nodiscard]] QVector<Change> joined(const QVector<Change> &changes) const;
    [[nodiscard]] bool areNear(const Change &first, const Change &second) const;
    void addComments();
    void addChange(const Change &change);
    void addLost(const Change &change);
    [[nodiscard]] QVector<int> removed(const Change &change) const
    {
        return m_oldNumbers.mid(change.oldBegin, change.oldEnd - change.oldBegin);
    }
    [[nodiscard]] QVector<int> added(const Change &change) const
    {
        return m_newNumbers.mid(change.newBegin, change.newEnd - change.newBegin);
    }

    ConfigTokens m_old;
    ConfigTokens m_new;
    QHash<QString, int> m_numbers;
    QVector<int> m_oldNumbers;
    QVector<int> m_newNumbers;
    QVector<QVector<int>> m_moved; // what goes in one place and comes in another
    QVector<Finding> m_findings;
};

/// What the tokens from @p begin to @p end read like, short enough for a line in a message.
QString excerpt(const ConfigTokens &tokens, int begin, int end)
{
    constexpr int longest = 80;
    QString piece;
    int before = -1;
    for (int i = begin; i < end && piece.size() <= longest; ++i) {
        const ConfigTokens::Token &token = tokens.tokens().at(i);
        if (before >= 0 && token.at > before) {
            piece += QLatin1Char(' ');
        }
        piece += tokens.view(token).left(longest + 1).toString().simplified();
        before = token.at + token.size;
    }
    return piece.size() <= longest ? piece : piece.left(longest - 1) + QChar(0x2026);
}

QVector<int> TextComparison::numbered(const ConfigTokens &tokens)
{
    QVector<int> numbers;
    numbers.reserve(tokens.tokens().size());
    for (const ConfigTokens::Token &token : tokens.tokens()) {
        const QString text = tokens.view(token).toString();
        const auto known = m_numbers.constFind(text);
        numbers.append(known == m_numbers.constEnd() ? *m_numbers.insert(text, m_numbers.size()) : *known);
    }
    return numbers;
}

/// Whether two neighbouring changes are one to the user: only punctuation, or next to nothing on the same
/// line, stays the same between them.
bool TextComparison::areNear(const Change &first, const Change &second) const
{
    const QVector<ConfigTokens::Token> &tokens = m_old.tokens();
    const int gap = second.oldBegin - first.oldEnd;
    if (gap <= 3 && first.oldEnd > 0 && second.oldBegin < tokens.size()
        && tokens.at(first.oldEnd - 1).line == tokens.at(second.oldBegin).line) {
        return true;
    }
    const auto begin = tokens.begin() + first.oldEnd;
    const auto end = tokens.begin() + second.oldBegin;
    return std::all_of(
        begin, end, [](const ConfigTokens::Token &token) { return token.kind == ConfigTokens::Punctuation; });
}

QVector<Change> TextComparison::joined(const QVector<Change> &changes) const
{
    QVector<Change> result;
    for (const Change &change : changes) {
        if (!result.isEmpty() && areNear(result.last(), change)) {
            result.last().oldEnd = change.oldEnd;
            result.last().newEnd = change.newEnd;
        } else {
            result.append(change);
        }
    }
    for (Change &change : result) {
        // A parenthesis that becomes a brace says little without the word before it.
        if (change.oldBegin > 0 && change.newBegin > 0 && change.oldBegin < change.oldEnd
            && change.newBegin < change.newEnd
            && m_old.tokens().at(change.oldBegin).kind == ConfigTokens::Punctuation
            && m_oldNumbers.at(change.oldBegin - 1) == m_newNumbers.at(change.newBegin - 1)) {
            --change.oldBegin;
            --change.newBegin;
        }
    }
    return result;
}

/// A comment means nothing to the daemon, so only that it stays counts, not where.
void TextComparison::addComments()
{
    QHash<QString, int> kept;
    for (const ConfigTokens::Token &comment : m_new.comments()) {
        ++kept[m_new.view(comment).toString()];
    }
    for (const ConfigTokens::Token &comment : m_old.comments()) {
        const QString text = m_old.view(comment).toString();
        const auto left = kept.find(text);
        if (left != kept.end() && *left > 0) {
            --*left;
            continue;
        }
        m_findings.append(
            {comment.line,
             i18n("Line %1: the comment “%2” would be lost.", comment.line, text.simplified().left(80))});
    }
}

void TextComparison::addLost(const Change &change)
{
    const int first = m_old.tokens().at(change.oldBegin).line;
    const int last = m_old.tokens().at(change.oldEnd - 1).line;
    const QString text = excerpt(m_old, change.oldBegin, change.oldEnd);
    const bool moved = m_moved.contains(removed(change));
    QString finding;
    if (first == last) {
        finding = moved ? i18n("Line %1: “%2” would be moved to another place.", first, text)
                        : i18n("Line %1: “%2” would be lost.", first, text);
    } else {
        finding = moved ? i18n("Lines %1 to %2: “%3” would be moved to another place.", first, last, text)
                        : i18n("Lines %1 to %2: “%3” would be lost.", first, last, text);
    }
    m_findings.append({first, finding});
}

void TextComparison::addChange(const Change &change)
{
    if (change.newBegin == change.newEnd) {
        addLost(change);
        return;
    }
    const QString text = excerpt(m_new, change.newBegin, change.newEnd);
    if (change.oldBegin == change.oldEnd) {
        if (!m_moved.contains(added(change))) {
            const int behind = qMin(change.oldBegin, m_old.tokens().size() - 1);
            const int line = behind < 0 ? 1 : m_old.tokens().at(behind).line;
            m_findings.append({line, i18n("Line %1: “%2” would be added.", line, text)});
        }
        return;
    }
    const int first = m_old.tokens().at(change.oldBegin).line;
    const int last = m_old.tokens().at(change.oldEnd - 1).line;
    const QString before = excerpt(m_old, change.oldBegin, change.oldEnd);
    m_findings.append({first,
                       first == last
                           ? i18n("Line %1: “%2” would become “%3”.", first, before, text)
                           : i18n("Lines %1 to %2: “%3” would become “%4”.", first, last, before, text)});
}

QVector<Finding> TextComparison::findings()
{
    m_oldNumbers = numbered(m_old);
    m_newNumbers = numbered(m_new);
    const QVector<Change> changes = joined(TokenDiff::changes(m_oldNumbers, m_newNumbers));
    for (const Change &lost : changes) {
        if (lost.newBegin != lost.newEnd) {
            continue;
        }
        const QVector<int> tokens = removed(lost);
        if (std::any_of(changes.begin(), changes.end(), [&](const Change &other) {
                return other.oldBegin == other.oldEnd && added(other) == tokens;
            })) {
            m_moved.append(tokens);
        }
    }
    for (const Change &change : changes) {
        addChange(change);
    }
    addComments();
    std::stable_sort(m_findings.begin(), m_findings.end(),
                     [](const Finding &a, const Finding &b) { return a.line < b.line; });
    return m_findings;
}

} // namespace

QStringList LossCheck::lostByRewriting(const QByteArray &present, const QByteArray &loaded)
{
    QStringList texts = AbstractConfigParser::lostByDecoding(present);
    const QStringList statements = CommonWriter::statements(*MainTree::read(loaded));
    TextComparison comparison(AbstractConfigParser::decode(present), statements.join(QLatin1Char('\n')));
    const QVector<Finding> findings = comparison.findings();
    for (const Finding &finding : findings) {
        texts.append(finding.text);
    }
    return texts;
}

QStringList LossCheck::notReadBack(const TreeItem &edited)
{
    QStringList findings;
    QStringList known;
    const QStringList statements = CommonWriter::statements(edited);
    for (int row = 0; row < edited.childCount(); ++row) {
        const QByteArray bytes = ConfigAccessService::contentOf({statements.at(row)});
        if (AbstractConfigParser::decode(bytes) != statements.at(row) + QLatin1Char('\n')) {
            findings.append(i18n("“%1” holds characters that cannot be written in the character encoding of "
                                 "this session.",
                                 MainTree::title(*edited.child(row))));
        }
    }
    const std::unique_ptr<TreeItem> readBack = MainTree::read(MainTree::written(edited));
    for (int row = 0; row < edited.childCount(); ++row) {
        const TreeItem *there = readBack->child(row);
        if (!there || !MainTree::equal(*there, *edited.child(row))) {
            findings.append(
                i18n("“%1” would not be read back as it is.", MainTree::title(*edited.child(row))));
            break; // what follows is only shifted
        }
    }
    if (findings.isEmpty() && readBack->childCount() != edited.childCount()) {
        findings.append(i18n("The file would hold more statements than there are now."));
    }
    return findings;
}

QStringList LossCheck::findings(const QByteArray &present, const QByteArray &loaded, const TreeItem &edited)
{
    return lostByRewriting(present, loaded) + notReadBack(edited);
}
