// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "localservice/gate.h"

#include <QTest>

#include <array>
#include <future>
#include <thread>

using namespace pixpress;

class TestGate : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void amountsUpToTheBound_passTogether();
    void passes_areCounted();
    void tooLargeAnAmount_passesAlone();
    void whoComesFirst_goesFirst();
    void oneThatLeaves_letsInAllThatFit();
    void closing_endsTheWait();
};

namespace {

std::future<bool> entering(Gate &gate, qint64 amount)
{
    return std::async(std::launch::async,
                      [&gate, amount] { return gate.enter(amount).has_value(); });
}

/// Once so many threads have arrived at the gate: a counted wait lasts until something changes.
bool isWaiting(const Gate &gate, const std::future<bool> &entered, int count = 1)
{
    while (gate.waiting() < count) {
        if (entered.wait_for(std::chrono::seconds(0)) == std::future_status::ready)
            return false;
        std::this_thread::yield();
    }
    return true;
}

} // namespace

void TestGate::amountsUpToTheBound_passTogether()
{
    Gate gate(10, 100);
    auto first = gate.enter(6);
    const auto second = gate.enter(4);
    auto third = entering(gate, 5);
    QVERIFY(isWaiting(gate, third));
    first.reset();
    QVERIFY(third.get());
}

void TestGate::passes_areCounted()
{
    Gate gate(100, 2);
    auto first = gate.enter(1);
    const auto second = gate.enter(1);
    auto third = entering(gate, 1);
    QVERIFY(isWaiting(gate, third));
    first.reset();
    QVERIFY(third.get());
}

void TestGate::tooLargeAnAmount_passesAlone()
{
    Gate gate(10, 100);
    auto small = gate.enter(1);
    auto large = entering(gate, 50);
    QVERIFY(isWaiting(gate, large));
    small.reset();
    QVERIFY(large.get());
}

void TestGate::whoComesFirst_goesFirst()
{
    Gate gate(10, 100);
    auto first = gate.enter(6);
    auto large = entering(gate, 8);
    QVERIFY(isWaiting(gate, large));
    auto small = entering(gate, 1); // which would fit at once
    QVERIFY(isWaiting(gate, small, 2));
    first.reset();
    QVERIFY(large.get());
    QVERIFY(small.get());
}

void TestGate::oneThatLeaves_letsInAllThatFit()
{
    Gate gate(10, 100);
    auto large = gate.enter(10);
    std::array<std::future<bool>, 3> waiting;
    std::promise<void> end; // goes first when the test fails, and ends them
    const auto ended = end.get_future().share();
    const auto entering = [&] {
        return std::async(std::launch::async, [&gate, ended] {
            const auto pass = gate.enter(3);
            ended.wait();
            return pass.has_value();
        });
    };
    for (auto &entered : waiting)
        entered = entering();
    QVERIFY(isWaiting(gate, waiting[2], 3));
    large.reset();
    QTRY_COMPARE(gate.waiting(), 0); // though none of them has left
    end.set_value();
    for (auto &entered : waiting)
        QVERIFY(entered.get());
}

void TestGate::closing_endsTheWait()
{
    Gate gate(10, 1);
    const auto held = gate.enter(1);
    auto waiting = entering(gate, 1);
    QVERIFY(isWaiting(gate, waiting));
    gate.close();
    QVERIFY(!waiting.get());
    QCOMPARE(gate.waiting(), 0);
    QVERIFY(!gate.enter(1));
}

QTEST_GUILESS_MAIN(TestGate)
#include "tst_gate.moc"
