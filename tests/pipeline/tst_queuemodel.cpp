// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pipeline/twoqueues.h"

#include <QTest>

using namespace pixpress;
using namespace pixpress::test;

/// Whatever happens to it, in whatever order, the queue does what a naive one does.
class QueueModelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void anySequence_endsAsTheRulesSay();
};

void QueueModelTest::initTestCase()
{
    // As many as take some seconds, unless the environment says otherwise: RC_PARAMS="max_success=
    // 30000", with a QTEST_FUNCTION_TIMEOUT to go with it, or what a failure prints.
    if (!qEnvironmentVariableIsSet("RC_PARAMS"))
        qputenv("RC_PARAMS", "max_success=200");
}

void QueueModelTest::anySequence_endsAsTheRulesSay()
{
    const auto anySequence = rc::gen::container<std::vector<Command>>(anyCommand());
    const auto check = [&] {
        const std::vector<Command> commands = *anySequence;
        TwoQueues queues;
        bool belowZero = false;
        bool threeAtOnce = false;
        bool completed = false;
        for (size_t step = 0; step < commands.size(); ++step) {
            queues.apply(commands[step]);
            if (const QString difference = queues.difference(); !difference.isEmpty())
                RC_FAIL("After step " + std::to_string(step + 1) + ":\n" +
                        difference.toStdString());
            const NaiveQueue &rules = queues.naive();
            belowZero |= rules.activeTasks < 0;
            threeAtOnce |= rules.activeTasks == 3;
            completed |= rules.completedCount() > 0;
        }
        queues.destroyQueue();
        RC_ASSERT(queues.difference().toStdString().empty());
        // Printed at the end: how many sequences came to that.
        RC_CLASSIFY(belowZero);
        RC_CLASSIFY(threeAtOnce);
        RC_CLASSIFY(completed);
        const bool metAnotherTask = queues.naive().hasMistakenTasks;
        RC_CLASSIFY(metAnotherTask);
    };
    QVERIFY(rc::check("the queue and the rules agree", check));
}

QTEST_GUILESS_MAIN(QueueModelTest)
#include "tst_queuemodel.moc"
