// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "worker/channel.h"
#include "worker/messages.h"

#include <QTemporaryFile>
#include <QTest>

#include <cerrno>

#include <sys/mman.h>
#include <sys/socket.h>

using namespace pixpress;
using namespace Qt::StringLiterals;

class ChannelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void packet_arrivesWhole()
    {
        const auto channel = openChannel();
        QVERIFY(channel);
        const auto &[here, there] = *channel;
        QVERIFY(sendPacket(here.get(), "first", -1));
        QVERIFY(sendPacket(here.get(), "second", sealedMemory("content")->get()));
        const auto first = receivePacket(there.get());
        QCOMPARE(first->bytes, "first");
        QVERIFY(!first->descriptor.isOpen());
        const auto second = receivePacket(there.get());
        QCOMPARE(second->bytes, "second");
        QCOMPARE(readSealed(second->descriptor.get(), 7).value(), "content");
    }

    void closedChannel_givesAnEmptyPacket()
    {
        auto channel = openChannel();
        channel->first = FileDescriptor();
        QVERIFY(receivePacket(channel->second.get())->bytes.isEmpty());
        QCOMPARE(sendPacket(channel->second.get(), "x", -1).error(), EPIPE); // and no signal
    }

    void packetThatIsTooLarge_isRefused()
    {
        const auto channel = openChannel();
        QVERIFY(sendPacket(channel->first.get(), QByteArray(20'000, 'x'), -1));
        QCOMPARE(receivePacket(channel->second.get()).error(), EMSGSIZE);
    }

    void severalDescriptors_areRefusedAndClosed()
    {
        const auto channel = openChannel();
        for (const size_t count : {2U, 3U, 20U}) {
            sendDescriptors(channel->first.get(), count);
            const int before = openDescriptors();
            QCOMPARE(receivePacket(channel->second.get()).error(), EMSGSIZE);
            QCOMPARE(openDescriptors(), before);
        }
    }

    void sealedMemory_canNotBeChanged()
    {
        const auto memory = sealedMemory("content");
        QVERIFY(memory);
        QCOMPARE(sealedSize(memory->get()).value(), 7);
        QCOMPARE(::pwrite(memory->get(), "x", 1, 0), -1);
        QCOMPARE(::ftruncate(memory->get(), 3), -1);
        QCOMPARE(::ftruncate(memory->get(), 30), -1);
        QVERIFY(::mmap(nullptr, 7, PROT_WRITE, MAP_SHARED, memory->get(), 0) == MAP_FAILED);
        QCOMPARE(readSealed(memory->get(), 6).error(), EFBIG);
    }

    void memoryThatCanChange_isNotRead()
    {
        for (const int seals : {0, F_SEAL_WRITE, F_SEAL_SHRINK | F_SEAL_GROW,
                                F_SEAL_SHRINK | F_SEAL_WRITE, F_SEAL_GROW | F_SEAL_WRITE}) {
            const FileDescriptor memory(::memfd_create("test", MFD_ALLOW_SEALING));
            QCOMPARE(::write(memory.get(), "content", 7), 7);
            QCOMPARE(::fcntl(memory.get(), F_ADD_SEALS, seals), 0);
            QCOMPARE(readSealed(memory.get(), 100).error(), EINVAL);
        }
        QTemporaryFile file;
        QVERIFY(file.open());
        QCOMPARE(readSealed(file.handle(), 100).error(), EINVAL);
        QCOMPARE(readSealed(-1, 100).error(), EINVAL);
    }

    void request_comesBackAsItWas()
    {
        const auto channel = openChannel();
        const CompressionOptions options{.resizeEnabled = true,
                                         .resizeMode = ResizeMode::cover,
                                         .resizeWidth = 12,
                                         .resizeHeight = std::nullopt,
                                         .convertEnabled = true,
                                         .convertFormat = ImageFormat::jpeg,
                                         .preserveCopyright = true,
                                         .preserveCreation = false,
                                         .preserveLocation = true,
                                         .backgroundColor = u"#010203"_s};
        const Request request{7, CompressRequest{options}, *sealedMemory("picture")};
        QVERIFY(request.send(channel->first.get(), 0));
        const auto received = Request::parse(*receivePacket(channel->second.get()));
        QVERIFY(received);
        QCOMPARE(received->id, quint64(7));
        QVERIFY(std::get<CompressRequest>(received->work).options == options);
        QCOMPARE(readSealed(received->picture.get(), 100).value(), "picture");
    }

    void answer_comesBackAsItWas()
    {
        const auto channel = openChannel();
        const auto sent = [&](const Answer &answer) {
            answer.send(channel->first.get()).value();
            return Answer::parse(*receivePacket(channel->second.get())).value();
        };
        QVERIFY(std::holds_alternative<Busy>(sent({3, Busy{}}).result));
        QCOMPARE(std::get<Failed>(sent({3, Failed{u"Why."_s}}).result).reason, u"Why."_s);
        const auto answer = sent({3, Thumbnail{2, 1, "12345678"}});
        QCOMPARE(answer.id, quint64(3));
        QCOMPARE(std::get<Thumbnail>(answer.result).rgba, "12345678");
        const auto compressed = std::get<Compressed>(
            sent({3, Compressed{"bytes", ImageFormat::png, ImageFormat::avif, 4, 5}}).result);
        QCOMPARE(compressed.bytes, "bytes");
        QCOMPARE(compressed.inputFormat, ImageFormat::png);
        QCOMPARE(compressed.outputFormat, ImageFormat::avif);
        QCOMPARE(compressed.width, 4);
        QCOMPARE(compressed.height, 5);
    }

private:
    static void sendDescriptors(int socket, size_t count)
    {
        const std::vector<int> descriptors(count, STDERR_FILENO);
        std::vector<char> control(CMSG_SPACE(sizeof(int) * count));
        char byte = 'x';
        iovec data{&byte, 1};
        msghdr message{};
        message.msg_iov = &data;
        message.msg_iovlen = 1;
        message.msg_control = control.data();
        message.msg_controllen = control.size();
        cmsghdr *header = CMSG_FIRSTHDR(&message);
        header->cmsg_level = SOL_SOCKET;
        header->cmsg_type = SCM_RIGHTS;
        header->cmsg_len = CMSG_LEN(sizeof(int) * count);
        std::memcpy(CMSG_DATA(header), descriptors.data(), sizeof(int) * count);
        QCOMPARE(::sendmsg(socket, &message, 0), 1);
    }

    static int openDescriptors()
    {
        return static_cast<int>(QDir(u"/proc/self/fd"_s).entryList(QDir::NoDotAndDotDot).size());
    }
};

QTEST_GUILESS_MAIN(ChannelTest)
#include "tst_channel.moc"
