// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "stage.h"

#include <QTest>

using namespace pixpress;
using namespace Qt::StringLiterals;

class IntakeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_stage.start();
        m_stage.hold();
    }

    void url_isTakenOrLeftOut_data()
    {
        QTest::addColumn<QByteArray>("url");
        QTest::addColumn<QString>("path"); // empty when it is left out

        const auto row = [](const QByteArray &url, const char *path) {
            QTest::newRow(url) << url << QString::fromUtf8(path);
        };
        row("file:///a/b.png", "/a/b.png");
        row("file:///a/photo.PNG", "/a/photo.PNG");
        row("file:///a/photo2.jpeg", "/a/photo2.jpeg");
        row("file:///a/b.JpG", "/a/b.JpG");
        row("file:///a/b.webp", "/a/b.webp");
        row("file:///a/b.AVIF", "/a/b.AVIF");
        row("file:///a/with%20blanks%20.png", "/a/with blanks .png");
        row("file:///a/50%25%20off%231.png", "/a/50% off#1.png");
        row("file:///a/what%3F.png", "/a/what?.png");
        row("file:///a/%E6%B5%B7%C3%A9.png", "/a/海é.png");
        row("file:///a/b.%70ng", "/a/b.png");
        row("file:///a/b.tar.png", "/a/b.tar.png");
        row("file://localhost/a/b.png", "/a/b.png");
        row("file:///a/.png.webp", "/a/.png.webp");
        row("file:///a%2Fb.png", "/a/b.png");
        row("file:/a/b.png", "/a/b.png");
        row("file:///a/b.png?c.jpg", "/a/b.png");
        row("file:///a/b.png#c.jpg", "/a/b.png");
        row("file://somebody@/a/b.png", "/a/b.png");
        row("file:////a/b.png", "/a/b.png");
        row("file://../a/b.png", "/a/b.png");
        row("file:///a/../b.png", "/a/../b.png");
        row("file:///a/folder.png/", "/a/folder.png"); // as "file:///a/folder.png"
        row("file:///a/folder.png//", "/a/folder.png");
        const QByteArray host = QSysInfo::machineHostName().toUtf8();
        row("file://" + host + "/a/b.png", "/a/b.png");
        row("file://" + host.toUpper() + "/a/b%20c.png", "/a/b c.png");

        row("file:///a/notes.txt", "");
        row("file:///a/folder/", "");
        row("file:///a/nothing", "");
        row("file:///a/b.png.bak", "");
        row("file:///a/b.gif", "");
        row("file:///a/png", "");
        row("file:///a/b%2F.png", "");
        row("file:///", "");
        row("file:///a/b.txt%00.png", "");
        row("file:a/b.png", "");
        row("file::/icon/16.png", "");
        row("file://server/share/b.png", "");
        row("file://" + host + ".example.org/a/b.png", "");
        row("http://localhost/b.png", "");
        row("https://tinypng.com/a.png", "");
        row("ftp://server/a.png", "");
        row("data:image/png;base64,AAAA.png", "");
        row("a.png", "");
        row("/a/b.png", "");
        row("some text with .png", "");
        row("", "");
    }

    void url_isTakenOrLeftOut()
    {
        QFETCH(QByteArray, url);
        QFETCH(QString, path);
        m_stage.app()->handleDrop({QUrl::fromEncoded(url)});
        QStringList addresses;
        for (const CompressionTask &task : tasks())
            addresses.append(task.sourceURL.toString(QUrl::FullyEncoded));
        // As if the path alone had been given, however the address was written.
        QCOMPARE(addresses.join(u'\n'), QUrl::fromLocalFile(path).toString(QUrl::FullyEncoded));
        QCOMPARE(m_stage.batches.size(), path.isEmpty() ? 0 : 1);
    }

    void invalidNames_doNoHarm()
    {
        m_stage.app()->handleDrop(
            {QUrl::fromEncoded("file:///a/%FF%FE.png"), QUrl::fromEncoded("file:///a/%00.png"),
             QUrl::fromEncoded("file:///a/%zz.png"), QUrl(), QUrl::fromLocalFile(u"/good.png"_s)});
        QVERIFY(!tasks().isEmpty());
        QCOMPARE(tasks().last().sourceURL.toLocalFile(), u"/good.png"_s);
        QCOMPARE(m_stage.batches.size(), 1);
    }

    void hundredsOfFiles_areOneBatchInTheirOrder()
    {
        QList<QUrl> urls;
        QStringList expected;
        for (int index = 0; index < 500; ++index) {
            const QString name =
                u"%1 # %.%2"_s.arg(index).arg(index % 5 == 4 ? u"txt"_s : u"png"_s);
            urls.append(QUrl::fromLocalFile(u"/nowhere/"_s + name));
            if (index % 5 != 4)
                expected.append(name);
        }
        m_stage.app()->handleDrop(urls);
        QStringList names;
        for (const CompressionTask &task : tasks())
            names.append(task.fileName);
        QCOMPARE(names, expected);
        QCOMPARE(m_stage.batches, QList<int>{400});
    }

    void fiftyPictures_areOneBatchOfFifty()
    {
        QList<QUrl> urls;
        for (int index = 0; index < 50; ++index)
            urls.append(QUrl::fromLocalFile(u"/nowhere/%1.jpg"_s.arg(index)));
        m_stage.app()->handleDrop(urls);
        QCOMPARE(m_stage.batches, QList<int>{50});
    }

    void nothingDropped_addsNothing()
    {
        m_stage.app()->handleDrop({});
        QVERIFY(m_stage.batches.isEmpty());
    }

    void droppedFiles_getTheCurrentOptions()
    {
        m_stage.app()->options()->setPreserveLocation(true);
        m_stage.release();
        m_stage.app()->handleDrop({m_stage.file(u"a.png"_s)});
        QTRY_COMPARE(m_stage.app()->appState()->compressionQueue()->completedCount(), 1);
        QVERIFY(m_stage.outputRequests().join(u' ').contains(u"location"));
    }

private:
    const QList<CompressionTask> &tasks()
    {
        return m_stage.app()->appState()->compressionQueue()->tasks();
    }

    test::Stage m_stage;
};

QTEST_MAIN(IntakeTest)

#include "tst_intake.moc"
