// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "answerorder.h"

#include <KAuth/ActionReply>
#include <KAuth/HelperSupport>

#include <QObject>

#include <cstdio>

namespace {

/**
 * Answers every action with the arguments that it got. The path "/fail" fails with a text and data, "/silent"
 * without a text.
 */
class EchoHelper : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    KAuth::ActionReply writeconfig(const QVariantMap &arguments) { return answer("writeconfig", arguments); }
    KAuth::ActionReply exportconfig(const QVariantMap &arguments)
    {
        return answer("exportconfig", arguments);
    }
    KAuth::ActionReply importconfig(const QVariantMap &arguments)
    {
        return answer("importconfig", arguments);
    }

private:
    KAuth::ActionReply answer(const char *verb, const QVariantMap &arguments)
    {
        ++m_calls;
        const QString path = arguments.value(QStringLiteral("path")).toString();
        KAuth::ActionReply reply = KAuth::ActionReply::SuccessReply();
        if (path == QLatin1String("/fail") || path == QLatin1String("/silent")) {
            reply = KAuth::ActionReply::HelperErrorReply(77);
            if (path == QLatin1String("/fail"))
                reply.setErrorDescription(QStringLiteral("staged failure"));
        }
        reply.setData({{QStringLiteral("verb"), QString::fromLatin1(verb)},
                       {QStringLiteral("arguments"), arguments},
                       {QStringLiteral("calls"), m_calls}});
        return reply;
    }

    int m_calls = 0;
};

} // namespace

int main(int argc, char **argv)
{
    EchoHelper helper;
    AdminEventsHelper::AnswerOrder answers;
    QMetaObject::invokeMethod(
        &answers,
        [&answers] {
            if (!answers.takeOver())
                std::fputs("echohelper: the order of answers is the framework's\n", stderr);
        },
        Qt::QueuedConnection);
    return KAuth::HelperSupport::helperMain(argc, argv, "org.nivra.kcm.adminevents", &helper);
}

#include "echohelper.moc"
