// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "localservice/store.h"

#include <QSet>
#include <QTest>

using namespace pixpress;

class TestStore : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void entries_areFoundByTheirId();
    void oldest_makesRoom();
    void newest_staysHoweverLarge();
};

namespace {

Store::Entry entryOf(int original, int compressed)
{
    return {QByteArray(original, 'o'), {QByteArray(compressed, 'c'), ImageFormat::webp, {3, 4}}};
}

} // namespace

void TestStore::entries_areFoundByTheirId()
{
    Store store(1'000'000);
    QSet<QByteArray> ids;
    for (int i = 0; i < 100; ++i)
        ids.insert(store.add(entryOf(i, 1)));
    QCOMPARE(ids.size(), 100);
    const QByteArray id = store.add(entryOf(7, 5));
    QCOMPARE(id.size(), 32);
    const auto entry = store.find(id);
    QVERIFY(entry);
    QCOMPARE(entry->original.size(), 7);
    QCOMPARE(entry->compressed.bytes.size(), 5);
    QVERIFY(!store.find("0123456789abcdef0123456789abcdef"));
}

void TestStore::oldest_makesRoom()
{
    Store store(300);
    const QByteArray first = store.add(entryOf(90, 10));
    const QByteArray second = store.add(entryOf(90, 10));
    const QByteArray third = store.add(entryOf(90, 10));
    QVERIFY(store.find(first));
    const QByteArray fourth = store.add(entryOf(100, 1));
    QVERIFY(!store.find(first));
    QVERIFY(!store.find(second));
    QVERIFY(store.find(third));
    QVERIFY(store.find(fourth));
}

void TestStore::newest_staysHoweverLarge()
{
    Store store(10);
    const QByteArray first = store.add(entryOf(1, 1));
    const QByteArray second = store.add(entryOf(1000, 1));
    QVERIFY(!store.find(first));
    QVERIFY(store.find(second));
    const QByteArray third = store.add(entryOf(1, 1));
    QVERIFY(!store.find(second));
    QVERIFY(store.find(third));
}

QTEST_GUILESS_MAIN(TestStore)
#include "tst_store.moc"
