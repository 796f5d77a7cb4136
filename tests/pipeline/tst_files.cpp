// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pipeline/files.h"
#include "pipeline/outputname.h"

#include "support/child.h"
#include "support/faults/faults.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <memory>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

using namespace pixpress;
using namespace Qt::StringLiterals;

class FilesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void output_getsItsName_data();
    void output_getsItsName();
    void customFolder_getsTheFile_data();
    void customFolder_getsTheFile();
    void customFolderThatIsNone_isTheSourcesOwn_data();
    void customFolderThatIsNone_isTheSourcesOwn();
    void outputOfFileInTheRootFolder_staysThere();
    void overwriting_usesTheVerySameAddress();
    void takenName_countsWhateverTakesIt_data();
    void takenName_countsWhateverTakesIt();
    void takenName_ofADanglingLinkIsFree();
    void nameTakenMeanwhile_leavesItsFileAlone_data();
    void nameTakenMeanwhile_leavesItsFileAlone();
    void output_thatCannotBeWrittenFails();

    void readFile_givesTheWholeContent_data();
    void readFile_givesTheWholeContent();
    void readFile_followsLinks();
    void readFile_takesAnyName_data();
    void readFile_takesAnyName();
    void readFile_refusesWhatIsNoFile_data();
    void readFile_refusesWhatIsNoFile();
    void readFile_ofMissingFileFails_data();
    void readFile_ofMissingFileFails();
    void readFile_ofForbiddenFileFails();
    void readFile_ofPipePutInPlaceOfTheFileFails();
    void readFile_takesAllOfAGrowingFile();
    void readFile_ofMoreThanTheMemoryFails();

    void writeFile_makesANewFile_data();
    void writeFile_makesANewFile();
    void writeFile_leavesNewFileToTheUmask();
    void writeFile_replacesTheContent_data();
    void writeFile_replacesTheContent();
    void writeFile_keepsInodeOwnerAndPermissions();
    void writeFile_keepsHardLinks();
    void writeFile_keepsSymbolicLinks();
    void writeFile_throughDanglingLinkMakesItsFile_data();
    void writeFile_throughDanglingLinkMakesItsFile();
    void writeFile_isSeenByOpenHandles();
    void writeFile_inClosedFolderReplacesAnOpenFile();
    void writeFile_toWhatIsNoFileFails_data();
    void writeFile_toWhatIsNoFileFails();
    void writeFile_doesNotEvenOpenWhatIsNoFile();
    void writeFile_withoutFolderFails_data();
    void writeFile_withoutFolderFails();
    void writeFile_toForbiddenFileKeepsIt_data();
    void writeFile_toForbiddenFileKeepsIt();

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }
    QUrl url(const QString &name) const { return QUrl::fromLocalFile(path(name)); }
    void put(const QString &name, const QByteArray &content = "x");
    QByteArray content(const QString &name) const;
    QStringList names() const;
    /// Lets users other than root into the folder.
    void openToOthers(bool writable = false);

    std::unique_ptr<QTemporaryDir> m_folder;
};

namespace {

QByteArray bytes(qsizetype size, int seed = 1)
{
    QByteArray result(size, Qt::Uninitialized);
    quint32 state = 2654435761U * quint32(seed);
    for (char &byte : result) {
        state = state * 1664525U + 1013904223U;
        byte = static_cast<char>(state >> 24);
    }
    return result;
}

/// The sentence of an error, or a word that no error has.
template <typename T>
QString sentence(const std::expected<T, QString> &result)
{
    return result ? u"no error"_s : result.error();
}

struct stat statusOf(const QString &path)
{
    struct stat status{};
    lstat(qPrintable(path), &status);
    return status;
}

bool makeSocket(const QString &path)
{
    const int descriptor = socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const QByteArray name = QFile::encodeName(path);
    std::copy_n(name.constData(), std::min<size_t>(size_t(name.size()), 107), address.sun_path);
    const bool made = bind(descriptor, reinterpret_cast<sockaddr *>(&address), sizeof address) == 0;
    close(descriptor);
    return made;
}

constexpr QFile::Permissions ownerOnly = QFile::ReadOwner | QFile::WriteOwner;

} // namespace

void FilesTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
}

void FilesTest::cleanup()
{
    // Nobody may be locked out from removing it.
    QVERIFY(QFile::setPermissions(m_folder->path(), ownerOnly | QFile::ExeOwner));
    m_folder.reset();
}

void FilesTest::put(const QString &name, const QByteArray &content)
{
    QVERIFY(QDir().mkpath(QFileInfo(path(name)).absolutePath()));
    QFile file(path(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), content.size());
}

QByteArray FilesTest::content(const QString &name) const
{
    QFile file(path(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("cannot be opened");
}

QStringList FilesTest::names() const
{
    return QDir(m_folder->path())
        .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                   QDir::Name);
}

void FilesTest::openToOthers(bool writable)
{
    QFile::Permissions permissions =
        ownerOnly | QFile::ExeOwner | QFile::ReadOther | QFile::ExeOther;
    permissions.setFlag(QFile::WriteOther, writable);
    QVERIFY(QFile::setPermissions(m_folder->path(), permissions));
}

void FilesTest::output_getsItsName_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<CompressionOptions>("options");
    QTest::addColumn<QStringList>("present");
    QTest::addColumn<QString>("output");
    const auto row = [](const char *name, const char *source, const CompressionOptions &options,
                        const QStringList &present, const char *output) {
        QTest::newRow(name) << QString::fromUtf8(source) << options << present
                            << QString::fromUtf8(output);
    };
    using enum ImageFormat;
    using enum OutputDestination;
    const auto plain = [](OutputDestination destination) {
        return CompressionOptions{.outputDestination = destination};
    };
    const auto to = [](ImageFormat format, OutputDestination destination) {
        return CompressionOptions{
            .convertEnabled = true, .convertFormat = format, .outputDestination = destination};
    };

    row("alongside", "a.png", plain(alongside), {}, "a-pixpress.png");
    row("alongside, name taken", "a.png", plain(alongside), {u"a-pixpress.png"_s},
        "a-pixpress-1.png");
    row("alongside, two names taken", "a.png", plain(alongside),
        {u"a-pixpress.png"_s, u"a-pixpress-1.png"_s}, "a-pixpress-2.png");
    row("alongside, gap in the numbers", "a.png", plain(alongside),
        {u"a-pixpress.png"_s, u"a-pixpress-2.png"_s}, "a-pixpress-1.png");
    row("alongside, only a number taken", "a.png", plain(alongside), {u"a-pixpress-1.png"_s},
        "a-pixpress.png");
    QStringList many{u"a-pixpress.png"_s};
    for (int n = 1; n <= 10; ++n)
        many << u"a-pixpress-%1.png"_s.arg(n);
    row("alongside, eleven names taken", "a.png", plain(alongside), many, "a-pixpress-11.png");
    row("alongside, other letter case taken", "a.png", plain(alongside), {u"A-PIXPRESS.PNG"_s},
        "a-pixpress.png");
    row("alongside, other extension taken", "a.png", plain(alongside), {u"a-pixpress.webp"_s},
        "a-pixpress.png");
    row("alongside of an output", "a-pixpress.png", plain(alongside), {u"a.png"_s},
        "a-pixpress-pixpress.png");
    row("alongside keeps the letter case", "photo.PNG", plain(alongside), {}, "photo-pixpress.PNG");
    row("alongside keeps the extension", "photo.JpEg", plain(alongside), {}, "photo-pixpress.JpEg");
    row("alongside, inner dots", "photo.final.v2.PNG", plain(alongside), {},
        "photo.final.v2-pixpress.PNG");
    row("alongside, hidden", ".hidden.png", plain(alongside), {}, ".hidden-pixpress.png");
    row("alongside, two dots", "a..png", plain(alongside), {}, "a.-pixpress.png");
    row("alongside, number sign and percent", "a#1 100%25 %1?.png", plain(alongside),
        {u"a#1 100%25 %1?-pixpress.png"_s}, "a#1 100%25 %1?-pixpress-1.png");
    row("alongside, markers", "%1-%2.%3.png", plain(alongside), {u"%1-%2.%3-pixpress.png"_s},
        "%1-%2.%3-pixpress-1.png");
    row("alongside, blanks", " a b .png", plain(alongside), {}, " a b -pixpress.png");
    row("alongside, many scripts", "Größe 大きさ 🐈.webp", plain(alongside),
        {u"Größe 大きさ 🐈-pixpress.webp"_s}, "Größe 大きさ 🐈-pixpress-1.webp");
    row("alongside, backslash and colon", "a\\b:c.png", plain(alongside), {},
        "a\\b:c-pixpress.png");
    row("alongside, to png", "a.JPG", to(png, alongside), {}, "a-pixpress.png");
    row("alongside, to jpeg", "a.png", to(jpeg, alongside), {}, "a-pixpress.jpg");
    row("alongside, to webp", "a.b.PNG", to(webp, alongside), {u"a.b-pixpress.webp"_s},
        "a.b-pixpress-1.webp");
    row("alongside, to avif", "a.png", to(avif, alongside), {}, "a-pixpress.avif");
    row("alongside, to the same format", "a.PNG", to(png, alongside), {}, "a-pixpress.png");

    row("overwrite", "a.png", plain(overwrite), {}, "a.png");
    row("overwrite keeps the letter case", "a.b.JPG", plain(overwrite), {}, "a.b.JPG");
    row("overwrite to webp", "a.png", to(webp, overwrite), {}, "a.webp");
    row("overwrite to webp, name taken", "a.png", to(webp, overwrite), {u"a.webp"_s}, "a.webp");
    row("overwrite to avif", "a#1 %.b.png", to(avif, overwrite), {}, "a#1 %.b.avif");
    row("overwrite to the same format", "a.png", to(png, overwrite), {}, "a.png");
    row("overwrite to the same format, upper case", "a.PNG", to(png, overwrite), {}, "a.PNG");
    row("overwrite JPG to jpeg", "b.JPG", to(jpeg, overwrite), {}, "b.JPG");
    row("overwrite jpg to jpeg", "b.jpg", to(jpeg, overwrite), {}, "b.jpg");
    row("overwrite jpeg to jpeg", "c.jpeg", to(jpeg, overwrite), {}, "c.jpg");
    row("overwrite JPEG to jpeg", "c.JPEG", to(jpeg, overwrite), {}, "c.jpg");
    row("overwrite jpeg", "c.jpeg", plain(overwrite), {}, "c.jpeg");
    row("overwrite to png", "c.webp", to(png, overwrite), {}, "c.png");

    row("no folder chosen", "a.png", plain(customFolder), {}, "a-1.png");
    row("no folder chosen, two names taken", "a.PNG", plain(customFolder), {u"a-1.PNG"_s},
        "a-2.PNG");
    row("no folder chosen, to webp", "a.png", to(webp, customFolder), {}, "a.webp");
    row("no folder chosen, to webp, name taken", "a.png", to(webp, customFolder), {u"a.webp"_s},
        "a-1.webp");
}

void FilesTest::output_getsItsName()
{
    QFETCH(const QString, source);
    QFETCH(const CompressionOptions, options);
    QFETCH(const QStringList, present);
    QFETCH(const QString, output);
    // A folder whose name needs care as well.
    const QString folder = u"Ordner #1 100%25.d/"_s;
    put(folder + source);
    for (const QString &name : present)
        put(folder + name);
    const auto written = writeOutput(url(folder + source), options, "output");
    QCOMPARE(sentence(written), u"no error"_s);
    QCOMPARE(*written, url(folder + output));
    QCOMPARE(content(folder + output), "output");
    for (const QString &name : present + QStringList(source)) {
        if (name != output)
            QCOMPARE(content(folder + name), "x");
    }
}

void FilesTest::customFolder_getsTheFile_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<bool>("convert");
    QTest::addColumn<QStringList>("present");
    QTest::addColumn<QString>("output");
    const auto row = [](const char *name, const QString &folder, bool convert,
                        const QStringList &present, const QString &output) {
        QTest::newRow(name) << folder << convert << present << output;
    };
    const QStringList taken{u"out/a.b.PNG"_s, u"out/a.b-1.PNG"_s};
    row("free", u"out"_s, false, {}, u"out/a.b.PNG"_s);
    row("slash at the end", u"out/"_s, false, {}, u"out/a.b.PNG"_s);
    row("names taken", u"out"_s, false, taken, u"out/a.b-2.PNG"_s);
    row("conversion", u"out"_s, true, taken, u"out/a.b.webp"_s);
    row("conversion, name taken", u"out"_s, true, {u"out/a.b.webp"_s}, u"out/a.b-1.webp"_s);
    row("number sign, percent, letters", u"Zü #1 100%25?"_s, false, {}, u"Zü #1 100%25?/a.b.PNG"_s);
    row("the source's own", u"in"_s, false, {}, u"in/a.b-1.PNG"_s);
}

void FilesTest::customFolder_getsTheFile()
{
    QFETCH(const QString, folder);
    QFETCH(const bool, convert);
    QFETCH(const QStringList, present);
    QFETCH(const QString, output);
    put(u"in/a.b.PNG"_s);
    QVERIFY(QDir().mkpath(path(folder)));
    for (const QString &name : present)
        put(name);
    const CompressionOptions options{.convertEnabled = convert,
                                     .outputDestination = OutputDestination::customFolder,
                                     .customFolderURL = url(folder)};
    const auto written = writeOutput(url(u"in/a.b.PNG"_s), options, "output");
    QCOMPARE(sentence(written), u"no error"_s);
    QCOMPARE(*written, url(output));
    QCOMPARE(content(output), "output");
}

void FilesTest::customFolderThatIsNone_isTheSourcesOwn_data()
{
    QTest::addColumn<QUrl>("folder");
    QTest::newRow("empty") << QUrl();
    QTest::newRow("empty file address") << QUrl(u"file:"_s);
    QTest::newRow("file address without a path") << QUrl(u"file://"_s);
    QTest::newRow("on the web") << QUrl(u"https://example.org/folder"_s);
    QTest::newRow("in the program") << QUrl(u"qrc:/folder"_s);
    QTest::newRow("without a scheme") << QUrl(u"/tmp"_s);
}

void FilesTest::customFolderThatIsNone_isTheSourcesOwn()
{
    QFETCH(const QUrl, folder);
    const CompressionOptions options{.outputDestination = OutputDestination::customFolder,
                                     .customFolderURL = folder};
    const OutputName name(url(u"in/a.png"_s), options);
    QCOMPARE(name.url(), url(u"in/a.png"_s));
    QVERIFY(!name.replaces());
    put(u"in/a.png"_s);
    QCOMPARE(writeOutput(url(u"in/a.png"_s), options, "output").value_or(QUrl()),
             url(u"in/a-1.png"_s));
    QCOMPARE(content(u"in/a.png"_s), "x");
}

void FilesTest::outputOfFileInTheRootFolder_staysThere()
{
    const QUrl source(u"file:///surely-not-there.png"_s);
    QCOMPARE(OutputName(source, {}).url(), QUrl(u"file:///surely-not-there-pixpress.png"_s));
    QCOMPARE(OutputName(source,
                        {.convertEnabled = true, .outputDestination = OutputDestination::overwrite})
                 .url(),
             QUrl(u"file:///surely-not-there.webp"_s));
    QCOMPARE(OutputName(url(u"surely-not-there.png"_s),
                        {.outputDestination = OutputDestination::customFolder,
                         .customFolderURL = QUrl(u"file:///"_s)})
                 .url(),
             source);
}

void FilesTest::overwriting_usesTheVerySameAddress()
{
    // As file managers write it, which fromLocalFile() would not.
    const QUrl source(u"file:///folder/Gr%C3%B6%C3%9Fe%20%28100%25%29.png"_s);
    const OutputName itself(source, {.outputDestination = OutputDestination::overwrite});
    QCOMPARE(itself.url().toEncoded(), source.toEncoded());
    QCOMPARE(OutputName(source, {}).url().toLocalFile(), u"/folder/Größe (100%)-pixpress.png"_s);
}

void FilesTest::takenName_countsWhateverTakesIt_data()
{
    QTest::addColumn<QString>("kind");
    for (const auto *kind : {"folder", "pipe", "link to a file"})
        QTest::newRow(kind) << QString::fromLatin1(kind);
}

void FilesTest::takenName_countsWhateverTakesIt()
{
    QFETCH(const QString, kind);
    put(u"a.png"_s);
    const QString taken = path(u"a-pixpress.png"_s);
    if (kind == u"folder")
        QVERIFY(QDir().mkdir(taken));
    else if (kind == u"pipe")
        QCOMPARE(mkfifo(qPrintable(taken), 0600), 0);
    else
        QVERIFY(QFile::link(u"a.png"_s, taken));
    QCOMPARE(writeOutput(url(u"a.png"_s), {}, "output").value_or(QUrl()),
             url(u"a-pixpress-1.png"_s));
    QCOMPARE(content(u"a.png"_s), "x");
}

void FilesTest::takenName_ofADanglingLinkIsFree()
{
    put(u"a.png"_s);
    QVERIFY(QFile::link(u"elsewhere.png"_s, path(u"a-pixpress.png"_s)));
    QCOMPARE(writeOutput(url(u"a.png"_s), {}, "output").value_or(QUrl()), url(u"a-pixpress.png"_s));
    QCOMPARE(content(u"elsewhere.png"_s), "output");
}

void FilesTest::nameTakenMeanwhile_leavesItsFileAlone_data()
{
    QTest::addColumn<OutputDestination>("destination");
    QTest::addColumn<QString>("taken");
    QTest::addColumn<QString>("output");
    QTest::newRow("alongside") << OutputDestination::alongside << u"a-pixpress.png"_s
                               << u"a-pixpress-1.png"_s;
    QTest::newRow("custom folder")
        << OutputDestination::customFolder << u"out/a.png"_s << u"out/a-1.png"_s;
}

void FilesTest::nameTakenMeanwhile_leavesItsFileAlone()
{
    QFETCH(const OutputDestination, destination);
    QFETCH(const QString, taken);
    QFETCH(const QString, output);
    put(u"a.png"_s);
    QVERIFY(QDir(m_folder->path()).mkdir(u"out"_s));
    static QByteArray g_source;
    static QByteArray g_taken;
    g_source = path(u"a.png"_s).toUtf8();
    g_taken = path(taken).toUtf8();
    test::faults::observeOpening(
        [](const char *opened) {
            if (opened == g_taken)
                QVERIFY(link(g_source.constData(), opened) == 0 || errno == EEXIST);
        },
        qPrintable(m_folder->path()));
    const auto written =
        writeOutput(url(u"a.png"_s),
                    {.outputDestination = destination, .customFolderURL = url(u"out"_s)}, "output");
    test::faults::observeOpening(nullptr);
    QCOMPARE(sentence(written), u"no error"_s);
    QCOMPARE(*written, url(output));
    QCOMPARE(content(output), "output");
    QCOMPARE(content(taken), "x");
}

void FilesTest::output_thatCannotBeWrittenFails()
{
    put(u"a.png"_s);
    const CompressionOptions missing{.outputDestination = OutputDestination::customFolder,
                                     .customFolderURL = url(u"none/deep"_s)};
    QCOMPARE(sentence(writeOutput(url(u"a.png"_s), missing, "output")),
             u"Could not write \"a.png\": No such file or directory."_s);
    const CompressionOptions overwriting{.outputDestination = OutputDestination::overwrite};
    QVERIFY(QDir(m_folder->path()).mkdir(u"b.png"_s));
    QCOMPARE(sentence(writeOutput(url(u"b.png"_s), overwriting, "output")),
             u"Could not write \"b.png\": It is not a regular file."_s);
    QCOMPARE(names(), QStringList({u"a.png"_s, u"b.png"_s}));
}

void FilesTest::readFile_givesTheWholeContent_data()
{
    QTest::addColumn<qsizetype>("size");
    for (const qsizetype size : {0, 1, 4095, 4096, 16385, 5'000'001})
        QTest::addRow("%d bytes", int(size)) << size;
}

void FilesTest::readFile_givesTheWholeContent()
{
    QFETCH(const qsizetype, size);
    put(u"a.png"_s, bytes(size));
    const auto read = readFile(url(u"a.png"_s));
    QCOMPARE(sentence(read), u"no error"_s);
    QVERIFY(*read == bytes(size));
    QVERIFY(content(u"a.png"_s) == bytes(size));
}

void FilesTest::readFile_followsLinks()
{
    put(u"a.png"_s, "content");
    QVERIFY(QFile::link(u"a.png"_s, path(u"b.png"_s)));
    QVERIFY(QFile::link(u"b.png"_s, path(u"c.png"_s)));
    QCOMPARE(readFile(url(u"c.png"_s)).value_or("none"), "content");
}

void FilesTest::readFile_takesAnyName_data()
{
    QTest::addColumn<QString>("name");
    for (const auto *name :
         {"a b.png", "100%25.png", "a#b?.png", "Größe 大きさ 🐈.png", "%1 %2.png", ".hidden.png",
          "a\nb.png", "a\\b.png", " a .png", "-a.png"})
        QTest::newRow(name) << QString::fromUtf8(name);
}

void FilesTest::readFile_takesAnyName()
{
    QFETCH(const QString, name);
    const QString missing = sentence(readFile(url(name)));
    QVERIFY2(missing.contains(name), qPrintable(missing));
    QCOMPARE(sentence(writeFile(url(name), "content")), u"no error"_s);
    QCOMPARE(names(), QStringList(name));
    QCOMPARE(readFile(url(name)).value_or("none"), "content");
}

void FilesTest::readFile_refusesWhatIsNoFile_data()
{
    QTest::addColumn<QString>("kind");
    for (const auto *kind : {"folder", "pipe", "socket", "link to a folder", "link to a pipe",
                             "link to endless zeros", "endless zeros", "nothing at all"})
        QTest::newRow(kind) << QString::fromLatin1(kind);
}

/// Makes something that is no regular file; returns its path.
static QString makeNoFile(const QString &kind, const QString &folder, const QString &name)
{
    const QString path = folder + u'/' + name;
    if (kind == u"endless zeros")
        return u"/dev/zero"_s;
    if (kind == u"nothing at all")
        return u"/dev/null"_s;
    if (kind == u"folder" && QDir().mkdir(path))
        return path;
    if (kind == u"pipe" && mkfifo(qPrintable(path), 0666) == 0)
        return path;
    if (kind == u"socket" && makeSocket(path))
        return path;
    if (kind == u"link to a folder" && QFile::link(u"/"_s, path))
        return path;
    if (kind == u"link to a pipe" && mkfifo(qPrintable(folder + u"/pipe"_s), 0666) == 0 &&
        QFile::link(u"pipe"_s, path))
        return path;
    if (kind == u"link to endless zeros" && QFile::link(u"/dev/zero"_s, path))
        return path;
    return {};
}

void FilesTest::readFile_refusesWhatIsNoFile()
{
    QFETCH(const QString, kind);
    const QString path = makeNoFile(kind, m_folder->path(), u"x.png"_s);
    QVERIFY(!path.isEmpty());
    const auto result = test::inChild([&path] { // which may hang
        return sentence(readFile(QUrl::fromLocalFile(path)));
    });
    QCOMPARE(result.signal, 0);
    QCOMPARE(result.answer,
             u"Could not read \"%1\": It is not a regular file."_s.arg(QFileInfo(path).fileName()));
}

void FilesTest::readFile_ofMissingFileFails_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("missing") << u"gone.png"_s;
    QTest::newRow("missing folder") << u"none/gone.png"_s;
    QTest::newRow("below a file") << u"file/gone.png"_s;
    QTest::newRow("dangling link") << u"link-gone.png"_s;
    QTest::newRow("link to itself") << u"loop-gone.png"_s;
    QTest::newRow("name too long") << QString(300, u'x') + u"gone.png"_s;
}

void FilesTest::readFile_ofMissingFileFails()
{
    QFETCH(const QString, name);
    put(u"file"_s);
    QVERIFY(QFile::link(u"none.png"_s, path(u"link-gone.png"_s)));
    QVERIFY(QFile::link(u"loop-gone.png"_s, path(u"loop-gone.png"_s)));
    const auto read = readFile(url(name));
    QVERIFY(!read);
    QVERIFY2(read.error().contains(QFileInfo(name).fileName()), qPrintable(read.error()));
}

void FilesTest::readFile_ofForbiddenFileFails()
{
    put(u"closed.png"_s, "secret");
    put(u"open.png"_s, "content");
    QVERIFY(QFile::setPermissions(path(u"open.png"_s), ownerOnly | QFile::ReadOther));
    QVERIFY(QFile::setPermissions(path(u"closed.png"_s), {}));
    openToOthers();
    const auto readByOthers = [this](const QString &name) {
        return test::inChild([file = url(name)] {
            if (!test::dropPrivileges())
                return u"still root"_s;
            const auto read = readFile(file);
            return read ? QString::fromUtf8(*read) : read.error();
        });
    };
    QCOMPARE(readByOthers(u"open.png"_s).answer, u"content"_s);
    QCOMPARE(readByOthers(u"closed.png"_s).answer,
             u"Could not read \"closed.png\": Permission denied."_s);
}

void FilesTest::readFile_ofPipePutInPlaceOfTheFileFails()
{
    put(u"a.png"_s, "content");
    const auto result = test::inChild([this] { // which may hang
        test::faults::observeOpening(
            [](const char *opened) {
                unlink(opened);
                mkfifo(opened, 0600);
            },
            qPrintable(m_folder->path()));
        return sentence(readFile(url(u"a.png"_s)));
    });
    QCOMPARE(result.signal, 0);
    QCOMPARE(result.answer, u"Could not read \"a.png\": It is not a regular file."_s);
}

void FilesTest::readFile_takesAllOfAGrowingFile()
{
    put(u"a.png"_s, "start");
    static QByteArray g_path;
    static int g_rounds;
    g_path = path(u"a.png"_s).toUtf8();
    g_rounds = 10;
    test::faults::observe(
        [](test::faults::Call call, int) {
            // Through another name than that of the observed folder.
            if (call == test::faults::Call::read && g_rounds-- > 0) {
                const auto size = statusOf(QString::fromUtf8(g_path)).st_size;
                truncate(g_path.constData(), size + 3);
            }
        },
        qPrintable(m_folder->path()));
    const auto read = readFile(url(u"a.png"_s));
    test::faults::observe(nullptr);
    QCOMPARE(sentence(read), u"no error"_s);
    QVERIFY(g_rounds <= 0);
    QCOMPARE(*read, content(u"a.png"_s));
    QCOMPARE(read->size(), 35);
}

void FilesTest::readFile_ofMoreThanTheMemoryFails()
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    QSKIP("Sanitizers end a program that asks for too much memory.");
#endif
    put(u"a.png"_s);
    if (truncate(qPrintable(path(u"a.png"_s)), off_t(1) << 42) != 0)
        QSKIP("The file system has no files of 4 TB.");
    const auto result = test::inChild([this] {
        const rlimit limit{rlim_t(1) << 41, rlim_t(1) << 41};
        setrlimit(RLIMIT_AS, &limit);
        return sentence(readFile(url(u"a.png"_s)));
    });
    QCOMPARE(result.signal, 0);
    QCOMPARE(result.answer, u"Could not read \"a.png\": %1."_s.arg(qt_error_string(ENOMEM)));
}

void FilesTest::writeFile_makesANewFile_data()
{
    QTest::addColumn<qsizetype>("size");
    for (const qsizetype size : {0, 1, 4096, 3'000'001})
        QTest::addRow("%d bytes", int(size)) << size;
}

void FilesTest::writeFile_makesANewFile()
{
    QFETCH(const qsizetype, size);
    QCOMPARE(sentence(writeFile(url(u"a.png"_s), bytes(size))), u"no error"_s);
    QVERIFY(content(u"a.png"_s) == bytes(size));
    QCOMPARE(names(), QStringList(u"a.png"_s));
}

void FilesTest::writeFile_leavesNewFileToTheUmask()
{
    const mode_t before = umask(027);
    const auto written = writeFile(url(u"a.png"_s), "content");
    umask(before);
    QVERIFY(written);
    QCOMPARE(statusOf(path(u"a.png"_s)).st_mode & 07777, 0640U);
}

void FilesTest::writeFile_replacesTheContent_data()
{
    QTest::addColumn<qsizetype>("before");
    QTest::addColumn<qsizetype>("after");
    const auto row = [](const char *name, qsizetype before, qsizetype after) {
        QTest::newRow(name) << before << after;
    };
    row("shrinking", 2'000'001, 1'000'003);
    row("growing", 1'000'003, 2'000'001);
    row("same size", 70'000, 70'000);
    row("from nothing", 0, 5000);
    row("to nothing", 5000, 0);
    row("nothing to nothing", 0, 0);
    row("by one byte", 4096, 4097);
}

void FilesTest::writeFile_replacesTheContent()
{
    QFETCH(const qsizetype, before);
    QFETCH(const qsizetype, after);
    put(u"a.png"_s, bytes(before, 1));
    QCOMPARE(sentence(writeFile(url(u"a.png"_s), bytes(after, 2))), u"no error"_s);
    QVERIFY(content(u"a.png"_s) == bytes(after, 2));
    QCOMPARE(names(), QStringList(u"a.png"_s));
}

void FilesTest::writeFile_keepsInodeOwnerAndPermissions()
{
    put(u"a.png"_s, "old");
    const QByteArray name = QFile::encodeName(path(u"a.png"_s));
    if (geteuid() == 0)
        QCOMPARE(chown(name.constData(), 1234, 4321), 0);
    QCOMPARE(chmod(name.constData(), 0604), 0);
    const struct stat before = statusOf(path(u"a.png"_s));
    QVERIFY(writeFile(url(u"a.png"_s), "new content"));
    const struct stat after = statusOf(path(u"a.png"_s));
    QCOMPARE(after.st_ino, before.st_ino);
    QCOMPARE(after.st_mode, before.st_mode);
    QCOMPARE(after.st_uid, before.st_uid);
    QCOMPARE(after.st_gid, before.st_gid);
    QCOMPARE(content(u"a.png"_s), "new content");
}

void FilesTest::writeFile_keepsHardLinks()
{
    put(u"a.png"_s, "old");
    QCOMPARE(link(qPrintable(path(u"a.png"_s)), qPrintable(path(u"b.png"_s))), 0);
    QVERIFY(writeFile(url(u"a.png"_s), "new content"));
    QCOMPARE(content(u"b.png"_s), "new content");
    QCOMPARE(statusOf(path(u"a.png"_s)).st_nlink, nlink_t(2));
}

void FilesTest::writeFile_keepsSymbolicLinks()
{
    put(u"elsewhere/real.png"_s, "old");
    QVERIFY(QFile::link(u"elsewhere/real.png"_s, path(u"b.png"_s)));
    QVERIFY(QFile::link(u"b.png"_s, path(u"a.png"_s)));
    QVERIFY(writeFile(url(u"a.png"_s), "new content"));
    QVERIFY(S_ISLNK(statusOf(path(u"a.png"_s)).st_mode));
    QVERIFY(S_ISLNK(statusOf(path(u"b.png"_s)).st_mode));
    QCOMPARE(content(u"elsewhere/real.png"_s), "new content");
}

void FilesTest::writeFile_throughDanglingLinkMakesItsFile_data()
{
    QTest::addColumn<QString>("link");
    QTest::newRow("relative") << u"relative.png"_s;
    QTest::newRow("absolute") << u"absolute.png"_s;
    QTest::newRow("link to a link") << u"second.png"_s;
}

void FilesTest::writeFile_throughDanglingLinkMakesItsFile()
{
    QFETCH(const QString, link);
    QVERIFY(QDir(m_folder->path()).mkdir(u"elsewhere"_s));
    QVERIFY(QFile::link(u"elsewhere/new.png"_s, path(u"relative.png"_s)));
    QVERIFY(QFile::link(path(u"elsewhere/new.png"_s), path(u"absolute.png"_s)));
    QVERIFY(QFile::link(u"relative.png"_s, path(u"second.png"_s)));
    const QStringList before = names();
    QCOMPARE(sentence(writeFile(url(link), "content")), u"no error"_s);
    QCOMPARE(content(u"elsewhere/new.png"_s), "content");
    QCOMPARE(names(), before);
    QVERIFY(S_ISLNK(statusOf(path(link)).st_mode));
}

void FilesTest::writeFile_isSeenByOpenHandles()
{
    put(u"a.png"_s, "old");
    QFile open(path(u"a.png"_s));
    QVERIFY(open.open(QIODevice::ReadOnly | QIODevice::Unbuffered));
    QVERIFY(writeFile(url(u"a.png"_s), "new content"));
    QCOMPARE(open.readAll(), "new content");
}

void FilesTest::writeFile_inClosedFolderReplacesAnOpenFile()
{
    put(u"a.png"_s, "old");
    QVERIFY(
        QFile::setPermissions(path(u"a.png"_s), ownerOnly | QFile::ReadOther | QFile::WriteOther));
    openToOthers();
    const auto result = test::inChild([this] {
        return test::dropPrivileges() ? sentence(writeFile(url(u"a.png"_s), "new content"))
                                      : u"still root"_s;
    });
    QCOMPARE(result.answer, u"no error"_s);
    QCOMPARE(content(u"a.png"_s), "new content");
    QCOMPARE(names(), QStringList(u"a.png"_s));
}

void FilesTest::writeFile_toWhatIsNoFileFails_data()
{
    readFile_refusesWhatIsNoFile_data();
}

void FilesTest::writeFile_toWhatIsNoFileFails()
{
    QFETCH(const QString, kind);
    const QString path = makeNoFile(kind, m_folder->path(), u"x.png"_s);
    QVERIFY(!path.isEmpty());
    const QStringList before = names();
    const auto result = test::inChild([&path] { // which may hang
        return sentence(writeFile(QUrl::fromLocalFile(path), "content"));
    });
    QCOMPARE(result.signal, 0);
    QCOMPARE(result.answer, u"Could not write \"%1\": It is not a regular file."_s.arg(
                                QFileInfo(path).fileName()));
    QCOMPARE(names(), before);
}

// Some devices do something when they are opened.
void FilesTest::writeFile_doesNotEvenOpenWhatIsNoFile()
{
    QCOMPARE(mkfifo(qPrintable(path(u"pipe.png"_s)), 0600), 0);
    static int g_opened;
    g_opened = 0;
    test::faults::observeOpening([](const char *) { ++g_opened; }, qPrintable(m_folder->path()));
    const auto written = writeFile(url(u"pipe.png"_s), "content");
    test::faults::observeOpening(nullptr);
    QVERIFY(!written);
    QCOMPARE(g_opened, 1); // to make it, which opens nothing that is there
}

void FilesTest::writeFile_withoutFolderFails_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("missing folder") << u"none/new.png"_s;
    QTest::newRow("below a file") << u"file/new.png"_s;
    QTest::newRow("link to itself") << u"loop-new.png"_s;
    QTest::newRow("link into a missing folder") << u"link-new.png"_s;
    QTest::newRow("name too long") << QString(300, u'x') + u"new.png"_s;
}

void FilesTest::writeFile_withoutFolderFails()
{
    QFETCH(const QString, name);
    put(u"file"_s);
    QVERIFY(QFile::link(u"loop-new.png"_s, path(u"loop-new.png"_s)));
    QVERIFY(QFile::link(u"none/new.png"_s, path(u"link-new.png"_s)));
    const QStringList before = names();
    const QString error = sentence(writeFile(url(name), "content"));
    QVERIFY2(error.contains(u"new.png\": "_s), qPrintable(error));
    QCOMPARE(names(), before);
    QCOMPARE(content(u"file"_s), "x");
}

void FilesTest::writeFile_toForbiddenFileKeepsIt_data()
{
    QTest::addColumn<QFile::Permissions>("permissions");
    QTest::newRow("closed") << QFile::Permissions(ownerOnly);
    QTest::newRow("read only") << (ownerOnly | QFile::ReadOther);
    QTest::newRow("write only") << (ownerOnly | QFile::WriteOther);
}

void FilesTest::writeFile_toForbiddenFileKeepsIt()
{
    QFETCH(const QFile::Permissions, permissions);
    put(u"a.png"_s, "old");
    QVERIFY(QFile::setPermissions(path(u"a.png"_s), permissions));
    openToOthers(true);
    const struct stat before = statusOf(path(u"a.png"_s));
    const auto result = test::inChild([this] {
        return test::dropPrivileges() ? sentence(writeFile(url(u"a.png"_s), "new content"))
                                      : u"still root"_s;
    });
    QCOMPARE(result.answer, u"Could not write \"a.png\": Permission denied."_s);
    QCOMPARE(content(u"a.png"_s), "old");
    QCOMPARE(names(), QStringList(u"a.png"_s));
    QCOMPARE(statusOf(path(u"a.png"_s)).st_ino, before.st_ino);
}

QTEST_GUILESS_MAIN(FilesTest)
#include "tst_files.moc"
