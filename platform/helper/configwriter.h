// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "outcome.h"

#include <QByteArray>
#include <QString>
#include <QVariantMap>

namespace AdminEventsHelper {

/** What a request to write a configuration file asks for. */
struct WriteRequest
{
    QString path;
    QByteArray content;

    /**
     * Reads the arguments "action" (the string "writeConfig"), "path" (a string) and "content" (a byte array
     * of at most ContentCheck::sizeLimit bytes); no others.
     */
    static Result<WriteRequest> read(const QVariantMap &arguments);
};

/** Writes the configuration files below a root directory. */
class ConfigWriter
{
public:
    /** @param root the directory that stands for "/". */
    explicit ConfigWriter(const QString &root);

    /**
     * Replaces one of the files of the closed set (see ConfigTarget) by a content that ContentCheck accepts.
     * The file's directory must exist. A failure leaves the file as it was, unless its text says that the
     * directory could not be flushed to the disk afterwards. Audit rules bring the file along that has them
     * loaded one by one (see AuditContinueFile).
     */
    Outcome write(const WriteRequest &request) const;

private:
    QString m_root;
};

} // namespace AdminEventsHelper
