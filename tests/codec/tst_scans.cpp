// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "codec/codec.h"
#include "codec/scans.h"
#include "codec/vipslibrary.h"

#include "brokenpictures.h"
#include "pictures.h"

#include <QTest>

#include <atomic>

using namespace pixpress;
using namespace pixpress::testing;
using namespace Qt::StringLiterals;

namespace {

constexpr int scansOfItsOwn = 6;
constexpr int most = 100 - scansOfItsOwn;

bool isRefused(const QByteArray &jpeg)
{
    const auto size = static_cast<size_t>(jpeg.size());
    const auto source = vips::VSource::new_from_memory(jpeg.constData(), size);
    return hasTooManyScans(vips::VImage::new_from_source(source, ""), source);
}

/// With a segment of this content at the front.
QByteArray withSegment(QByteArray jpeg, const QByteArray &content)
{
    QByteArray segment("\xff\xe5");
    segment += static_cast<char>((content.size() + 2) >> 8);
    segment += static_cast<char>((content.size() + 2) & 0xff);
    return jpeg.insert(2, segment + content);
}

} // namespace

/// How many scans a JPEG may have: only the picture's own count, and those all.
class TestScans : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { startVips(); }

    void number_isLimited_data();
    void number_isLimited();
    void number_isSmallerForLargePictures();
    void everyPlaceOfTheLastScan_isFound();
    void compressing_tells();
};

void TestScans::number_isLimited_data()
{
    QTest::addColumn<QByteArray>("jpeg");
    QTest::addColumn<bool>("refused");
    const QByteArray marker("\xff\xda\0\x02", 4);
    const QByteArray good = jpegOfScans(100, most);
    QTest::newRow("a usual one") << jpegOfScans(100, 0) << false;
    QTest::newRow("as many as may be") << good << false;
    QTest::newRow("one more") << jpegOfScans(100, most + 1) << true;
    QTest::newRow("more in a segment, as in a preview")
        << withSegment(good, marker.repeated(500)) << false;
    QTest::newRow("more after the end, as in a film") << good + marker.repeated(500) << false;
    QTest::newRow("more after stray bytes")
        << jpegOfScans(100, most + 1).insert(2, "xx\xff\xff") << true;
    QTest::newRow("not progressive")
        << withSegment(saved(photo(100, 100), ImageFormat::jpeg), marker.repeated(500)) << false;
}

void TestScans::number_isLimited()
{
    QFETCH(const QByteArray, jpeg);
    QFETCH(const bool, refused);
    QCOMPARE(isRefused(jpeg), refused);
}

void TestScans::number_isSmallerForLargePictures()
{
    QVERIFY(!isRefused(jpegOfScans(7000, 70)));
    QVERIFY(isRefused(jpegOfScans(7000, 80)));
}

// It is looked for in pieces of 64 KiB.
void TestScans::everyPlaceOfTheLastScan_isFound()
{
    const QByteArray jpeg = jpegOfScans(100, most + 1);
    const qsizetype last = jpeg.lastIndexOf("\xff\xda");
    for (qsizetype place = 65'530; place <= 65'540; ++place)
        QVERIFY(isRefused(withSegment(jpeg, QByteArray(place - last - 4, 'x'))));
}

void TestScans::compressing_tells()
{
    const std::atomic_bool running = false;
    const auto result = compress(jpegOfScans(100, most + 1), {}, 1'000'000, running);
    QVERIFY(!result);
    QCOMPARE(result.error().fault, CodecFault::unsupported);
    QCOMPARE(result.error().message, u"The image would take too long to open."_s);
    QVERIFY(compress(jpegOfScans(100, most), {}, 1'000'000, running));
}

QTEST_GUILESS_MAIN(TestScans)
#include "tst_scans.moc"
