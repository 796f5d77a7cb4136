// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

// All views at the smallest size of the window, in the language that LANGUAGE names; "rtl" stands
// for one that is made up. TEXT_SCALE enlarges the text.

#include "catalogue.h"
#include "pseudolanguage.h"
#include "scenes.h"
#include "shownitems.h"
#include "ui/application.h"

#include <QAccessible>
#include <QRegularExpression>
#include <QTest>

using namespace pixpress;
using namespace pixpress::test;
using namespace Qt::StringLiterals;

namespace {

/// Some names may be as long as they like, and the service's own words too.
bool mayElide(const QQuickItem &text)
{
    const QString words = text.property("text").toString();
    return text.objectName() == "fileName"_L1 ||
           (text.objectName() == "folder"_L1 && words.startsWith(u'/')) || words.endsWith(failure);
}

/// Where the text goes beyond what it stands in; null when nowhere. What can be scrolled to is not
/// beyond.
const QQuickItem *leftBy(const QQuickItem &text)
{
    constexpr double roundingError = 1;
    QRectF painted = paintedRect(text);
    for (const QQuickItem *outer = &text; outer; outer = outer->parentItem()) {
        const QRectF room = outer->mapRectToScene({0, 0, outer->width(), outer->height()});
        if (outer->inherits("QQuickFlickable")) {
            painted.setTop(room.top());
            painted.setBottom(room.bottom());
        }
        const auto *above = outer->parentItem();
        const bool isMoved = (above && above->inherits("QQuickFlickable")) ||
                             outer->inherits("QQuickContentItem"); // which is below the menu bar
        const QRectF tolerant =
            room.adjusted(-roundingError, -roundingError, roundingError, roundingError);
        if (!isMoved && !room.isEmpty() && !tolerant.contains(painted))
            return outer;
    }
    return nullptr;
}

bool overlap(const QQuickItem &one, const QQuickItem &other)
{
    const QRectF common = visibleRect(one).intersected(visibleRect(other));
    return common.width() > 1 && common.height() > 1 && layerOf(one) == layerOf(other);
}

/// What is wrong with the texts that show, a line for each.
QStringList faults(const Scene &scene)
{
    QStringList lines;
    const QList<QQuickItem *> texts = shownTexts(scene);
    for (qsizetype index = 0; index < texts.size(); ++index) {
        const QQuickItem &text = *texts[index];
        const QString words = text.property("text").toString();
        if (text.property("truncated").toBool() && !mayElide(text))
            lines.append(words + u" is cut off"_s);
        else if (const auto *left = leftBy(text))
            lines.append(u"%1 goes beyond %2 %3"_s.arg(
                words, QLatin1StringView(left->metaObject()->className()), left->objectName()));
        for (const QQuickItem *other : texts.mid(index + 1)) {
            if (overlap(text, *other))
                lines.append(words + u" is over "_s + other->property("text").toString());
        }
    }
    return lines;
}

/// What a person can read or be told of.
QStringList words(const Scene &scene)
{
    QStringList words;
    for (QQuickItem *item : scene.shown()) {
        if (item->inherits("QQuickText"))
            words.append(item->property("text").toString());
        if (auto *interface = QAccessible::queryAccessibleInterface(item))
            words +=
                {interface->text(QAccessible::Name), interface->text(QAccessible::Description)};
    }
    return words;
}

/// A text as it shows, with anything in place of its placeholders.
QRegularExpression pattern(const QString &text)
{
    static const QRegularExpression placeholder(u"%[1-9n]"_s);
    QStringList parts = QString(text).remove(u'&').split(placeholder);
    for (QString &part : parts)
        part = QRegularExpression::escape(part);
    return QRegularExpression(QRegularExpression::anchoredPattern(parts.join(u".+"_s)));
}

/// Tells what it holds, which may be more than fits the message of a failure.
bool holdsNone(const QStringList &faults)
{
    for (const QString &fault : faults)
        qWarning("%s", qUtf8Printable(fault));
    return faults.isEmpty();
}

/// The messages whose texts are seen in the window; not those of dialogs, nor the state of a task
/// that is over before the window can show it, nor what is only told once all tasks have ended.
QList<Message> messages(const QString &language)
{
    const bool isPseudo = language == "rtl"_L1;
    QList<Message> messages = readCatalogue(isPseudo ? u"de"_s : language);
    messages.removeIf([](const Message &message) {
        return QStringList{u"FolderPanel"_s, u"Panels"_s, u"pixpress::AppState"_s}.contains(
                   message.context) ||
               message.source == "Uploading"_L1 || message.source == "%n failed"_L1;
    });
    if (isPseudo) {
        for (Message &message : messages)
            message.translations = {PseudoLanguage::translation(message.source)};
    }
    return messages;
}

} // namespace

class TextsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void texts_showWholeAndTranslated();
};

void TextsTest::texts_showWholeAndTranslated()
{
    const QString language = qEnvironmentVariable("LANGUAGE");
    PseudoLanguage pseudo;
    if (language == "rtl"_L1)
        QVERIFY(QCoreApplication::installTranslator(&pseudo));
    QAccessible::setActive(true);
    QStringList wrong;
    QStringList seen;
    // Of larger text the window shows as much at its usual size as it does else at its smallest.
    const double textScale = qEnvironmentVariable("TEXT_SCALE", u"1"_s).toDouble();
    const QSize size = textScale > 1 ? QSize(920, 620) : QSize(800, 550);
    visitScenes(size, [&](const Scene &scene, const QString &name, Rest) {
        prefer(*qmlEngine(scene.window), {.textScale = textScale});
        scene.window->grabWindow(); // by which all is in its place
        for (const QString &fault : faults(scene))
            wrong.append(name + u": "_s + fault);
        seen += words(scene);
    });
    QVERIFY(holdsNone(wrong));
    if (language == "en"_L1)
        return;
    seen.removeDuplicates();
    const auto isSeen = [&](const QString &text) {
        const QRegularExpression expression = pattern(text);
        return std::ranges::any_of(
            seen, [&](const QString &word) { return expression.match(word).hasMatch(); });
    };
    QStringList missing;
    for (const Message &message : messages(language)) {
        for (const QString &line : message.translations.last().split(u'\n')) {
            if (!isSeen(line))
                missing.append(line);
        }
        if (!message.translations.contains(message.source) && isSeen(message.source))
            missing.append(u"in English: "_s + message.source);
    }
    QVERIFY(holdsNone(missing));
}

int main(int argc, char *argv[])
{
    Application application(argc, argv);
    TextsTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_texts.moc"
