// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "program.h"

#include <QDir>
#include <QTest>

using namespace pixpress::test;
using namespace Qt::StringLiterals;

/// The installed programs, in a root that has nothing but the package and what it depends on. The
/// display and the message bus are outside. Run by tests/packaging/cleanroot, as root, with the
/// root as TMPDIR's parent, so that the homes of the tests are inside.
class InstalledTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void commandLine_compressesAllFormats();
    void offline_compressesAllFormatsAndOpensFiles();
    void remote_greets();

private:
    void verifyIcon(const XDisplay &display, XDisplay::Window window) const;
    QString iconOf(const QByteArray &className) const;
    QString inside(const QString &path) const;
    QStringList command(const QString &program, const QStringList &arguments = {}) const;
    Invocation started(const Desktop &desktop, const QString &program,
                       const QStringList &arguments = {}) const;

    QString m_root;
};

namespace {

const QList<std::pair<QString, QString>> pictures{{u"lake at dusk.jpg"_s, u"a.jpg"_s},
                                                  {u"island map.png"_s, u"b.png"_s},
                                                  {u"marbled ink.webp"_s, u"c.webp"_s},
                                                  {u"city by night.avif"_s, u"d.avif"_s}};

QStringList copies(const Home &home)
{
    QStringList paths;
    for (const auto &[sample, name] : pictures)
        paths.append(home.sample(sample, name));
    return paths;
}

void verifySmaller(const Home &home)
{
    for (const auto &[sample, name] : pictures) {
        const qint64 size = home.size(QString(name).replace(u'.', u"-pixpress."_s));
        QVERIFY2(size > 0 && size < home.size(name), qPrintable(name));
    }
}

/// Leaves a picture of the window beside the package, to be looked at.
void keep(const QImage &picture, const QString &name)
{
    QVERIFY(picture.save(QStringLiteral(PIXPRESS_PICTURES "/%1.png").arg(name)));
}

} // namespace

void InstalledTest::initTestCase()
{
    QDir folder = QDir::temp();
    QVERIFY(folder.cdUp());
    m_root = folder.path();
    QVERIFY2(QFile::exists(m_root + u"/usr/bin/pixpress"_s), qPrintable(m_root));
}

/// The path of the icon that a desktop shows for windows of a class.
QString InstalledTest::iconOf(const QByteArray &className) const
{
    const QDir entries(m_root + u"/usr/share/applications"_s);
    for (const QString &name : entries.entryList({u"*.desktop"_s})) {
        QFile entry(entries.filePath(name));
        if (entry.open(QIODevice::ReadOnly) &&
            entry.readAll().contains("\nStartupWMClass=" + className + '\n'))
            return u"%1/usr/share/icons/hicolor/16x16/apps/%2.png"_s.arg(
                m_root, QFileInfo(name).completeBaseName());
    }
    return {};
}

/// Its own icon is that of the entry that a desktop finds by its class.
void InstalledTest::verifyIcon(const XDisplay &display, XDisplay::Window window) const
{
    const QImage expected(iconOf(display.className(window)));
    QVERIFY2(!expected.isNull(), display.className(window).constData());
    constexpr QRect middle(4, 4, 8, 8); // where nothing is blended, and so rounded
    QCOMPARE(display.icon(window).copy(middle).convertToFormat(QImage::Format_RGB32),
             expected.copy(middle).convertToFormat(QImage::Format_RGB32));
}

QString InstalledTest::inside(const QString &path) const
{
    return QString(path).remove(m_root); // of a bus it is a part of the address
}

QStringList InstalledTest::command(const QString &program, const QStringList &arguments) const
{
    QStringList all{m_root, program};
    for (const QString &argument : arguments)
        all.append(inside(argument));
    return all;
}

Invocation InstalledTest::started(const Desktop &desktop, const QString &program,
                                  const QStringList &arguments) const
{
    Invocation invocation{.arguments = command(program, arguments)};
    const QProcessEnvironment outside = desktop.environment();
    for (const QString &name : outside.keys())
        invocation.environment.append({name, inside(outside.value(name))});
    invocation.environment.append({u"PATH"_s, u"/usr/sbin:/usr/bin:/sbin:/bin"_s});
    return invocation;
}

void InstalledTest::commandLine_compressesAllFormats()
{
    const Home home;
    QProcess process;
    process.setProcessEnvironment(home.environment());
    process.start(u"chroot"_s, command(u"pixpress-cli"_s, copies(home)));
    QVERIFY(process.waitForFinished(patience));
    QCOMPARE(process.readAllStandardError(), "");
    QCOMPARE(process.exitCode(), 0);
    verifySmaller(home);
}

void InstalledTest::offline_compressesAllFormatsAndOpensFiles()
{
    Desktop desktop;
    QVERIFY(desktop.start());
    Program program(desktop, u"chroot"_s, started(desktop, u"pixpress-offline"_s, copies(desktop)));
    QVERIFY(program.isInFront());
    verifyIcon(desktop.display(), program.window());
    QTRY_COMPARE_WITH_TIMEOUT(desktop.fileNames().filter(u"-pixpress."_s).size(), pictures.size(),
                              patience);
    verifySmaller(desktop);
    const QImage list = program.picture();

    desktop.press({u"ctrl+comma"_s});
    QTRY_VERIFY_WITH_TIMEOUT(program.picture() != list, patience);
    QVERIFY(program.isInFront());
    const QImage settings = program.picture();
    desktop.press({u"Escape"_s});
    QTRY_VERIFY_WITH_TIMEOUT(program.picture() != settings, patience);
    QVERIFY(program.isInFront());
    keep(program.picture(), u"installed-offline"_s);

    const QImage settled = program.picture();
    desktop.press({u"ctrl+o"_s}); // the toolkit's own dialog, since no desktop gives one
    QTRY_VERIFY_WITH_TIMEOUT(program.picture() != settled, patience);
    QVERIFY(program.isInFront());
    const QImage choice = program.picture();
    keep(choice, u"installed-choice"_s);
    desktop.press({u"Escape"_s});
    QTRY_VERIFY_WITH_TIMEOUT(program.picture() != choice, patience);
    QVERIFY(program.isInFront());
    desktop.press({u"ctrl+q"_s});
    QCOMPARE(program.exitStatus(), 0);
    QCOMPARE(program.errors(), "");
    QCOMPARE(program.output(), "");
}

void InstalledTest::remote_greets()
{
    Desktop desktop;
    QVERIFY(desktop.start());
    Program program(desktop, u"chroot"_s, started(desktop, u"pixpress"_s));
    QVERIFY(program.isInFront());
    verifyIcon(desktop.display(), program.window());
    QTRY_VERIFY_WITH_TIMEOUT(showsLogo(program.picture()), patience);
    keep(program.picture(), u"installed-greeting"_s);
    desktop.press({u"ctrl+q"_s});
    QCOMPARE(program.exitStatus(), 0);
    QCOMPARE(program.errors(), "");
    QCOMPARE(program.output(), "");
}

QTEST_GUILESS_MAIN(InstalledTest)
#include "tst_installed.moc"
