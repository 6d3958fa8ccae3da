// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "rotationterms.h"

#include "rotationkeywords.h"
#include "rotationscan.h"

#include <treeitem.h>

#include <KLocalizedString>

#include <QRegularExpression>

#include <limits>

namespace {
bool isTerm(const QString &keyword)
{
    return keyword == RotationKeywords::rotate || keyword == RotationKeywords::size
        || RotationKeywords::isPeriod(keyword);
}

bool isUnderstood(const RotationScan::Directive &directive)
{
    if (directive.keyword == RotationKeywords::rotate) {
        return RotationTerms::count(directive.value).has_value();
    }
    if (directive.keyword == RotationKeywords::size) {
        return RotationTerms::megabytes(directive.value).has_value();
    }
    if (!RotationKeywords::isSwitch(directive.keyword) || directive.value.isEmpty()
        || directive.value.startsWith(QLatin1Char('#'))) {
        return true;
    }
    static const QRegularExpression weekday(QStringLiteral("^[0-7]$"));
    return directive.keyword == RotationKeywords::weekly && weekday.match(directive.value).hasMatch();
}
} // namespace

RotationTerms RotationTerms::of(const TreeItem &section)
{
    RotationTerms terms;
    for (int i = 0; i < section.childCount(); ++i) {
        const QString keyword = section.child(i)->value(0).toString();
        const QString value = section.child(i)->value(1).toString();
        if (keyword == RotationKeywords::rotate) {
            terms.number = value;
        } else if (keyword == RotationKeywords::size) {
            terms.size = value;
        } else if (RotationKeywords::isPeriod(keyword)) {
            terms.period = Period{keyword, value};
        }
    }
    return terms;
}

void RotationTerms::replaceIn(TreeItem &section, Place place) const
{
    for (int i = section.childCount() - 1; i >= 0; --i) {
        if (isTerm(section.child(i)->value(0).toString())) {
            section.deleteChild(i);
        }
    }
    const auto add = [&section, place](const QString &keyword, const QString &value) {
        section.appendChild(new TreeItem({keyword, value}, &section), place == Before);
    };
    if (period) {
        add(period->keyword, period->value);
    }
    if (size) {
        add(RotationKeywords::size, *size);
    }
    if (number) {
        add(RotationKeywords::rotate, *number);
    }
}

QString RotationTerms::deciding(const TreeItem &section)
{
    for (int i = section.childCount() - 1; i >= 0; --i) {
        const QString keyword = section.child(i)->value(0).toString();
        if (keyword == RotationKeywords::size || keyword == RotationKeywords::hourly
            || RotationKeywords::isPeriod(keyword)) {
            return keyword;
        }
    }
    return {};
}

std::optional<int> RotationTerms::count(const QString &text)
{
    static const QRegularExpression number(QStringLiteral("^(-1|[0-9]+)$"));
    bool fits = false;
    const int count = text.toInt(&fits);
    return number.match(text).hasMatch() && fits ? std::optional<int>(count) : std::nullopt;
}

std::optional<qint64> RotationTerms::megabytes(const QString &text)
{
    static const QRegularExpression size(QStringLiteral("^\\+?([0-9]+)([kKMG]?)$"));
    const QRegularExpressionMatch match = size.match(text);
    bool fits = false;
    const qint64 number = match.captured(1).toLongLong(&fits);
    if (!match.hasMatch() || !fits) {
        return std::nullopt;
    }
    constexpr qint64 thousand = 1024;
    const QString unit = match.captured(2);
    if (unit == QLatin1String("G")) {
        return number <= std::numeric_limits<qint64>::max() / thousand
            ? std::optional<qint64>(number * thousand)
            : std::nullopt;
    }
    if (unit == QLatin1String("M")) {
        return number;
    }
    const qint64 perMegabyte = unit.isEmpty() ? thousand * thousand : thousand;
    return number / perMegabyte + (number % perMegabyte == 0 ? 0 : 1);
}

QString RotationTerms::problem(const RotationScan &scan)
{
    if (!scan.isGood()) {
        return scan.error;
    }
    for (const RotationScan::Directive &directive : scan.directives) {
        if (!isUnderstood(directive)) {
            return i18n("Line %1: “%2” is not one directive with its value.", QString::number(directive.line),
                        QString(directive.keyword + QLatin1Char(' ') + directive.value).trimmed());
        }
    }
    return {};
}

QStringList RotationTerms::lostComments(const RotationScan &scan, const TreeItem &section)
{
    QStringList losses;
    const RotationTerms kept = of(section);
    for (const RotationScan::Directive &directive : scan.directives) {
        if (RotationKeywords::isPeriod(directive.keyword) && directive.value.startsWith(QLatin1Char('#'))
            && kept.period != Period{directive.keyword, directive.value}) {
            losses.append(i18n("Line %1: the comment “%2” would be lost.", QString::number(directive.line),
                               directive.value));
        }
    }
    return losses;
}
