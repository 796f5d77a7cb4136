// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pseudolanguage.h"
#include "stage.h"

#include <QSignalSpy>
#include <QTest>

using namespace pixpress;
using namespace Qt::StringLiterals;

class OptionsEditorTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_stage.start(); }

    void beginning_isTheOptionsDefaults()
    {
        QVERIFY(!editor().resizeEnabled());
        QCOMPARE(editor().resizeMode(), 1);
        QCOMPARE(editor().width(), QString());
        QCOMPARE(editor().height(), QString());
        QVERIFY(!editor().convertEnabled());
        QCOMPARE(editor().convertFormat(), 2);
        QCOMPARE(editor().background(), QColor(Qt::white));
        QCOMPARE(editor().destination(), 0);
        QCOMPARE(editor().folder(), QString());
        QVERIFY(!editor().savesToFolder() && !editor().hasOneDimension() && !editor().isScale());
        QCOMPARE(editor().resizeModes().join(u' '), u"Scale Fit Cover Thumb"_s);
        QCOMPARE(editor().formats().join(u' '), u"PNG JPEG WebP AVIF"_s);
        QCOMPARE(editor().destinations().join(u'|'),
                 u"Save Alongside Original|Overwrite Original|Save to Folder"_s);
    }

    void choices_areEnglishInEveryLanguage()
    {
        test::PseudoLanguage language; // translates every text that is looked up
        QVERIFY(QCoreApplication::installTranslator(&language));
        QCOMPARE(editor().formats().join(u'|'), u"PNG|JPEG|WebP|AVIF"_s);
        QCOMPARE(editor().resizeModes().join(u'|'), u"Scale|Fit|Cover|Thumb"_s);
        QCOMPARE(editor().destinations().join(u'|'),
                 u"Save Alongside Original|Overwrite Original|Save to Folder"_s);
        QStringList descriptions;
        for (int index = 0; index < 4; ++index) {
            editor().setResizeMode(index);
            descriptions.append(editor().resizeModeDescription());
        }
        for (int index = 0; index < 3; ++index) {
            editor().setDestination(index);
            descriptions.append(editor().destinationDescription());
        }
        QCOMPARE(
            descriptions,
            (QStringList{
                u"Scales the image proportionally. Provide either a target width or height, not both."_s,
                u"Scales the image proportionally to fit within the given dimensions."_s,
                u"Scales and crops the image to cover the given dimensions exactly."_s,
                u"Intelligently crops to focus on the most interesting area."_s,
                u"Saves a copy with a \"-pixpress\" suffix next to the original"_s,
                u"Replaces the original file with the compressed version"_s,
                u"Saves all compressed images to a chosen folder"_s}));
    }

    void setters_reachTheOptions()
    {
        QSignalSpy changed(&editor(), &OptionsEditor::changed);
        editor().setResizeEnabled(true);
        editor().setResizeMode(3);
        editor().setWidth(u"640"_s);
        editor().setHeight(u"480"_s);
        editor().setConvertEnabled(true);
        editor().setConvertFormat(3);
        editor().setBackground(QColor(0xFF, 0x88, 0x00, 0x20));
        editor().setPreserveCopyright(true);
        editor().setPreserveCreation(true);
        editor().setPreserveLocation(true);
        editor().setDestination(2);
        m_stage.pickedFolder = QUrl::fromLocalFile(u"/a b"_s);
        editor().chooseFolder();
        const CompressionOptions expected{.resizeEnabled = true,
                                          .resizeMode = ResizeMode::thumb,
                                          .resizeWidth = 640,
                                          .resizeHeight = 480,
                                          .convertEnabled = true,
                                          .convertFormat = ImageFormat::avif,
                                          .preserveCopyright = true,
                                          .preserveCreation = true,
                                          .preserveLocation = true,
                                          .outputDestination = OutputDestination::customFolder,
                                          .customFolderURL = QUrl::fromLocalFile(u"/a b"_s),
                                          .backgroundColor = u"#ff8800"_s};
        QVERIFY(options() == expected);
        QCOMPARE(changed.size(), 12);
        editor().setResizeMode(3);
        QCOMPARE(changed.size(), 12); // nothing changed
    }

    void index_outsideTheChoicesChangesNothing()
    {
        const CompressionOptions before = options();
        for (const int index : {-1, 4, 100}) {
            editor().setResizeMode(index);
            editor().setConvertFormat(index);
            editor().setDestination(index);
        }
        QVERIFY(options() == before);
    }

    void digits_becomeANumberOrNone_data()
    {
        QTest::addColumn<QString>("digits");
        QTest::addColumn<QString>("shown");

        QTest::newRow("number") << u"300"_s << u"300"_s;
        QTest::newRow("zero") << u"0"_s << u"0"_s;
        QTest::newRow("leading zeros") << u"007"_s << u"7"_s;
        QTest::newRow("blanks around it") << u" 300 "_s << u"300"_s;
        QTest::newRow("sign") << u"-5"_s << QString();
        QTest::newRow("largest") << u"9223372036854775807"_s << u"9223372036854775807"_s;
        QTest::newRow("empty") << QString() << QString();
        QTest::newRow("letters") << u"abc"_s << QString();
        QTest::newRow("beyond 64 bits") << u"99999999999999999999"_s << QString();
    }

    void digits_becomeANumberOrNone()
    {
        QFETCH(QString, digits);
        QFETCH(QString, shown);
        editor().setWidth(u"5"_s);
        editor().setWidth(digits);
        QCOMPARE(editor().width(), shown);
        editor().setHeight(digits);
        QCOMPARE(editor().height(), shown);
    }

    void unreadableColour_showsAsWhite()
    {
        CompressionOptions changed = options();
        changed.backgroundColor = u"fff"_s;
        m_stage.app()->appState()->setOptions(changed);
        QCOMPARE(editor().background(), QColor(Qt::white));
        changed.backgroundColor = u"zzzzzz"_s;
        m_stage.app()->appState()->setOptions(changed);
        QCOMPARE(editor().background(), QColor(Qt::black));
    }

    void oneDimension_isExactlyOne()
    {
        editor().setWidth(u"1"_s);
        QVERIFY(editor().hasOneDimension());
        editor().setHeight(u"1"_s);
        QVERIFY(!editor().hasOneDimension());
        editor().setWidth({});
        QVERIFY(editor().hasOneDimension());
    }

    void cancelledChooser_keepsTheFolder()
    {
        editor().chooseFolder();
        QVERIFY(!options().customFolderURL);
        m_stage.pickedFolder = QUrl::fromLocalFile(u"/first"_s);
        editor().chooseFolder();
        m_stage.pickedFolder.clear();
        editor().chooseFolder();
        QCOMPARE(editor().folder(), u"/first"_s);
    }

private:
    OptionsEditor &editor() { return *m_stage.app()->options(); }
    const CompressionOptions &options() { return m_stage.app()->appState()->options(); }

    test::Stage m_stage;
};

QTEST_MAIN(OptionsEditorTest)

#include "tst_optionseditor.moc"
