// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "session.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace pixpress::test {

bool Session::start()
{
    return desktop.start() && reader.start(desktop);
}

bool Session::open(bool hasKey, const QStringList &files)
{
    service = std::make_unique<Service>();
    QJsonObject settings;
    if (hasKey)
        settings.insert(u"pixpress_api_key"_s, QString::fromLatin1(service->goodKey));
    desktop.store(u"Pixpress"_s, settings);
    reader.forget();
    program =
        std::make_unique<Program>(desktop, QStringLiteral(PIXPRESS_AT),
                                  Invocation{.arguments = QStringList{service->address()} + files});
    return program->isInFront() && !reader.application().isNull();
}

bool Session::add(const QStringList &names)
{
    QStringList files;
    for (const QString &name : names)
        files.append(desktop.file(name, "bytes of " + name.toUtf8()));
    return drag(desktop, files, *program).contains(u"done copy"_s) && program->isInFront();
}

bool Session::answerOne()
{
    const bool waits = QTest::qWaitFor([this] { return service->waiting() > 0; }, deadline);
    service->releaseOne();
    return waits;
}

void Session::close()
{
    program.reset();
    service.reset();
}

} // namespace pixpress::test
