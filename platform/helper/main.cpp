// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "answerorder.h"
#include "helper.h"
#include "helperlog.h"
#include "helperoptions.h"

#include <KAuth/HelperSupport>
#include <QFile>
#include <QTimer>

#include <cstdio>
#include <sys/stat.h>

int main(int argc, char **argv)
{
    QStringList words;
    for (int i = 1; i < argc; ++i) {
        words << QFile::decodeName(argv[i]);
    }
    const auto options = AdminEventsHelper::HelperOptions::parse(words);
    if (!options) {
        std::fprintf(stderr, "adminevents_helper: %s\n", qPrintable(options.error()));
        return 2;
    }
    ::umask(077);
    AdminEventsHelper::Helper helper(options.value());
    AdminEventsHelper::AnswerOrder answers;
    // Runs first thing in the main loop: the bus is connected by then, and no request is taken yet.
    QMetaObject::invokeMethod(
        &answers,
        [&answers, &helper] {
            if (!answers.takeOver()) {
                AdminEventsHelper::logLine(LOG_WARNING,
                                           QStringLiteral("the order of answers is the framework's"));
            }
            // The timer that ends an idle helper would be left behind.
            if (auto *timer = helper.property("__KAuth_Helper_Shutdown_Timer").value<QTimer *>()) {
                timer->setParent(&helper);
            }
        },
        Qt::QueuedConnection);
    return KAuth::HelperSupport::helperMain(argc, argv, "org.nivra.kcm.adminevents", &helper);
}
