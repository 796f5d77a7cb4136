// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "codec/codec.h"
#include "codec/vipslibrary.h"

#include "pictures.h"

#include <QFile>
#include <QTest>

#include <sys/resource.h>

using namespace pixpress;
using namespace pixpress::testing;

class TestStart : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void afterTheStart_noFileIsNeeded();
};

void TestStart::afterTheStart_noFileIsNeeded()
{
    startCodec();
    rlimit limit{};
    QCOMPARE(getrlimit(RLIMIT_NOFILE, &limit), 0);
    const rlim_t former = limit.rlim_cur;
    limit.rlim_cur = 0;
    QCOMPARE(setrlimit(RLIMIT_NOFILE, &limit), 0);
    const bool canOpen = QFile(QStringLiteral("/dev/null")).open(QIODevice::ReadOnly);

    const std::atomic_bool running = false;
    QStringList failed;
    const vips::VImage image =
        photo(60, 40).icc_transform("p3", vips::VImage::option()->set("input_profile", "srgb"));
    for (const ImageFormat from : allCases<ImageFormat>()) {
        for (const ImageFormat to : allCases<ImageFormat>()) {
            RequestOptions options;
            options.convert = {to};
            const auto result = compress(saved(image, from), options, 1'000'000, running);
            if (!result)
                failed.append(rawValue(from) + u' ' + rawValue(to));
        }
    }
    limit.rlim_cur = former;
    setrlimit(RLIMIT_NOFILE, &limit);
    QVERIFY(!canOpen);
    QCOMPARE(failed, QStringList());
}

QTEST_GUILESS_MAIN(TestStart)
#include "tst_start.moc"
