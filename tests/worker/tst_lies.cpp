// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "worker/worker.h"

#include <QDir>
#include <QFile>
#include <QTest>

using namespace pixpress;
using namespace Qt::StringLiterals;

/// Answers that no worker gives: the program survives them, the request fails with a sentence, and
/// nothing is left over.
class LiesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lie_costsItsRequestOnly_data()
    {
        QTest::addColumn<bool>("isAnswered");
        for (const char *lie : {"no greeting",
                                "death at the start",
                                "garbage",
                                "list",
                                "deep nesting",
                                "huge length",
                                "too large a packet",
                                "no number",
                                "another number",
                                "unknown kind",
                                "another request's kind",
                                "busy with nothing",
                                "no descriptor",
                                "unsealed",
                                "can shrink",
                                "too short",
                                "too long",
                                "no bytes",
                                "a terabyte",
                                "no size",
                                "negative size",
                                "overflowing size",
                                "fractional size",
                                "its own socket",
                                "a pipe",
                                "the picture itself",
                                "a flood",
                                "silence",
                                "death"})
            QTest::newRow(lie) << false;
        QTest::newRow("two answers") << true;
    }

    void lie_costsItsRequestOnly()
    {
        QFETCH(bool, isAnswered);
        qputenv("PIXPRESS_LIE", QTest::currentDataTag());
        const qsizetype descriptors = openDescriptors();
        QFile picture(QStringLiteral(PIXPRESS_SAMPLES "/island map.png"));
        QVERIFY(picture.open(QIODevice::ReadOnly));
        {
            Worker worker({.program = QStringLiteral(PIXPRESS_LYING_WORKER),
                           .compressLimit = std::chrono::milliseconds(500),
                           .thumbnailLimit = std::chrono::milliseconds(500)});
            QList<std::expected<Thumbnail, QString>> answers;
            for (int count = 0; count < 3; ++count)
                worker.makeThumbnail(picture.handle(), 72,
                                     [&](const auto &answer) { answers.append(answer); });
            QTRY_COMPARE(answers.size(), 3);
            for (const auto &answer : answers) {
                QVERIFY(isAnswered || !answer);
                if (!answer)
                    QVERIFY2(answer.error().endsWith(u'.'), qPrintable(answer.error()));
            }
        }
        picture.close();
        QCOMPARE(openDescriptors(), descriptors);
        QFile children(u"/proc/self/task/%1/children"_s.arg(QCoreApplication::applicationPid()));
        QVERIFY(children.open(QIODevice::ReadOnly));
        QCOMPARE(children.readAll(), "");
    }

private:
    static qsizetype openDescriptors()
    {
        return QDir(u"/proc/self/fd"_s).entryList(QDir::Files | QDir::System).size();
    }
};

QTEST_GUILESS_MAIN(LiesTest)
#include "tst_lies.moc"
