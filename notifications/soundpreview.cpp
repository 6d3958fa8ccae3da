// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "soundpreview.h"

#include <QPluginLoader>

std::unique_ptr<SoundPreview> SoundPreview::create(const Listener &failed)
{
    const QString name = QStringLiteral("kcm_adminevents/soundpreview");
    QPluginLoader loader(name);
    auto *maker = qobject_cast<SoundPreviewMaker *>(loader.instance());
    if (!maker) {
        failed(QStringLiteral("%1: %2").arg(name, loader.errorString()));
        return {};
    }
    return maker->make(failed);
}
