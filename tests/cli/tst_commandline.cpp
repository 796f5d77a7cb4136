// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pipeline/settings.h"

#include "cli/program.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QSettings>
#include <QTest>

#include <csignal>
#include <sys/types.h>

using namespace pixpress;
using namespace pixpress::test;
using namespace Qt::StringLiterals;

class CommandLineTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_program = std::make_unique<Program>(); }

    void help_andVersion_areNoErrors();
    void wrongUsage_saysWhatIsWrong_data();
    void wrongUsage_saysWhatIsWrong();

    void samples_becomeSmallerBesideThemselves();
    void output_goesIntoTheFolder();
    void overwrite_replacesTheFile();
    void options_reachTheService();
    void oneSide_isEnough();
    void preserve_keepsWhatIsNamed_data();
    void preserve_keepsWhatIsNamed();
    void names_areLinedUpByColumns();
    void longName_doesNotPushTheOthersAway();
    void largerResult_isToldAsLarger();
    void json_isOneObjectALine();
    void failures_areReportedAndFail_data();
    void failures_areReportedAndFail();
    void otherFiles_areSkipped();
    void otherNames_areSkippedToo_data();
    void otherNames_areSkippedToo();
    void nothingAccepted_fails();
    void fileNameCannotSteerTheTerminal();
    void withoutLocale_worksWithAnyName();

    void remoteWithoutKey_refusesEachFile();
    void remoteWithUsedUpQuota_refusesEachFile();
    void offline_touchesNoSettings();
    void ignoredSignal_staysIgnored();
    void interrupt_leavesNoHalfWrittenFile_data();
    void interrupt_leavesNoHalfWrittenFile();

private:
    std::unique_ptr<Program> m_program;
};

void CommandLineTest::help_andVersion_areNoErrors()
{
    const Outcome help = m_program->run({u"--help"_s});
    QCOMPARE(help.status, 0);
    QVERIFY(help.out.startsWith("Usage: pixpress-cli [OPTION]... [FILE]...\n"));
    QCOMPARE(help.err, "");
    const Outcome version = m_program->run({u"--version"_s});
    QCOMPARE(version.status, 0);
    QCOMPARE(version.out, "pixpress-cli " PIXPRESS_VERSION "\n");
}

void CommandLineTest::wrongUsage_saysWhatIsWrong_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QByteArray>("fault");
    const auto row = [](const char *arguments, const char *fault) {
        QTest::newRow(arguments) << QString::fromLatin1(arguments) << QByteArray(fault);
    };
    row("", "No file is given.");
    row("--json", "No file is given.");
    row("--fast a.png", "Unknown option 'fast'.");
    row("a.png --resize", "Missing value after '--resize'.");
    row("--resize Fit --width 1 a.png", "--resize takes scale, fit, cover or thumb, not \"Fit\".");
    row("--resize fit a.png", "--resize needs --width, --height or both.");
    row("--width 0 a.png", "--width takes a number of pixels from 1 on, not \"0\".");
    row("--height -5 a.png", "--height takes a number of pixels from 1 on, not \"-5\".");
    row("--width 1.5 a.png", "--width takes a number of pixels from 1 on, not \"1.5\".");
    row("--width 99999999999999999999 a.png",
        "--width takes a number of pixels from 1 on, not \"99999999999999999999\".");
    row("--convert gif a.png", "--convert takes png, jpeg, webp or avif, not \"gif\".");
    row("--convert jpeg --background red a.png",
        "--background takes a colour like '#ffffff', not \"red\".");
    row("--convert jpeg --background #ffff a.png",
        "--background takes a colour like '#ffffff', not \"#ffff\".");
    row("--convert webp --background #ffffff a.png",
        "--background needs --convert jpeg or --convert avif.");
    row("--background #ffffff a.png", "--background needs --convert jpeg or --convert avif.");
    row("--preserve copyright,gps a.png",
        "--preserve takes copyright, creation and location, separated by commas, not \"gps\".");
    row("--output no-such-folder a.png",
        "--output takes a folder that exists, not \"no-such-folder\".");
    row("--overwrite --output / a.png", "--overwrite and --output exclude each other.");
}

void CommandLineTest::wrongUsage_saysWhatIsWrong()
{
    QFETCH(const QString, arguments);
    QFETCH(const QByteArray, fault);
    const Outcome outcome = m_program->run(arguments.split(u' ', Qt::SkipEmptyParts));
    QCOMPARE(outcome.status, 2);
    QCOMPARE(outcome.out, "");
    QCOMPARE(outcome.err, "pixpress-cli: " + fault + "\nTry 'pixpress-cli --help'.\n");
}

void CommandLineTest::samples_becomeSmallerBesideThemselves()
{
    const QStringList names = QDir(QStringLiteral(PIXPRESS_SAMPLES))
                                  .entryList({u"*.png"_s, u"*.jp*g"_s, u"*.webp"_s, u"*.avif"_s});
    QVERIFY(names.size() >= 4);
    for (const QString &name : names)
        m_program->copySample(name, name);
    const Outcome outcome = m_program->run(names);
    QVERIFY2(outcome.status == 0, outcome.out + outcome.err);
    QCOMPARE(outcome.err, "");
    QCOMPARE(m_program->files().size(), 2 * names.size());
    for (const QString &name : names) {
        const QFileInfo original(m_program->path(name));
        const QFileInfo result(
            m_program->path(original.completeBaseName() + u"-pixpress."_s + original.suffix()));
        QVERIFY2(result.exists() && result.size() > 0, qPrintable(name));
        QVERIFY2(result.size() < original.size(), qPrintable(name));
        QVERIFY(outcome.out.contains(name.toUtf8()));
    }
    QVERIFY(outcome.out.contains(QByteArray::number(names.size()) + " files compressed, "));
    QVERIFY(!outcome.out.contains('\r')); // no progress line where nobody watches
}

void CommandLineTest::output_goesIntoTheFolder()
{
    m_program->copySample(u"island map.png"_s, u"a #1%.png"_s);
    QVERIFY(QDir().mkdir(m_program->path(u"out"_s)));
    const Outcome outcome = m_program->run({u"--output"_s, u"out"_s, u"a #1%.png"_s});
    QVERIFY2(outcome.status == 0, outcome.out + outcome.err);
    QVERIFY(QFile::exists(m_program->path(u"out/a #1%.png"_s)));
    QCOMPARE(m_program->files(), QStringList(u"a #1%.png"_s));
}

void CommandLineTest::overwrite_replacesTheFile()
{
    m_program->copySample(u"island map.png"_s, u"a.png"_s);
    const qint64 before = QFileInfo(m_program->path(u"a.png"_s)).size();
    QCOMPARE(m_program->run({u"--overwrite"_s, u"a.png"_s}).status, 0);
    QVERIFY(QFileInfo(m_program->path(u"a.png"_s)).size() < before);
    QCOMPARE(m_program->files(), QStringList(u"a.png"_s));
}

void CommandLineTest::options_reachTheService()
{
    m_program->copySample(u"paper balloon.png"_s, u"a.png"_s);
    const Outcome outcome =
        m_program->run({u"--resize"_s, u"cover"_s, u"--width"_s, u"40"_s, u"--height"_s, u"30"_s,
                        u"--convert"_s, u"jpeg"_s, u"--background"_s, u"#FF0000"_s, u"a.png"_s});
    QVERIFY2(outcome.status == 0, outcome.out + outcome.err);
    QFile file(m_program->path(u"a-pixpress.jpg"_s));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray jpeg = file.readAll();
    QVERIFY(jpeg.startsWith("\xff\xd8\xff"));
    // The frame header of a progressive JPEG: length, 8 bits, height 30, width 40.
    QVERIFY(jpeg.contains(QByteArray::fromHex("ffc2001108001e0028")));
}

void CommandLineTest::oneSide_isEnough()
{
    m_program->copySample(u"paper balloon.png"_s, u"a.png"_s);
    QCOMPARE(m_program->run({u"--height"_s, u"30"_s, u"a.png"_s}).status, 0);
    // The height stands in the header chunk, which comes first.
    QCOMPARE(m_program->content(u"a-pixpress.png"_s).mid(20, 4), QByteArray::fromHex("0000001e"));
}

void CommandLineTest::preserve_keepsWhatIsNamed_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArrayList>("kept"); // of what the sample's metadata say
    const auto row = [](const char *list, const QByteArrayList &kept) {
        QTest::newRow(list) << QStringList{u"--preserve"_s, QString::fromLatin1(list)} << kept;
    };
    QTest::newRow("nothing") << QStringList() << QByteArrayList();
    row("copyright", {"CC0 1.0"});
    row("creation", {"2026:03:20"});
    row("location", {"WGS-84"});
    row("location,copyright", {"CC0 1.0", "WGS-84"});
}

void CommandLineTest::preserve_keepsWhatIsNamed()
{
    QFETCH(const QStringList, arguments);
    QFETCH(const QByteArrayList, kept);
    m_program->copySample(u"lighthouse.jpeg"_s, u"a.jpeg"_s);
    const Outcome outcome = m_program->run(arguments + QStringList(u"a.jpeg"_s));
    QVERIFY2(outcome.status == 0, outcome.out + outcome.err);
    const QByteArray before = m_program->content(u"a.jpeg"_s);
    const QByteArray after = m_program->content(u"a-pixpress.jpeg"_s);
    for (const QByteArray text : {"CC0 1.0", "2026:03:20", "WGS-84"}) {
        QVERIFY2(before.contains(text), text);
        QVERIFY2(after.contains(text) == kept.contains(text), text);
    }
}

void CommandLineTest::names_areLinedUpByColumns()
{
    const Outcome outcome = m_program->run({u"写真.png"_s, u"a.png"_s});
    QVERIFY2(outcome.out.contains("写真.png  Failed: "), outcome.out);
    QVERIFY2(outcome.out.contains("a.png     Failed: "), outcome.out);
}

void CommandLineTest::longName_doesNotPushTheOthersAway()
{
    const QString name = QString(60, u'x') + u".png"_s;
    const Outcome outcome = m_program->run({name, u"a.png"_s});
    QVERIFY2(outcome.out.contains(name.toUtf8() + "  Failed: "), outcome.out);
    QVERIFY2(outcome.out.contains("a.png" + QByteArray(35, ' ') + "  Failed: "), outcome.out);
}

void CommandLineTest::largerResult_isToldAsLarger()
{
    m_program->copySample(u"lake at dusk.jpg"_s, u"a.jpg"_s);
    const Outcome outcome = m_program->run({u"--convert"_s, u"png"_s, u"a.jpg"_s});
    QVERIFY2(outcome.status == 0, outcome.out + outcome.err);
    QVERIFY(m_program->content(u"a-pixpress.png"_s).size() > m_program->content(u"a.jpg"_s).size());
    const QRegularExpression larger(u" [1-9]\\d*% larger\\b"_s);
    QCOMPARE(QString::fromUtf8(outcome.out).count(larger), 2); // of the file, and in all
}

void CommandLineTest::json_isOneObjectALine()
{
    m_program->copySample(u"island map.png"_s, u"a.png"_s);
    const Outcome outcome = m_program->run({u"--json"_s, u"a.png"_s, u"notes.txt"_s, u"no.png"_s});
    QCOMPARE(outcome.status, 1);
    QCOMPARE(outcome.err, "");
    QHash<QString, QJsonObject> byStatus;
    for (const QByteArray &line : outcome.out.trimmed().split('\n')) {
        const QJsonObject object = QJsonDocument::fromJson(line).object();
        byStatus.insert(object.value(u"status"_s).toString(), object);
    }
    QCOMPARE(byStatus.size(), 3);
    const QJsonObject completed = byStatus.value(u"completed"_s);
    QCOMPARE(completed.value(u"file"_s), m_program->path(u"a.png"_s));
    QCOMPARE(completed.value(u"output"_s), m_program->path(u"a-pixpress.png"_s));
    QCOMPARE(completed.value(u"originalSize"_s).toInteger(),
             QFileInfo(m_program->path(u"a.png"_s)).size());
    QCOMPARE(completed.value(u"compressedSize"_s).toInteger(),
             QFileInfo(m_program->path(u"a-pixpress.png"_s)).size());
    QCOMPARE(byStatus.value(u"failed"_s).value(u"error"_s),
             u"Could not read \"no.png\": No such file or directory."_s);
    QCOMPARE(byStatus.value(u"skipped"_s).value(u"file"_s), u"notes.txt"_s);
}

void CommandLineTest::failures_areReportedAndFail_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("error");
    QTest::newRow("empty") << QByteArray() << QByteArray("The file is not a PNG, ");
    QTest::newRow("no picture") << QByteArray("Hello") << QByteArray("The file is not a PNG, ");
    QTest::newRow("head only") << QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16)
                               << QByteArray("The image is damaged or incomplete.");
}

void CommandLineTest::failures_areReportedAndFail()
{
    QFETCH(const QByteArray, content);
    QFETCH(const QByteArray, error);
    QFile file(m_program->path(u"bad.png"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
    file.close();
    m_program->copySample(u"island map.png"_s, u"good.png"_s);
    const Outcome outcome = m_program->run({u"bad.png"_s, u"good.png"_s});
    QCOMPARE(outcome.status, 1);
    QVERIFY2(outcome.out.contains("bad.png   Failed: " + error), outcome.out);
    QVERIFY2(outcome.out.contains("1 file compressed"), outcome.out);
    QVERIFY2(outcome.out.endsWith("1 file failed.\n"), outcome.out);
    QVERIFY(QFile::exists(m_program->path(u"good-pixpress.png"_s)));
    QVERIFY(!QFile::exists(m_program->path(u"bad-pixpress.png"_s)));
}

void CommandLineTest::otherFiles_areSkipped()
{
    m_program->copySample(u"island map.png"_s, u"a.png"_s);
    const Outcome outcome = m_program->run({u"a.png"_s, u"notes.txt"_s});
    QCOMPARE(outcome.status, 0);
    QCOMPARE(outcome.err, "notes.txt  Skipped: Not a PNG, JPEG, WebP or AVIF file\n");
}

void CommandLineTest::otherNames_areSkippedToo_data()
{
    QTest::addColumn<QString>("argument");
    QTest::addColumn<QByteArray>("shown");
    QTest::newRow("hidden, without extension") << u".png"_s << QByteArray(".png");
    QTest::newRow("the same in a folder") << u"sub/.png"_s << QByteArray("sub/.png");
    QTest::newRow("in a folder with an extension") << u"a.png/b"_s << QByteArray("a.png/b");
    QTest::newRow("the folder") << u"a.png/"_s << QByteArray("a.png/");
}

void CommandLineTest::otherNames_areSkippedToo()
{
    QFETCH(const QString, argument);
    QFETCH(const QByteArray, shown);
    const Outcome outcome = m_program->run({argument});
    QCOMPARE(outcome.status, 1);
    QCOMPARE(outcome.err, shown + "  Skipped: Not a PNG, JPEG, WebP or AVIF file\n");
    QCOMPARE(outcome.out, "Nothing to compress.\n");
}

void CommandLineTest::nothingAccepted_fails()
{
    const Outcome outcome = m_program->run({u"notes.txt"_s});
    QCOMPARE(outcome.status, 1);
    QCOMPARE(outcome.out, "Nothing to compress.\n");
}

void CommandLineTest::fileNameCannotSteerTheTerminal()
{
    const Outcome outcome = m_program->run({u"\033]0;owned\007.png"_s});
    QCOMPARE(outcome.status, 1);
    QVERIFY(!outcome.out.contains('\033'));
    QVERIFY(outcome.out.contains("?]0;owned?.png"));

    m_program->copySample(u"island map.png"_s, u"\033[2J.png"_s);
    const Outcome completed = m_program->run({u"\033[2J.png"_s});
    QCOMPARE(completed.status, 0);
    QVERIFY(!completed.out.contains('\033'));
    QVERIFY(completed.out.contains("?[2J-pixpress.png"));
}

void CommandLineTest::withoutLocale_worksWithAnyName()
{
    m_program->copySample(u"island map.png"_s, u"карта.png"_s);
    const Outcome outcome = m_program->run({u"карта.png"_s}, {u"LC_ALL=C"_s, u"LANG="_s});
    QVERIFY2(outcome.status == 0, outcome.out + outcome.err);
    QCOMPARE(outcome.err, "");
    QVERIFY(QFile::exists(m_program->path(u"карта-pixpress.png"_s)));
}

void CommandLineTest::remoteWithoutKey_refusesEachFile()
{
    m_program->copySample(u"island map.png"_s, u"a.png"_s);
    const Outcome outcome =
        m_program->run({u"--remote"_s, u"a.png"_s, u"a.png"_s, u"a.png"_s, u"a.png"_s, u"a.png"_s});
    QCOMPARE(outcome.status, 1);
    QCOMPARE(outcome.out.count("a.png  Failed: No API key configured\n"), 5);
    QVERIFY(outcome.out.endsWith("5 files failed.\n"));
    QCOMPARE(m_program->files(), QStringList(u"a.png"_s));
}

void CommandLineTest::remoteWithUsedUpQuota_refusesEachFile()
{
    // The settings have a format of their own, which looks where the INI format does.
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, m_program->home());
    {
        UserSettings settings; // those of the desktop application
        KeychainHelper::saveAPIKey(settings, u"key"_s);
        settings.setValue(u"pixpress_quota_month"_s,
                          QDateTime::currentDateTime().toString(u"yyyy-MM"_s));
        settings.setValue(u"pixpress_quota_count"_s, 500);
    }
    m_program->copySample(u"island map.png"_s, u"a.png"_s);
    const Outcome outcome = m_program->run({u"--remote"_s, u"a.png"_s, u"a.png"_s});
    QCOMPARE(outcome.status, 1);
    QCOMPARE(outcome.out.count("a.png  Failed: Monthly quota exhausted\n"), 2);
}

void CommandLineTest::offline_touchesNoSettings()
{
    m_program->copySample(u"island map.png"_s, u"a.png"_s);
    QCOMPARE(m_program->run({u"a.png"_s}).status, 0);
    QCOMPARE(
        QDir(m_program->home()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
        QStringList());
}

void CommandLineTest::ignoredSignal_staysIgnored()
{
    QStringList arguments{u"-c"_s, u"trap '' HUP; exec \"$@\""_s, u"sh"_s, Program::file(),
                          u"--json"_s};
    for (int i = 0; i < 8; ++i) {
        arguments.append(u"%1.png"_s.arg(i));
        m_program->copySample(u"island map.png"_s, arguments.last());
    }
    QProcess process;
    m_program->prepare(process);
    process.start(u"sh"_s, arguments); // like nohup
    QVERIFY(process.waitForReadyRead(60'000));
    ::kill(static_cast<pid_t>(process.processId()), SIGHUP);
    QVERIFY(process.waitForFinished(120'000));
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(process.exitCode(), 0);
    QCOMPARE(m_program->files().size(), 16);
}

void CommandLineTest::interrupt_leavesNoHalfWrittenFile_data()
{
    QTest::addColumn<int>("signal");
    QTest::newRow("Ctrl-C") << SIGINT;
    QTest::newRow("kill") << SIGTERM;
    QTest::newRow("closed terminal") << SIGHUP;
}

void CommandLineTest::interrupt_leavesNoHalfWrittenFile()
{
    QFETCH(const int, signal);
    QStringList arguments{u"--overwrite"_s, u"--json"_s};
    for (int i = 0; i < 40; ++i) {
        const QString name = u"%1.png"_s.arg(i);
        m_program->copySample(u"island map.png"_s, name);
        arguments.append(name);
    }
    QProcess process;
    m_program->prepare(process);
    process.start(Program::file(), arguments);
    QVERIFY(process.waitForReadyRead(60'000)); // the first file is done, the others are not
    ::kill(static_cast<pid_t>(process.processId()), signal);
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(process.exitCode(), 130);
    QVERIFY(process.readAllStandardError().contains("Interrupted."));

    QFile sample(QStringLiteral(PIXPRESS_SAMPLES "/island map.png"));
    QVERIFY(sample.open(QIODevice::ReadOnly));
    const QByteArray original = sample.readAll();
    int untouched = 0;
    for (const QString &name : m_program->files()) {
        QFile file(m_program->path(name));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray content = file.readAll();
        if (content == original)
            ++untouched;
        else // a complete PNG ends with its IEND chunk
            QVERIFY(content.endsWith(QByteArray::fromHex("0000000049454e44ae426082")));
    }
    QVERIFY(untouched > 0);
    QVERIFY(untouched < 40);
}

QTEST_GUILESS_MAIN(CommandLineTest)
#include "tst_commandline.moc"
