// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cli/program.h"

#include <QTest>

#include <array>
#include <cstdlib>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

using namespace pixpress::test;
using namespace Qt::StringLiterals;

namespace {

/// The side of a pseudo terminal on which a person would sit.
class Terminal
{
public:
    explicit Terminal(unsigned short columns)
        : m_descriptor(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC))
    {
        const winsize size{.ws_row = 24, .ws_col = columns, .ws_xpixel = 0, .ws_ypixel = 0};
        if (m_descriptor < 0 || grantpt(m_descriptor) != 0 || unlockpt(m_descriptor) != 0 ||
            ioctl(m_descriptor, TIOCSWINSZ, &size) != 0)
            qFatal("There is no pseudo terminal.");
    }
    Terminal(const Terminal &) = delete;
    Terminal &operator=(const Terminal &) = delete;
    ~Terminal() { close(m_descriptor); }

    QString name() const { return QString::fromLocal8Bit(ptsname(m_descriptor)); }

    /// Everything that is written until the last program that has the other side open ends.
    QByteArray readToEnd() const
    {
        QByteArray all;
        std::array<char, 4096> buffer{};
        for (ssize_t got = 0; (got = read(m_descriptor, buffer.data(), buffer.size())) > 0;)
            all.append(buffer.data(), got);
        return all;
    }

private:
    const int m_descriptor;
};

} // namespace

/// What a person sees who runs the program on a terminal.
class TerminalTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_program = std::make_unique<Program>(); }

    void progress_showsThreeFilesAtATime();
    void progress_staysWithinTheLine_data();
    void progress_staysWithinTheLine();
    void json_isNotMixedWithProgress();

private:
    /// What came to a terminal of so many columns, cut into what was shown at a time.
    QStringList show(unsigned short columns, const QStringList &arguments) const;

    std::unique_ptr<Program> m_program;
};

QStringList TerminalTest::show(unsigned short columns, const QStringList &arguments) const
{
    const Terminal terminal(columns);
    QProcess process;
    m_program->prepare(process);
    process.setStandardOutputFile(terminal.name());
    process.start(Program::file(), arguments);
    if (!process.waitForStarted())
        qFatal("The program does not start.");
    QString all = QString::fromUtf8(terminal.readToEnd());
    process.waitForFinished();
    return all.replace(u"\r\n"_s, u"\n"_s).split(u"\r\033[K"_s);
}

void TerminalTest::progress_showsThreeFilesAtATime()
{
    QStringList names;
    for (const auto &name : {u"a.png"_s, u"b.png"_s, u"c.png"_s, u"d.png"_s, u"e.png"_s}) {
        m_program->copySample(u"island map.png"_s, name);
        names.append(name);
    }
    const QStringList shown = show(80, QStringList{u"--jobs"_s, u"3"_s} + names);
    const QString three = u"0 of 5  compressing a.png, compressing b.png, compressing c.png"_s;
    QVERIFY2(shown.contains(three), qPrintable(shown.join(u'|')));

    // Lines stand where there is no progress, which is erased before them and drawn after them.
    QStringList lines;
    for (const QString &text : shown) {
        const qsizetype progress = text.lastIndexOf(u'\n') + 1;
        lines += text.left(progress).split(u'\n', Qt::SkipEmptyParts);
        QVERIFY2(text.mid(progress).count(u".png"_s) <= 3, qPrintable(text));
    }
    QCOMPARE(lines.size(), 6);
    for (const QString &line : lines)
        QVERIFY2(!line.contains(u" of 5"_s), qPrintable(line));
    QVERIFY(shown.last().startsWith(u"5 files compressed, "_s));
    QVERIFY(shown.last().endsWith(u".\n"_s));
}

void TerminalTest::progress_staysWithinTheLine_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("reading");
    QTest::addColumn<QString>("fetching");
    QTest::newRow("narrow") << u"holiday.png"_s << u"0 of 1  reading hol"_s
                            << u"0 of 1  fetching ho"_s;
    QTest::newRow("wide") << u"写真写真.png"_s << u"0 of 1  reading 写"_s
                          << u"0 of 1  fetching 写"_s;
}

void TerminalTest::progress_staysWithinTheLine()
{
    QFETCH(const QString, name);
    QFETCH(const QString, reading);
    QFETCH(const QString, fetching);
    m_program->copySample(u"island map.png"_s, name);
    const QStringList shown = show(20, {name}); // the last column is left free
    QVERIFY2(shown.contains(reading), qPrintable(shown.join(u'|')));
    QVERIFY2(shown.contains(u"0 of 1  compressing"_s), qPrintable(shown.join(u'|')));
    QVERIFY2(shown.contains(fetching), qPrintable(shown.join(u'|')));
}

void TerminalTest::json_isNotMixedWithProgress()
{
    m_program->copySample(u"island map.png"_s, u"a.png"_s);
    const QStringList shown = show(80, {u"--json"_s, u"a.png"_s});
    QCOMPARE(shown.size(), 1);
    QVERIFY(shown[0].startsWith(u'{'));
    QCOMPARE(shown[0].count(u'\n'), 1);
}

QTEST_GUILESS_MAIN(TerminalTest)
#include "tst_terminal.moc"
