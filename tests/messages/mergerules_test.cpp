// SPDX-License-Identifier: MIT
#include "messages/MergeRules.h"

#include <QtTest>

#include <random>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

namespace {

Message message(const QString &headline, const std::optional<QString> &date = QString())
{
    Message made;
    made.headline = headline;
    made.date = date;
    return made;
}

MessageVector listOf(const QString &headlines)
{
    MessageVector list;
    for (const QString &headline : headlines.split(u' ', Qt::SkipEmptyParts))
        list.push_back(message(headline));
    return list;
}

QString headlinesOf(const MessageVector &list)
{
    QStringList headlines;
    for (const Message &one : list)
        headlines.append(one.headline);
    return headlines.join(u' ');
}

// The rule as two nested loops: after a removal the index goes on, so the message that moved into
// the place is not compared.
std::vector<int> removeByDoubleLoop(MessageVector &list)
{
    std::vector<int> removed;
    for (std::size_t i = 0; i < list.size(); ++i) {
        for (std::size_t j = i + 1; j < list.size(); ++j) {
            if (list[j].headline == list[i].headline) {
                removed.push_back(static_cast<int>(j));
                list.erase(list.begin() + static_cast<std::ptrdiff_t>(j));
            }
        }
    }
    return removed;
}

void markByDoubleLoop(MessageVector &list, const MessageVector &previous)
{
    for (Message &one : list) {
        const bool isKnown =
            std::any_of(previous.begin(), previous.end(),
                        [&](const Message &before) { return before.headline == one.headline; });
        if (!isKnown)
            one.isNew = true;
    }
}

MessageVector randomList(std::mt19937 &random, int longest, int kinds)
{
    std::uniform_int_distribution<int> length(0, longest);
    std::uniform_int_distribution<int> kind(0, kinds - 1);
    MessageVector list;
    for (int i = length(random); i > 0; --i)
        list.push_back(message(QString::number(kind(random))));
    return list;
}

// Date texts that differ late, or only in their length, or not at all.
MessageVector listWithRandomDates(std::mt19937 &random, int count)
{
    const QString usual = u"11/20 10:3"_s;
    const QString endings = u"17あ\0"_s + QChar(0xD800);
    MessageVector list;
    for (int i = 0; i < count; ++i) {
        QString date = usual.first(random() % 3 == 0 ? 2 : usual.size());
        for (std::size_t more = random() % 5; more > 0; --more)
            date += endings[static_cast<qsizetype>(random() %
                                                   static_cast<std::size_t>(endings.size()))];
        list.push_back(message(QString::number(i), date));
        if (random() % 8 == 0)
            list.back().date.reset();
    }
    return list;
}

} // namespace

class MergeRulesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void capOfOneSite_data()
    {
        QTest::addColumn<bool>("isUsed");
        QTest::addColumn<int>("maxMessages");
        QTest::addColumn<int>("cap");
        QTest::newRow("not used") << false << 10 << 1000;
        QTest::newRow("used") << true << 10 << 10;
        QTest::newRow("the smallest that counts") << true << 1 << 1;
        QTest::newRow("zero acts as 1000") << true << 0 << 1000;
        QTest::newRow("negative acts as 1000") << true << -3 << 1000;
    }

    void capOfOneSite()
    {
        QFETCH(bool, isUsed);
        QFETCH(int, maxMessages);
        QTEST(perSiteCap(isUsed, maxMessages), "cap");
    }

    void siteBlock_data()
    {
        QTest::addColumn<int>("cap");
        QTest::addColumn<int>("order");
        QTest::addColumn<QString>("expected");
        QTest::newRow("newest first") << 9 << 1 << u"d b1 b2 a none"_s;
        QTest::newRow("oldest first, undated ones lead") << 9 << 0 << u"none a b1 b2 d"_s;
        QTest::newRow("the cap keeps the newest") << 2 << 1 << u"d b1"_s;
        QTest::newRow("the cap keeps the newest, shown oldest first") << 3 << 0 << u"b1 b2 d"_s;
        QTest::newRow("cap as long as the list") << 5 << 1 << u"d b1 b2 a none"_s;
        QTest::newRow("cap of none") << 0 << 0 << u""_s;
    }

    void siteBlock()
    {
        QFETCH(int, cap);
        QFETCH(int, order);
        MessageVector site{message(u"b1"_s, u"11/14 10:30"_s), message(u"none"_s, QString()),
                           message(u"d"_s, u"12/01 00:00"_s), message(u"b2"_s, u"11/14 10:30"_s),
                           message(u"a"_s, u"02/03 23:59"_s)};
        arrangeSite(site, cap, static_cast<MessageOrder>(order));
        QTEST(headlinesOf(site), "expected");
    }

    void decemberStandsBehindJanuary()
    {
        MessageVector list{message(u"december"_s, u"12/31 23:00"_s),
                           message(u"january"_s, u"01/01 01:00"_s)};
        sortOldestFirst(list);
        QCOMPARE(headlinesOf(list), u"january december"_s);
    }

    void absentDateCountsAsEmptyOne()
    {
        MessageVector list{message(u"empty"_s, QString()), message(u"absent"_s, std::nullopt),
                           message(u"dated"_s, u"01/01 00:00"_s)};
        sortNewestFirst(list);
        QCOMPARE(headlinesOf(list), u"dated empty absent"_s);
    }

    // Of any length and with any characters: only "MM/DD hh:mm" is usual.
    void orderOfAnyDateTextsIsThatOfPlainText()
    {
        const unsigned seed = std::random_device()();
        qInfo("seed %u", seed);
        std::mt19937 random(seed);
        const auto newestFirst = [](const Message &a, const Message &b) {
            return b.date.value_or(QString()) < a.date.value_or(QString());
        };
        for (int round = 0; round < 2000; ++round) {
            const MessageVector list = listWithRandomDates(random, round % 30);
            MessageVector expected = list;
            MessageVector got = list;
            std::stable_sort(expected.begin(), expected.end(), newestFirst);
            sortNewestFirst(got);
            QCOMPARE(headlinesOf(got), headlinesOf(expected));
            std::stable_sort(expected.begin(), expected.end(),
                             [&](const Message &a, const Message &b) { return newestFirst(b, a); });
            sortOldestFirst(got);
            QCOMPARE(headlinesOf(got), headlinesOf(expected));
        }
    }

    void duplicates_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("after");
        QTest::addColumn<QString>("removedAt");
        QTest::newRow("empty list") << u""_s << u""_s << u""_s;
        QTest::newRow("one") << u"a"_s << u"a"_s << u""_s;
        QTest::newRow("all different") << u"a b c"_s << u"a b c"_s << u""_s;
        QTest::newRow("two in a row") << u"a a"_s << u"a"_s << u"1"_s;
        QTest::newRow("three in a row leave two") << u"a a a"_s << u"a a"_s << u"1"_s;
        QTest::newRow("four in a row leave two") << u"a a a a"_s << u"a a"_s << u"1 2"_s;
        QTest::newRow("three apart leave one") << u"a b a b a"_s << u"a b"_s << u"2 3 2"_s;
        QTest::newRow("what moved into the place is another one")
            << u"a b a c a"_s << u"a b c"_s << u"2 3"_s;
        QTest::newRow("upper and lower case differ") << u"a A"_s << u"a A"_s << u""_s;
    }

    void duplicates()
    {
        QFETCH(QString, before);
        MessageVector list = listOf(before);
        QStringList places;
        for (const int place : removeDuplicates(list))
            places.append(QString::number(place));
        QTEST(headlinesOf(list), "after");
        QTEST(places.join(u' '), "removedAt");
    }

    void duplicatesOfRandomListsEqualTheDoubleLoop()
    {
        const unsigned seed = std::random_device()();
        qInfo("seed %u", seed);
        std::mt19937 random(seed);
        for (int round = 0; round < 4000; ++round) {
            const int kinds = 1 + round % 12;
            const MessageVector list = randomList(random, round % 60, kinds);
            MessageVector expected = list;
            MessageVector got = list;
            const auto expectedPlaces = removeByDoubleLoop(expected);
            QCOMPARE(removeDuplicates(got), expectedPlaces);
            QVERIFY2(got == expected, qPrintable(headlinesOf(list)));
        }
    }

    void newMarksOfRandomListsEqualTheDoubleLoop()
    {
        const unsigned seed = std::random_device()();
        qInfo("seed %u", seed);
        std::mt19937 random(seed);
        for (int round = 0; round < 500; ++round) {
            const MessageVector list = randomList(random, 40, 30);
            const MessageVector previous = randomList(random, 40, 30);
            MessageVector expected = list;
            MessageVector got = list;
            markByDoubleLoop(expected, previous);
            markNew(got, previous);
            QVERIFY2(got == expected, qPrintable(headlinesOf(list)));
        }
    }

    void withoutPreviousListEverythingIsNew()
    {
        MessageVector list = listOf(u"a b"_s);
        markNew(list, {});
        QVERIFY(list[0].isNew);
        QVERIFY(list[1].isNew);
    }

    void hundredThousandEqualHeadlinesAreNotQuadratic()
    {
        MessageVector list(100'000, message(u"the same"_s));
        const std::size_t removed = removeDuplicates(list).size();
        QCOMPARE(removed + list.size(), 100'000U);
        QVERIFY(list.size() < 30);
    }
};

QTEST_APPLESS_MAIN(MergeRulesTest)
#include "mergerules_test.moc"
