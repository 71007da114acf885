// SPDX-License-Identifier: MIT
#include "app/ExitSignals.h"

#include <QTest>

#include <signal.h>

using namespace qovelmor;

class ExitSignalsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void eachSignalBecomesACall_data();
    void eachSignalBecomesACall();
};

void ExitSignalsTest::eachSignalBecomesACall_data()
{
    QTest::addColumn<int>("number");
    QTest::newRow("SIGTERM") << SIGTERM;
    QTest::newRow("SIGINT") << SIGINT;
    QTest::newRow("SIGHUP") << SIGHUP;
}

void ExitSignalsTest::eachSignalBecomesACall()
{
    QFETCH(int, number);
    int calls = 0;
    const ExitSignals exitSignals([&] { ++calls; });
    ::raise(number);
    QTRY_COMPARE(calls, 1);
    ::raise(number);
    QTRY_COMPARE(calls, 2);
}

QTEST_GUILESS_MAIN(ExitSignalsTest)
#include "exitsignals_test.moc"
