// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "codec/thumbnail.h"
#include "pictures.h"

#include <QTemporaryFile>
#include <QTest>

#include <algorithm>

using namespace pixpress;
using namespace pixpress::testing;

class TestThumbnail : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { VIPS_INIT("test"); }

    void thinPicture_hasOneOfAPixelAtLeast_data();
    void thinPicture_hasOneOfAPixelAtLeast();
};

void TestThumbnail::thinPicture_hasOneOfAPixelAtLeast_data()
{
    QTest::addColumn<ImageFormat>("format");
    for (const ImageFormat format : allCases<ImageFormat>())
        QTest::addRow("%s", qPrintable(displayName(format))) << format;
}

void TestThumbnail::thinPicture_hasOneOfAPixelAtLeast()
{
    // The loaders make a picture smaller while they read it, and may leave nothing of a line.
    QFETCH(const ImageFormat, format);
    const std::atomic_bool running = false;
    for (const int length : {73, 150, 300, 600, 1200, 2000}) {
        for (const int thickness : {1, 2, 3, 4, 7, 8}) {
            for (const QSize size : {QSize(length, thickness), QSize(thickness, length)}) {
                QTemporaryFile file;
                QVERIFY(file.open());
                file.write(saved(photo(size.width(), size.height()), format));
                QVERIFY(file.flush());
                const Thumbnail thumbnail = makeThumbnail(file.handle(), 72, running);
                const QByteArray name = QByteArray::number(size.width()) + " by " +
                                        QByteArray::number(size.height()) + ": " +
                                        QByteArray::number(thumbnail.width) + " by " +
                                        QByteArray::number(thumbnail.height);
                QVERIFY2(std::max(thumbnail.width, thumbnail.height) == 72, name);
                const double exact = 72.0 * thickness / length;
                const int thin = std::min(thumbnail.width, thumbnail.height);
                QVERIFY2(thin >= 1 && std::abs(thin - exact) <= 1, name);
            }
        }
    }
}

QTEST_GUILESS_MAIN(TestThumbnail)
#include "tst_thumbnail.moc"
