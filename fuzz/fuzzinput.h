// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <cstdio>
#include <cstdlib>
#include <fuzzer/FuzzedDataProvider.h>

/// Ends the program, which keeps the input, unless a promise holds. @param what the promise
inline void require(bool holds, const char *what, const QString &detail = {})
{
    if (!holds) {
        std::fprintf(stderr, "not so: %s: %s\n", what, qPrintable(detail));
        std::abort();
    }
}

/// Replaces a file, with its directories. @param path absolute
inline void putFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    require(QDir().mkpath(QFileInfo(path).path()) && file.open(QIODevice::WriteOnly)
                && file.write(content) == content.size(),
            "the program can write its files", path);
}

/// Makes values out of an input's bytes: numbers and choices from its end, texts from its beginning.
class FuzzInput
{
public:
    FuzzInput(const uint8_t *data, size_t size)
        : m_data(data, size)
    {
    }

    [[nodiscard]] int below(int limit) { return m_data.ConsumeIntegralInRange<int>(0, limit - 1); }
    [[nodiscard]] bool coin() { return m_data.ConsumeBool(); }
    /// The last byte, as it stands: a seed that ends in a line break chooses 10 modulo the limit.
    [[nodiscard]] int mode(int limit) { return m_data.ConsumeIntegral<uint8_t>() % limit; }
    [[nodiscard]] QByteArray bytes(int longest)
    {
        const std::string text = m_data.ConsumeRandomLengthString(static_cast<size_t>(longest));
        return {text.data(), static_cast<int>(text.size())};
    }
    [[nodiscard]] QByteArray rest()
    {
        const std::string text = m_data.ConsumeRemainingBytesAsString();
        return {text.data(), static_cast<int>(text.size())};
    }
    /// UTF-8, or any UTF-16, halves of pairs included.
    [[nodiscard]] QString text(int longest)
    {
        const bool isUtf8 = m_data.ConsumeIntegral<uint8_t>() % 4 != 0;
        const QByteArray source = bytes(longest);
        return isUtf8 ? QString::fromUtf8(source)
                      : QString(reinterpret_cast<const QChar *>(source.constData()), source.size() / 2);
    }
    [[nodiscard]] QString one(const QStringList &words) { return words.at(below(words.size())); }
    [[nodiscard]] QString oneOrText(const QStringList &words)
    {
        return below(8) == 0 ? text(40) : one(words);
    }

    /// A value that a request or a reply can hold.
    [[nodiscard]] QVariant variant(const QStringList &words, int depth = 2)
    {
        switch (below(depth > 0 ? 9 : 6)) {
        case 0:
            return m_data.ConsumeIntegral<int>();
        case 1:
            return m_data.ConsumeIntegral<qlonglong>();
        case 2:
            return coin();
        case 3:
            return bytes(2000);
        case 4:
            return oneOrText(words);
        case 5:
            return {};
        case 6:
            return strings(words);
        case 7:
            return map(words, depth - 1);
        default:
            return QVariantList{variant(words, depth - 1)};
        }
    }
    [[nodiscard]] QStringList strings(const QStringList &words)
    {
        QStringList list;
        for (int count = below(5); count > 0; --count) {
            list << oneOrText(words);
        }
        return list;
    }
    [[nodiscard]] QVariantMap map(const QStringList &words, int depth = 2)
    {
        QVariantMap map;
        for (int count = below(6); count > 0; --count) {
            const QString key = oneOrText(words);
            map.insert(key, variant(words, depth));
        }
        return map;
    }

    /// A JSON value whose members are named by the words.
    [[nodiscard]] QJsonValue json(const QStringList &names, int depth)
    {
        switch (below(depth > 0 ? 7 : 4)) {
        case 0:
            return QStringLiteral("1");
        case 1:
            return oneOrText(names);
        case 2:
            return below(3);
        case 3:
            return coin() ? QJsonValue(QStringLiteral("0")) : QJsonValue(coin());
        case 4: {
            QJsonArray array;
            for (int count = below(4); count > 0; --count) {
                array.append(json(names, depth - 1));
            }
            return array;
        }
        default:
            return object(names, depth);
        }
    }
    [[nodiscard]] QJsonObject object(const QStringList &names, int depth)
    {
        QJsonObject object;
        for (int count = below(7); count > 0; --count) {
            const QString name = oneOrText(names);
            object.insert(name, json(names, depth - 1));
        }
        return object;
    }

private:
    FuzzedDataProvider m_data;
};
