// SPDX-License-Identifier: MIT
#include "board/UnreadAnswers.h"

#include <QTest>

using namespace qovelmor;

class UnreadAnswersTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nothingSent_nothingIsMissing() { QVERIFY(!UnreadAnswers().isMissing()); }
    void eachCommandNeedsItsMark();
    void aMarkCutInTwoCountsOnce();
    void marksBeyondTheCommands_areNotSavedUp();
    void forget_startsOver();
    void kindOfTheBoard_isLearnt();
};

void UnreadAnswersTest::eachCommandNeedsItsMark()
{
    UnreadAnswers unread;
    unread.commandSent();
    unread.commandSent();
    unread.saw("sc_clear\r\nOk.\r\n");
    QVERIFY(unread.isMissing());
    unread.saw("sc_scroll\r\nOk.");
    QVERIFY(!unread.isMissing());
}

void UnreadAnswersTest::aMarkCutInTwoCountsOnce()
{
    UnreadAnswers unread;
    unread.commandSent();
    unread.commandSent();
    for (const char byte : QByteArray("xOk.\r\n"))
        unread.saw(QByteArray(1, byte));
    QVERIFY(unread.isMissing());
    unread.saw("OOk");
    QVERIFY(unread.isMissing());
    unread.saw(".");
    QVERIFY(!unread.isMissing());
}

void UnreadAnswersTest::marksBeyondTheCommands_areNotSavedUp()
{
    UnreadAnswers unread;
    unread.saw("Ok.Ok.Ok.");
    unread.commandSent();
    QVERIFY(unread.isMissing());
}

void UnreadAnswersTest::forget_startsOver()
{
    UnreadAnswers unread;
    unread.commandSent();
    unread.saw("Ok");
    unread.forget();
    QVERIFY(!unread.isMissing());
    unread.commandSent();
    unread.saw(".");
    QVERIFY(unread.isMissing());
}

void UnreadAnswersTest::kindOfTheBoard_isLearnt()
{
    UnreadAnswers unread;
    QVERIFY(unread.boardTalks());
    unread.commandSent();
    unread.settled();
    QVERIFY(!unread.boardTalks());
    QVERIFY(!unread.isMissing());
    unread.commandSent();
    unread.saw("Ok.");
    unread.settled();
    QVERIFY(unread.boardTalks());
}

QTEST_APPLESS_MAIN(UnreadAnswersTest)
#include "unreadanswers_test.moc"
