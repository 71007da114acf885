// SPDX-License-Identifier: MIT
#include "messages/DisplayLine.h"

#include <QtTest>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

class DisplayLineTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void switchesChooseTheParts_data()
    {
        QTest::addColumn<bool>("number");
        QTest::addColumn<bool>("date");
        QTest::addColumn<bool>("site");
        QTest::addColumn<bool>("description");
        QTest::addColumn<QString>("line");
        QTest::newRow("as at the first start")
            << false << true << true << false << u"H 11/14 10:30【S】"_s;
        QTest::newRow("headline only") << false << false << false << false << u"H"_s;
        QTest::newRow("number") << true << false << false << false << u"H #3/15"_s;
        QTest::newRow("description") << false << false << false << true << u"H＊＊＊D"_s;
        QTest::newRow("number and date")
            << true << true << false << false << u"H #3/15 11/14 10:30"_s;
        QTest::newRow("site") << false << false << true << false << u"H【S】"_s;
        QTest::newRow("everything")
            << true << true << true << true << u"H＊＊＊D #3/15 11/14 10:30【S】"_s;
    }

    void switchesChooseTheParts()
    {
        QFETCH(bool, number);
        QFETCH(bool, date);
        QFETCH(bool, site);
        QFETCH(bool, description);
        DisplaySwitches switches;
        switches.isDispLine = number;
        switches.isDispDate = date;
        switches.isDispName = site;
        switches.isDispDesc = description;
        const Message message{u"H"_s, u"11/14 10:30"_s, u"D"_s, u"http://x/"_s, u"S"_s};
        QTEST(displayLine(message, 3, 15, *message.date, switches), "line");
    }

    void switchesOfTheFirstStart()
    {
        const Message message{u"H"_s, u"11/14 10:30"_s, u"D"_s, std::nullopt, u"S"_s};
        QCOMPARE(displayLine(message, 3, 15, *message.date, DisplaySwitches()),
                 u"H 11/14 10:30【S】"_s);
    }

    void whatIsEmptyOrAbsentLeavesNoTrace_data()
    {
        QTest::addColumn<bool>("isPresent");
        QTest::newRow("absent") << false;
        QTest::newRow("empty") << true;
    }

    void whatIsEmptyOrAbsentLeavesNoTrace()
    {
        QFETCH(bool, isPresent);
        const auto nothing = isPresent ? std::optional(QString()) : std::nullopt;
        const Message message{u"H"_s, nothing, nothing, nothing, nothing};
        DisplaySwitches everything;
        everything.isDispLine = true;
        everything.isDispDesc = true;
        QCOMPARE(displayLine(message, 1, 1, QString(), everything), u"H #1/1"_s);
    }

    void placeMarksInAFeedsTextAreText()
    {
        const Message message{u"100%1 %@ %d"_s, u"%2"_s, u"%1%%"_s, std::nullopt, u"%s"_s};
        DisplaySwitches switches;
        switches.isDispDesc = true;
        switches.isDispLine = true;
        QCOMPARE(displayLine(message, 1, 1, *message.date, switches),
                 u"100%1 %@ %d＊＊＊%1%% #1/1 %2【%s】"_s);
    }

    void emptyHeadlineWithoutOtherPartsIsAnEmptyLine()
    {
        DisplaySwitches none;
        none.isDispDate = false;
        none.isDispName = false;
        QVERIFY(displayLine(Message(), 1, 1, QString(), none).isEmpty());
    }
};

QTEST_APPLESS_MAIN(DisplayLineTest)
#include "displayline_test.moc"
