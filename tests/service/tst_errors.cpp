// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "service/errors.h"

#include <QTest>

using namespace pixpress;
using namespace Qt::StringLiterals;

class ErrorsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tinifyError_hasItsFixedText_data();
    void tinifyError_hasItsFixedText();
    void otherErrors_passTheirDescriptionOn();
};

void ErrorsTest::tinifyError_hasItsFixedText_data()
{
    using enum TinifyError::Case;
    QTest::addColumn<TinifyError>("error");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *text, const TinifyError &error) {
        QTest::newRow(text) << error << QString::fromLatin1(text);
    };
    row("API error (500): Oh %1", {apiError, 500, u"Oh %1"_s});
    row("API error (-1): ", {apiError, -1});
    row("Invalid server response", {invalidResponse});
    row("Failed to download compressed image", {downloadFailed});
    row("Monthly compression limit reached (500/month)", {quotaExceeded});
    row("Invalid API key", {unauthorized});
    row("File exceeds 500 MB limit", {fileTooLarge});
    row("Unsupported image format", {invalidImage});
    row("No API key configured", {noAPIKey});
}

void ErrorsTest::tinifyError_hasItsFixedText()
{
    QFETCH(const TinifyError, error);
    QFETCH(const QString, text);
    QCOMPARE(error.errorDescription(), text);
    QCOMPARE(errorDescription(ServiceError(error)), text);
}

void ErrorsTest::otherErrors_passTheirDescriptionOn()
{
    QCOMPARE(errorDescription(DecodingError{u"Lacks x."_s}), u"Lacks x."_s);
    QCOMPARE(errorDescription(TransportError{TransportError::Case::other, u"Lost."_s}), u"Lost."_s);
}

QTEST_GUILESS_MAIN(ErrorsTest)
#include "tst_errors.moc"
