// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "model/formats.h"

#include <QJsonArray>
#include <QTest>

#include <thread>

using namespace pixpress;
using namespace Qt::StringLiterals;

static_assert(sizeof(ImageFormat) == 1 && sizeof(ResizeMode) == 1 &&
              sizeof(OutputDestination) == 1);
static_assert(SerialisableSet<ImageFormat> && SerialisableSet<ResizeMode>);
static_assert(!SerialisableSet<OutputDestination>);

class FormatsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Before all others, which use them too.
    void supportedExtensions_areSafeOnFirstUseByManyThreads();

    void formats_haveTheirTextsInPickerOrder();
    void resizeModes_haveTheirTextsInPickerOrder();
    void destinations_haveTheirTextsInPickerOrder();
    void cases_areNumberedInPickerOrder();
    void format_isFoundByItsExactRawValue_data();
    void format_isFoundByItsExactRawValue();
    void resizeMode_isFoundByItsExactRawValue_data();
    void resizeMode_isFoundByItsExactRawValue();
    void destination_isFoundByItsExactRawValue_data();
    void destination_isFoundByItsExactRawValue();
    void case_isHashedByItsRawValue();
    void case_isEncodedAsItsRawValue();
    void decodingUnknownValue_fails_data();
    void decodingUnknownValue_fails();
    void supportedExtensions_areTheFiveLowerCaseOnes();
    void file_isAcceptedByItsExtension_data();
    void file_isAcceptedByItsExtension();
    void pathExtension_followsTheLastDot_data();
    void pathExtension_followsTheLastDot();
};

void FormatsTest::supportedExtensions_areSafeOnFirstUseByManyThreads()
{
    std::array<const QSet<QString> *, 8> seen{};
    {
        std::array<std::jthread, seen.size()> threads;
        for (size_t i = 0; i < seen.size(); ++i)
            threads[i] = std::jthread([&seen, i] { seen[i] = &supportedExtensions(); });
    }
    for (const QSet<QString> *set : seen)
        QCOMPARE(set, &supportedExtensions());
}

void FormatsTest::formats_haveTheirTextsInPickerOrder()
{
    QStringList lines;
    for (const ImageFormat format : allCases<ImageFormat>())
        lines << QStringList{id(format), rawValue(format), displayName(format),
                             fileExtension(format)}
                     .join(u'|');
    QCOMPARE(lines, (QStringList{
                        u"image/png|image/png|PNG|png"_s,
                        u"image/jpeg|image/jpeg|JPEG|jpg"_s,
                        u"image/webp|image/webp|WebP|webp"_s,
                        u"image/avif|image/avif|AVIF|avif"_s,
                    }));
}

void FormatsTest::resizeModes_haveTheirTextsInPickerOrder()
{
    QStringList lines;
    for (const ResizeMode mode : allCases<ResizeMode>())
        lines << QStringList{id(mode), rawValue(mode), displayName(mode), description(mode)}.join(
            u'|');
    QCOMPARE(
        lines,
        (QStringList{
            u"scale|scale|Scale|Scales the image proportionally. Provide either a target width or "
            u"height, not both."_s,
            u"fit|fit|Fit|Scales the image proportionally to fit within the given dimensions."_s,
            u"cover|cover|Cover|Scales and crops the image to cover the given dimensions exactly."_s,
            u"thumb|thumb|Thumb|Intelligently crops to focus on the most interesting area."_s,
        }));
}

void FormatsTest::destinations_haveTheirTextsInPickerOrder()
{
    QStringList lines;
    for (const OutputDestination destination : allCases<OutputDestination>())
        lines << QStringList{id(destination), rawValue(destination), title(destination),
                             description(destination)}
                     .join(u'|');
    QCOMPARE(lines, (QStringList{
                        u"alongside|alongside|Save Alongside Original|"
                        u"Saves a copy with a \"-pixpress\" suffix next to the original"_s,
                        u"overwrite|overwrite|Overwrite Original|"
                        u"Replaces the original file with the compressed version"_s,
                        u"customFolder|customFolder|Save to Folder|"
                        u"Saves all compressed images to a chosen folder"_s,
                    }));
}

template <typename E>
void compareNumbers()
{
    int number = 0;
    for (const E value : allCases<E>())
        QCOMPARE(static_cast<int>(value), number++);
}

void FormatsTest::cases_areNumberedInPickerOrder()
{
    compareNumbers<ImageFormat>();
    compareNumbers<ResizeMode>();
    compareNumbers<OutputDestination>();
    // The two that cannot carry transparency.
    QCOMPARE(static_cast<int>(ImageFormat::jpeg), 1);
    QCOMPARE(static_cast<int>(ImageFormat::avif), 3);
}

/// Rows of a text and the case that it stands for: every raw value, and texts that are none.
template <typename E>
void addRawValueRows(const QStringList &others)
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<std::optional<E>>("value");
    for (const E value : allCases<E>())
        QTest::newRow(qPrintable(rawValue(value))) << rawValue(value) << std::optional(value);
    for (const QString &text : others)
        QTest::newRow(qPrintable(u"not \"%1\""_s.arg(text))) << text << std::optional<E>();
}

void FormatsTest::format_isFoundByItsExactRawValue_data()
{
    addRawValueRows<ImageFormat>({u""_s, u"png"_s, u"PNG"_s, u"jpg"_s, u"image/jpg"_s,
                                  u"IMAGE/PNG"_s, u"image/png "_s, u" image/png"_s, u"image/"_s,
                                  u"image/gif"_s, u"image/pn"_s, u"scale"_s, u"0"_s});
}

void FormatsTest::format_isFoundByItsExactRawValue()
{
    QFETCH(const QString, text);
    QFETCH(const std::optional<ImageFormat>, value);
    QVERIFY(fromRawValue<ImageFormat>(text) == value);
}

void FormatsTest::resizeMode_isFoundByItsExactRawValue_data()
{
    addRawValueRows<ResizeMode>(
        {u""_s, u"Scale"_s, u"FIT"_s, u"fit "_s, u"crop"_s, u"thumbnail"_s, u"1"_s});
}

void FormatsTest::resizeMode_isFoundByItsExactRawValue()
{
    QFETCH(const QString, text);
    QFETCH(const std::optional<ResizeMode>, value);
    QVERIFY(fromRawValue<ResizeMode>(text) == value);
}

void FormatsTest::destination_isFoundByItsExactRawValue_data()
{
    addRawValueRows<OutputDestination>({u""_s, u"Alongside"_s, u"customfolder"_s,
                                        u"custom folder"_s, u"Save to Folder"_s, u"2"_s});
}

void FormatsTest::destination_isFoundByItsExactRawValue()
{
    QFETCH(const QString, text);
    QFETCH(const std::optional<OutputDestination>, value);
    QVERIFY(fromRawValue<OutputDestination>(text) == value);
}

template <typename E>
void compareHashes()
{
    QSet<E> found;
    for (const E value : allCases<E>()) {
        QCOMPARE(qHash(value, 7), qHash(rawValue(value), 7));
        for (const E other : allCases<E>())
            QCOMPARE(qHash(value) == qHash(other), value == other);
        found << value << value;
    }
    QCOMPARE(found.size(), qsizetype(allCases<E>().size()));
}

void FormatsTest::case_isHashedByItsRawValue()
{
    compareHashes<ImageFormat>();
    compareHashes<ResizeMode>();
    compareHashes<OutputDestination>();
}

template <typename E>
void compareRoundTrips()
{
    for (const E value : allCases<E>()) {
        QCOMPARE(encode(value), QJsonValue(rawValue(value)));
        const auto decoded = decode<E>(encode(value));
        QVERIFY(decoded.has_value());
        QCOMPARE(*decoded, value);
    }
}

void FormatsTest::case_isEncodedAsItsRawValue()
{
    compareRoundTrips<ImageFormat>();
    compareRoundTrips<ResizeMode>();
    QVERIFY(decode<ResizeMode>(u"fit"_s) == ResizeMode::fit);
}

void FormatsTest::decodingUnknownValue_fails_data()
{
    QTest::addColumn<QJsonValue>("json");
    QTest::newRow("unknown") << QJsonValue(u"crop"_s);
    QTest::newRow("display name") << QJsonValue(u"Fit"_s);
    QTest::newRow("empty") << QJsonValue(u""_s);
    QTest::newRow("number") << QJsonValue(1);
    QTest::newRow("true") << QJsonValue(true);
    QTest::newRow("null") << QJsonValue();
    QTest::newRow("missing") << QJsonValue(QJsonValue::Undefined);
    QTest::newRow("array") << QJsonValue(QJsonArray{u"fit"_s});
}

void FormatsTest::decodingUnknownValue_fails()
{
    QFETCH(const QJsonValue, json);
    const auto mode = decode<ResizeMode>(json);
    const auto format = decode<ImageFormat>(json);
    QVERIFY(!mode && !format);
    QVERIFY(!mode.error().description.isEmpty());
    if (const QString text = json.toString(); !text.isEmpty())
        QVERIFY2(mode.error().description.contains(text), qPrintable(mode.error().description));
}

void FormatsTest::supportedExtensions_areTheFiveLowerCaseOnes()
{
    QCOMPARE(supportedExtensions(), (QSet{u"png"_s, u"jpg"_s, u"jpeg"_s, u"webp"_s, u"avif"_s}));
    QCOMPARE(&supportedExtensions(), &supportedExtensions());
    for (const ImageFormat format : allCases<ImageFormat>())
        QVERIFY(supportedExtensions().contains(fileExtension(format)));
}

void FormatsTest::file_isAcceptedByItsExtension_data()
{
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<bool>("accepted");
    const auto row = [](const char *fileName, bool accepted) {
        QTest::newRow(fileName) << QString::fromUtf8(fileName) << accepted;
    };
    row("photo.png", true);
    row("photo.jpg", true);
    row("photo.jpeg", true);
    row("photo.webp", true);
    row("photo.avif", true);
    row("photo.JPG", true);
    row("photo.WebP", true);
    row("photo.tar.Png", true);
    row("Bild #1 – Größe 100 %.png", true);
    row(".hidden.png", true);
    row("photo.gif", false);
    row("photo.heic", false);
    row("photo.tiff", false);
    row("photo.txt", false);
    row("photo.svg", false);
    row("photo.jpe", false);
    row("photo.png.txt", false);
    row("photo.png~", false);
    row("photo.png ", false);
    row("photo. png", false);
    row("photo", false);
    row("photo.", false);
    row("png", false);
    row(".png", false);
    row("", false);
    row(".", false);
    row("photo.pnɡ", false); // a letter that looks like g
}

void FormatsTest::file_isAcceptedByItsExtension()
{
    QFETCH(const QString, fileName);
    QFETCH(const bool, accepted);
    QCOMPARE(isSupported(fileName), accepted);
}

void FormatsTest::pathExtension_followsTheLastDot_data()
{
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<QString>("extension");
    const auto row = [](const char *fileName, const char *extension) {
        QTest::newRow(fileName) << QString::fromUtf8(fileName) << QString::fromUtf8(extension);
    };
    row("photo.png", "png");
    row("photo.PNG", "PNG");
    row("photo.final.PNG", "PNG");
    row(".hidden.webp", "webp");
    row("a..png", "png");
    row("photo.", "");
    row("photo", "");
    row(".png", "");
    row("", "");
}

void FormatsTest::pathExtension_followsTheLastDot()
{
    QFETCH(const QString, fileName);
    QFETCH(const QString, extension);
    QCOMPARE(pathExtension(fileName), extension);
}

QTEST_GUILESS_MAIN(FormatsTest)
#include "tst_formats.moc"
