// SPDX-License-Identifier: MIT
#include "messages/RandomInsertion.h"

#include <QtTest>

#include <algorithm>
#include <random>

using namespace qovelmor;

namespace {

Message numbered(int number)
{
    Message message;
    message.headline = QString::number(number);
    return message;
}

} // namespace

class RandomInsertionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void placeOfTheNextMessage_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("random");
        QTest::addColumn<int>("place");
        QTest::newRow("first message") << 0 << 7 << 0;
        QTest::newRow("the only place of one is its last: append") << 1 << 0 << 1;
        QTest::newRow("front") << 5 << 0 << 0;
        QTest::newRow("remainder") << 5 << 12 << 2;
        QTest::newRow("last but one") << 5 << 3 << 3;
        QTest::newRow("the last place appends") << 5 << 4 << 5;
        QTest::newRow("largest number") << 5 << RAND_MAX << (RAND_MAX % 5 == 4 ? 5 : RAND_MAX % 5);
    }

    void placeOfTheNextMessage()
    {
        QFETCH(int, count);
        QFETCH(int, random);
        QFETCH(int, place);
        QCOMPARE(randomPlace(static_cast<std::size_t>(count), random),
                 static_cast<std::size_t>(place));
    }

    void listEqualsInsertionOneByOne()
    {
        const unsigned seed = std::random_device()();
        qInfo("seed %u", seed);
        std::mt19937 engine(seed);
        std::uniform_int_distribution<int> draw(0, RAND_MAX);
        for (int round = 0; round < 500; ++round) {
            std::vector<int> drawn;
            const RandomSource source = [&] { return drawn.emplace_back(draw(engine)); };
            RandomInsertion insertion(source);
            std::vector<int> order;
            const int count = round % 80;
            for (int i = 0; i < count; ++i) {
                insertion.add(numbered(i));
                const auto place = randomPlace(order.size(), drawn.back());
                order.insert(order.begin() + static_cast<std::ptrdiff_t>(place), i);
            }
            MessageVector expected;
            std::transform(order.begin(), order.end(), std::back_inserter(expected), numbered);
            QCOMPARE(insertion.count(), static_cast<std::size_t>(count));
            QVERIFY(insertion.take() == expected);
            QCOMPARE(drawn.size(), static_cast<std::size_t>(count));
            QCOMPARE(insertion.count(), 0U);
        }
    }
};

QTEST_APPLESS_MAIN(RandomInsertionTest)
#include "randominsertion_test.moc"
