// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "catalogue.h"
#include "ui/language.h"

#include <QRegularExpression>
#include <QTest>

using namespace pixpress;
using namespace pixpress::test;
using namespace Qt::StringLiterals;

namespace {

/// What a translation must have in common with its source: the placeholders, whether there is an
/// ellipsis at the end, and the letters that open a menu.
QString fixtures(const QString &text)
{
    static const QRegularExpression fixed(u"%[1-9n]|…$|&(?=\\w)|#rrggbb|\\n"_s);
    QStringList found;
    for (const auto &match : fixed.globalMatch(text))
        found.append(match.captured());
    found.sort();
    return found.join(u' ');
}

} // namespace

class LanguageTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void chosenLanguage_isTheFirstThatThereIs_data();
    void chosenLanguage_isTheFirstThatThereIs();

    void translation_keepsWhatItMustOfItsSource_data();
    void translation_keepsWhatItMustOfItsSource();

    void installedLanguage_isThatOfTheTexts_data();
    void installedLanguage_isThatOfTheTexts();
};

void LanguageTest::chosenLanguage_isTheFirstThatThereIs_data()
{
    QTest::addColumn<QStringList>("wanted");
    QTest::addColumn<QString>("chosen");

    QTest::newRow("nothing") << QStringList() << QString();
    QTest::newRow("no locale") << QStringList{u"C"_s} << QString();
    QTest::newRow("English") << QStringList{u"en-GB"_s, u"en"_s} << QString();
    QTest::newRow("English before German") << QStringList{u"en-US"_s, u"de-DE"_s} << QString();
    QTest::newRow("German") << QStringList{u"de-DE"_s} << u"de"_s;
    QTest::newRow("Swiss German") << QStringList{u"de-CH"_s, u"de"_s} << u"de"_s;
    QTest::newRow("Canadian French") << QStringList{u"fr-CA"_s, u"en-CA"_s} << u"fr"_s;
    QTest::newRow("Spanish of Latin America") << QStringList{u"es-419"_s} << u"es"_s;
    QTest::newRow("Brazilian") << QStringList{u"pt-BR"_s} << u"pt_BR"_s;
    QTest::newRow("Portuguese") << QStringList{u"pt-PT"_s, u"en-US"_s} << u"pt_BR"_s;
    QTest::newRow("Japanese") << QStringList{u"ja"_s} << u"ja"_s;
    QTest::newRow("Chinese") << QStringList{u"zh-CN"_s} << u"zh_CN"_s;
    QTest::newRow("simplified Chinese") << QStringList{u"zh-Hans-SG"_s} << u"zh_CN"_s;
    QTest::newRow("traditional Chinese") << QStringList{u"zh-Hant-TW"_s, u"zh-TW"_s} << QString();
    QTest::newRow("traditional Chinese, and its language alone")
        << QStringList{u"zh-TW"_s, u"zh"_s} << QString();
    QTest::newRow("traditional Chinese, then simplified")
        << QStringList{u"zh-TW"_s, u"zh-CN"_s} << u"zh_CN"_s;
    QTest::newRow("traditional Chinese, then French")
        << QStringList{u"zh-TW"_s, u"fr-FR"_s} << u"fr"_s;
    QTest::newRow("unknown, then Japanese") << QStringList{u"xx"_s, u"ja-JP"_s} << u"ja"_s;
}

void LanguageTest::chosenLanguage_isTheFirstThatThereIs()
{
    QFETCH(QStringList, wanted);
    QTEST(chosenLanguage(wanted), "chosen");
}

void LanguageTest::translation_keepsWhatItMustOfItsSource_data()
{
    QTest::addColumn<QString>("language");

    const QStringList languages = translatedLanguages();
    QCOMPARE(languages, (QStringList{u"de"_s, u"es"_s, u"fr"_s, u"ja"_s, u"pt_BR"_s, u"zh_CN"_s}));
    for (const QString &language : languages)
        QTest::newRow(qUtf8Printable(language)) << language;
}

void LanguageTest::translation_keepsWhatItMustOfItsSource()
{
    QFETCH(QString, language);
    const QList<Message> messages = readCatalogue(language);
    QVERIFY(messages.size() > 90);
    // The languages of East Asia have no plurals, and all others here have one of them.
    const bool hasPlural = language != "ja"_L1 && language != "zh_CN"_L1;
    for (const Message &message : messages) {
        const QByteArray source = message.source.toUtf8();
        QVERIFY2(message.type.isEmpty(), source);
        QVERIFY2(message.translations.size() == (message.counts && hasPlural ? 2 : 1), source);
        for (const QString &translation : message.translations) {
            QVERIFY2(!translation.trimmed().isEmpty(), source);
            if (fixtures(translation) != fixtures(message.source))
                QFAIL(qUtf8Printable(message.source + u" -> "_s + translation));
        }
    }
}

void LanguageTest::installedLanguage_isThatOfTheTexts_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("retry");
    QTest::addColumn<QString>("one");
    QTest::addColumn<QString>("many");

    QTest::newRow("de") << u"de"_s << u"Wiederholen"_s << u"(noch 1)"_s << u"(noch 377)"_s;
    QTest::newRow("fr") << u"fr"_s << u"Réessayer"_s << u"(1 restante)"_s << u"(377 restantes)"_s;
    QTest::newRow("es") << u"es"_s << u"Reintentar"_s << u"(queda 1)"_s << u"(quedan 377)"_s;
    QTest::newRow("pt_BR") << u"pt_BR"_s << u"Repetir"_s << u"(resta 1)"_s << u"(restam 377)"_s;
    QTest::newRow("ja") << u"ja"_s << u"再試行"_s << u"(残り1)"_s << u"(残り377)"_s;
    QTest::newRow("zh_CN") << u"zh_CN"_s << u"重试"_s << u"(剩余 1)"_s << u"(剩余 377)"_s;
}

/// Each on top of those before, as the last one installed is asked first.
void LanguageTest::installedLanguage_isThatOfTheTexts()
{
    QFETCH(QString, language);
    installLanguage(*QCoreApplication::instance(), language);
    QTEST(QCoreApplication::translate("TaskRowView", "Retry"), "retry");
    const auto left = [](int count) {
        return QCoreApplication::translate("QuotaBarView", "(%n left)", nullptr, count);
    };
    QTEST(left(1), "one");
    QTEST(left(377), "many");
    QCOMPARE(QCoreApplication::translate("TaskRowView", "No such text"), u"No such text"_s);
}

QTEST_GUILESS_MAIN(LanguageTest)

#include "tst_language.moc"
