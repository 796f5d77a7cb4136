// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "codec/codec.h"
#include "worker/process/server.h"

#include <QFile>
#include <QScopeGuard>
#include <QTest>

#include <future>

using namespace pixpress;
using namespace Qt::StringLiterals;

/// The worker's side of the channel, without the process.
class ServerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pixelsUnderWay_areBounded()
    {
        // The picture alone has all the pixels that there may be: of several that come at once,
        // those that meet another are sent back, and none is refused for good.
        QFile file(QStringLiteral(PIXPRESS_SAMPLES "/island map.png"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray picture = file.readAll();
        const qint64 maxPixels = inspect(picture, 1 << 28)->pixels();
        auto channel = openChannel();
        Server server(channel->second.get(), maxPixels);
        const auto serving = std::async(std::launch::async, [&] { server.run(); });
        const auto close = qScopeGuard([&] { channel->first = FileDescriptor(); });

        QSet<quint64> open;
        quint64 busy = 0;
        const auto send = [&](quint64 id) {
            QVERIFY(Request(id, CompressRequest(), *sealedMemory(picture))
                        .send(channel->first.get(), 0));
            open.insert(id);
        };
        for (quint64 id = 1; id <= 4; ++id)
            send(id);
        while (!open.isEmpty()) {
            const auto answer = Answer::parse(*receivePacket(channel->first.get()));
            QVERIFY(answer && open.remove(answer->id));
            if (std::holds_alternative<Busy>(answer->result)) {
                ++busy;
                send(answer->id);
            } else {
                QVERIFY(std::holds_alternative<Compressed>(answer->result));
            }
        }
        QVERIFY(busy > 0);
    }

    void pictureAboveTheLimit_isRefused()
    {
        QFile file(QStringLiteral(PIXPRESS_SAMPLES "/island map.png"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        auto channel = openChannel();
        Server server(channel->second.get(), 100);
        const auto serving = std::async(std::launch::async, [&] { server.run(); });
        const auto close = qScopeGuard([&] { channel->first = FileDescriptor(); });
        QVERIFY(Request(1, CompressRequest(), *sealedMemory(file.readAll()))
                    .send(channel->first.get(), 0));
        const auto answer = Answer::parse(*receivePacket(channel->first.get()));
        QVERIFY(answer);
        QCOMPARE(std::get<Failed>(answer->result).reason, u"The image has more than 100 pixels."_s);
    }
};

QTEST_GUILESS_MAIN(ServerTest)
#include "tst_server.moc"
