// SPDX-License-Identifier: MIT
#include "SetupParts.h"

#include <QTest>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

/// Which messages the settings leave out.
class SetupFiltersTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isOlderThan_data();
    void isOlderThan();
    void isCommercialMessage_data();
    void isCommercialMessage();
    void isCommercialMessage_eachWordCounts();
};

void SetupFiltersTest::isOlderThan_data()
{
    using namespace std::chrono;
    QTest::addColumn<int>("hours");
    QTest::addColumn<qint64>("age"); // seconds
    QTest::addColumn<bool>("isOlder");

    const qint64 threeDays = 72 * 3600;
    QTest::newRow("exactly at the limit") << 72 << threeDays << false;
    QTest::newRow("one second older") << 72 << threeDays + 1 << true;
    QTest::newRow("one second younger") << 72 << threeDays - 1 << false;
    QTest::newRow("a date in the future") << 72 << qint64{-3600} << false;
    QTest::newRow("no hours at all, now") << 0 << qint64{0} << false;
    QTest::newRow("no hours at all, a second ago") << 0 << qint64{1} << true;
    QTest::newRow("negative hours") << -1 << qint64{-3599} << true;
    QTest::newRow("the most hours there are")
        << std::numeric_limits<int>::max() << threeDays << false;
}

void SetupFiltersTest::isOlderThan()
{
    QFETCH(int, hours);
    QFETCH(qint64, age);

    SetupParts parts;
    Setup &setup = parts.startWithoutBoard();
    setup.setOlderHours(hours);
    QTEST(setup.isOlderThan(parts.clock.calendarNow() - std::chrono::seconds(age)), "isOlder");
    QCOMPARE(setup.isOlderThan(std::nullopt), false);
}

void SetupFiltersTest::isCommercialMessage_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isOn");
    QTest::addColumn<bool>("isCommercial");

    QTest::newRow("PR with a colon") << u"PR: new shop"_s << true << true;
    QTest::newRow("the text is upper-cased") << u"pr: new shop"_s << true << true;
    QTest::newRow("the filter is off") << u"PR: new shop"_s << false << false;
    QTest::newRow("the second word") << u"[AD] shop"_s << true << true;
    QTest::newRow("the third word") << u"CM/shop"_s << true << true;
    QTest::newRow("only within words") << u"Press: add acme"_s << true << false;
    QTest::newRow("empty words match nothing") << u": ."_s << true << false;
}

void SetupFiltersTest::isCommercialMessage()
{
    QFETCH(QString, text);
    QFETCH(bool, isOn);

    SetupParts parts;
    Setup &setup = parts.startWithoutBoard();
    setup.setSkipCMMode(isOn);
    QTEST(setup.isCommercialMessage(text), "isCommercial");
}

void SetupFiltersTest::isCommercialMessage_eachWordCounts()
{
    SetupParts parts;
    Setup &setup = parts.startWithoutBoard();
    setup.setSkipCMMode(true);
    using WordSetter = void (Setup::*)(const QString &);
    for (WordSetter setWord :
         {&Setup::setSkipCMWord1, &Setup::setSkipCMWord2, &Setup::setSkipCMWord3,
          &Setup::setSkipCMWord4, &Setup::setSkipCMWord5, &Setup::setSkipCMWord6,
          &Setup::setSkipCMWord7, &Setup::setSkipCMWord8}) {
        QVERIFY(!setup.isCommercialMessage(u"広告 :"_s));
        (setup.*setWord)(u"広告"_s);
        QVERIFY(setup.isCommercialMessage(u"広告 :"_s));
        (setup.*setWord)(u"広"_s + u"告知"_s);
    }
}

QTEST_GUILESS_MAIN(SetupFiltersTest)
#include "setupfilters_test.moc"
