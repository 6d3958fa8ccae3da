// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "fuzzinput.h"

#include <commonwriter.h>
#include <configaccessservice.h>
#include <fragmentcheck.h>
#include <fragmentoptions.h>
#include <notificationcheck.h>
#include <notificationfragment.h>
#include <notificationname.h>
#include <notificationstore.h>

#include <QCoreApplication>
#include <QTemporaryDir>

#include <algorithm>

using AdminEventsHelper::FragmentCheck::check;
using AdminEventsHelper::FragmentCheck::isFragmentName;

namespace {

/// What the page writes the helper takes, and the page reads it as it was.
void checkWritten(FuzzInput &input)
{
    static ConfigAccessService service(nullptr);
    const QStringList words{QStringLiteral("a-b_c"), QStringLiteral("user"), QStringLiteral("x")};
    NotificationFragment fragment;
    fragment.messageId = input.oneOrText(words);
    fragment.messageType = input.oneOrText(words);
    fragment.title = input.text(80);
    fragment.recipients = NotificationFragment::Recipients(input.below(3));
    fragment.parameters = input.strings(words);
    const bool isSound = NotificationCheck::eventProblem(fragment.messageId, fragment.messageType).isEmpty()
        && NotificationCheck::titleProblem(fragment.title).isEmpty()
        && std::all_of(fragment.parameters.cbegin(), fragment.parameters.cend(), [](const QString &name) {
                             return NotificationCheck::parameterProblem(name).isEmpty();
                         });
    if (!isSound) {
        return;
    }
    const QString path = NotificationName::fragmentPath(fragment.messageId);
    CommonWriter writer(service, path);
    const QStringList lines = fragment.lines(writer);
    const auto outcome = check(QFileInfo(path).fileName(), (lines.join(QLatin1Char('\n'))).toUtf8() + '\n');
    require(outcome.ok(), "the helper takes what the page writes", outcome.error());
    const FragmentOptions options = FragmentOptions::read(lines);
    require(options.title == fragment.title && options.parameters == fragment.parameters
                && options.recipients() == int(fragment.recipients) && !options.titleWasCut,
            "the page reads what it wrote", lines.join(QLatin1Char('\n')));
}

/// The page's readers bear any file; a sound one is its event's.
void checkRead(const QByteArray &text)
{
    static const QTemporaryDir root;
    qputenv("ADMINEVENTS_ROOT", root.path().toUtf8());
    const QString name = QStringLiteral("mod-nivra-a_b.conf");
    putFile(root.filePath(QLatin1String("etc/syslog-ng/conf.d/") + name), text);
    NotificationStore store;
    store.readFromDisk();
    const QString id = QStringLiteral("a-b");
    const FragmentOptions options = FragmentOptions::read(store.lines(id));
    require(options.recipients() >= 0 && options.recipients() < 3, "there are three kinds of recipients");
    if (check(name, text).ok()) {
        require(NotificationName::fragmentPath(store.owner(id)).endsWith(name), "a fragment names its event",
                store.owner(id));
    }
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *count, char ***words)
{
    static const QCoreApplication application(*count, *words);
    return 0;
}

/// The fragments of the notifications, as the helper and the page see them.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzInput input(data, size);
    switch (input.mode(3)) {
    case 0:
        checkWritten(input);
        break;
    case 1:
        checkRead(input.rest());
        break;
    default: {
        const QString name = input.text(200);
        const auto found = AdminEventsHelper::FragmentCheck::fileNameOf(name);
        require(!found || (isFragmentName(found.value()) && name.endsWith(QLatin1Char('/') + found.value())),
                "a fragment's name is one", name);
        require(!isFragmentName(name) || NotificationName::isFragmentFile(name), "the page knows it too",
                name);
    }
    }
    return 0;
}
