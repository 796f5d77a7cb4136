// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The window in a language that is written from right to left.

#include "scenes.h"
#include "shownitems.h"
#include "ui/application.h"

#include <QTest>

#include <map>

using namespace pixpress;
using namespace pixpress::test;
using namespace Qt::StringLiterals;

namespace {

/// What is somewhere in the window. In a mirrored window x counts from its right.
struct Place
{
    QString what;
    QRectF where;
};

using Places = std::map<QString, QList<Place>>; // by the scene

bool isCode(const QQuickItem &item)
{
    return item.property("isCode").toBool();
}

/// The kind of an item without what QML adds to the names of types; its own name, or its text.
QString nameOf(const QQuickItem &item)
{
    const QString type = QString::fromLatin1(item.metaObject()->className()).section(u'_', 0, 0);
    QString text = item.inherits("QQuickText") ? item.property("text").toString() : QString();
    text.remove(u'\u2066').remove(u'\u2069'); // which keep sizes together in a mirrored window
    return u"%1 \"%2\""_s.arg(type, item.objectName().isEmpty() ? text : item.objectName());
}

/// Controls, texts and symbols, and whatever has a name; the rest is between or inside them. Not
/// what stands for a picture until that is made.
bool matters(const QQuickItem &item)
{
    if (item.objectName() == "extension"_L1)
        return false;
    return item.inherits("QQuickControl") || item.inherits("QQuickText") ||
           item.inherits("pixpress::SymbolItem") || !item.objectName().isEmpty();
}

QList<Place> placesOf(const Scene &scene)
{
    QList<Place> places;
    for (const QQuickItem *item : scene.shown()) {
        if (!matters(*item))
            continue;
        QRectF where = item->inherits("QQuickText")
                           ? paintedRect(*item)
                           : item->mapRectToScene({0, 0, item->width(), item->height()});
        if (QGuiApplication::isRightToLeft())
            where.moveLeft(scene.window->width() - where.right());
        places.append({nameOf(*item), where});
    }
    std::ranges::sort(places, {}, [](const Place &place) {
        return std::tuple(place.what, std::round(place.where.y()), place.where.x());
    });
    return places;
}

/// Something moves on its own in this state, or is where the pointer is, so that it need not be
/// where it was in another window.
bool isMoving(const QString &scene)
{
    return scene == "empty-drag"_L1 || scene == "menu-completed"_L1 || scene == "menu-failed"_L1 ||
           scene == "menu-edit"_L1;
}

bool isNear(const QRectF &one, const QRectF &other)
{
    const auto near = [](double a, double b) { return std::abs(a - b) < 1.5; }; // of rounding
    return near(one.x(), other.x()) && near(one.y(), other.y()) &&
           near(one.width(), other.width()) && near(one.height(), other.height());
}

QString described(const Place &place)
{
    return u"%1 at %2, %3, %4 x %5"_s.arg(place.what)
        .arg(place.where.x())
        .arg(place.where.y())
        .arg(place.where.width())
        .arg(place.where.height());
}

} // namespace

class MirroringTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void window_isItsOwnMirrorImage();
    void whatIsForMachines_isNotMirrored();
    void arrowKeys_goWhereTheyPoint();

private:
    Places visited(Qt::LayoutDirection direction);

    QStringList m_alignedRight; ///< Fields, by the scene, in the mirrored window.
    QStringList m_codeAlignedRight;
};

/// All states, from left to right and from right to left, with the same texts.
Places MirroringTest::visited(Qt::LayoutDirection direction)
{
    QGuiApplication::setLayoutDirection(direction);
    Places places;
    visitScenes({800, 550}, [&](const Scene &scene, const QString &name, Rest) {
        scene.window->grabWindow(); // by which all is in its place
        if (!isMoving(name))
            places[name] = placesOf(scene);
        for (const QQuickItem *item : scene.shown()) {
            if (item->inherits("QQuickTextField") &&
                item->property("effectiveHorizontalAlignment").toInt() == Qt::AlignRight)
                (isCode(*item) ? m_codeAlignedRight : m_alignedRight).append(name);
        }
    });
    return places;
}

void MirroringTest::initTestCase()
{
    QVERIFY(QGuiApplication::isLeftToRight());
}

void MirroringTest::window_isItsOwnMirrorImage()
{
    const Places expected = visited(Qt::LeftToRight);
    QVERIFY(m_alignedRight.isEmpty());
    const Places mirrored = visited(Qt::RightToLeft);
    QStringList differences;
    for (const auto &[scene, places] : expected) {
        const QList<Place> &others = mirrored.at(scene);
        QVERIFY2(places.size() == others.size(), qUtf8Printable(scene));
        for (qsizetype index = 0; index < places.size(); ++index) {
            if (places[index].what != others[index].what ||
                !isNear(places[index].where, others[index].where))
                differences.append(u"%1: %2, mirrored %3"_s.arg(scene, described(places[index]),
                                                                described(others[index])));
        }
    }
    for (const QString &difference : differences) // more than fits the message of a failure
        qWarning("%s", qUtf8Printable(difference));
    QVERIFY(differences.isEmpty());

    // That all was compared is seen by some of what is far from the middle.
    for (const auto &[scene, name] : {std::pair(u"empty"_s, u"form"_s),
                                      {u"empty"_s, u"addFiles"_s},
                                      {u"list"_s, u"reveal"_s},
                                      {u"list"_s, u"fileName"_s},
                                      {u"list"_s, u"savings"_s},
                                      {u"list"_s, u"retry"_s},
                                      {u"options"_s, u"resizeEnabled"_s},
                                      {u"options"_s, u"background"_s},
                                      {u"quota-376"_s, u"month"_s},
                                      {u"settings-key"_s, u"done"_s}}) {
        QVERIFY2(std::ranges::any_of(mirrored.at(scene),
                                     [&](const Place &place) {
                                         return place.what.endsWith(u'"' + name + u'"') &&
                                                std::abs(place.where.center().x() - 400) > 50;
                                     }),
                 qUtf8Printable(scene + u' ' + name));
    }
}

void MirroringTest::whatIsForMachines_isNotMirrored()
{
    QVERIFY(m_alignedRight.contains(u"options"_s)); // the width
    QCOMPARE(m_codeAlignedRight, QStringList());    // keys and numbers of colours
}

void MirroringTest::arrowKeys_goWhereTheyPoint()
{
    QGuiApplication::setLayoutDirection(Qt::RightToLeft);
    Scene scene(u"key"_s, {800, 550});
    scene.stage.app()->appState()->setShowSettings(true);
    const auto tabs = [&]() -> QQuickItem * {
        for (QQuickItem *item : scene.shown()) {
            if (item->objectName() == "tabs"_L1)
                return item;
        }
        return nullptr;
    };
    QTRY_VERIFY(tabs());
    tabs()->forceActiveFocus();
    QTest::keyClick(scene.window, Qt::Key_Left); // on to the next, which is at the left
    QCOMPARE(tabs()->property("currentIndex").toInt(), 1);
    QTest::keyClick(scene.window, Qt::Key_Right);
    QCOMPARE(tabs()->property("currentIndex").toInt(), 0);
}

int main(int argc, char *argv[])
{
    Application application(argc, argv);
    MirroringTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_mirroring.moc"
