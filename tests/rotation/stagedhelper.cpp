// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "answerorder.h"

#include <KAuth/ActionReply>
#include <KAuth/HelperSupport>

#include <QFile>
#include <QFileInfo>
#include <QObject>
#include <QThread>

namespace {
/**
 * Notes each request in the file that STAGED_HELPER_LOG names, a line each, and answers by the archive's
 * name: "bad..." fails, "fault..." leaves the main configuration out, "slow..." takes its time. A file that
 * holds "/slow-bad" takes its time and fails.
 */
class StagedHelper : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    KAuth::ActionReply writeconfig(const QVariantMap &arguments)
    {
        const bool isSlowAndBad
            = arguments.value(QStringLiteral("content")).toByteArray().contains("/slow-bad");
        return answer("write", arguments.value(QStringLiteral("path")).toString(), isSlowAndBad);
    }
    KAuth::ActionReply exportconfig(const QVariantMap &arguments)
    {
        return answer("export", arguments.value(QStringLiteral("output")).toString());
    }
    KAuth::ActionReply importconfig(const QVariantMap &arguments)
    {
        return answer("import", arguments.value(QStringLiteral("input")).toString());
    }

private:
    static KAuth::ActionReply answer(const char *verb, const QString &path, bool isSlowAndBad = false)
    {
        QFile log(qEnvironmentVariable("STAGED_HELPER_LOG"));
        if (log.open(QIODevice::Append)) {
            log.write(verb + QByteArray(" ") + path.toLocal8Bit() + "\n");
            log.close();
        }
        const QString name = QFileInfo(path).fileName();
        if (isSlowAndBad || name.startsWith(QLatin1String("slow"))) {
            constexpr int noticeable = 400;
            QThread::msleep(noticeable);
        }
        if (isSlowAndBad || name.startsWith(QLatin1String("bad"))) {
            KAuth::ActionReply reply = KAuth::ActionReply::HelperErrorReply(1);
            reply.setErrorDescription(QStringLiteral("<b>staged</b> failure"));
            return reply;
        }
        KAuth::ActionReply reply = KAuth::ActionReply::SuccessReply();
        if (name.startsWith(QLatin1String("fault"))) {
            reply.addData(QStringLiteral("mainConfigImportFault"), true);
        }
        return reply;
    }
};
} // namespace

int main(int argc, char **argv)
{
    StagedHelper helper;
    AdminEventsHelper::AnswerOrder answers;
    QMetaObject::invokeMethod(
        &answers, [&answers] { (void)answers.takeOver(); }, Qt::QueuedConnection);
    return KAuth::HelperSupport::helperMain(argc, argv, "org.nivra.kcm.adminevents", &helper);
}

#include "stagedhelper.moc"
