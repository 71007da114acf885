// SPDX-License-Identifier: MIT
#include "board/CharacterQue.h"

#include <QTest>

#include <atomic>
#include <thread>

using namespace qovelmor;
using namespace std::chrono_literals;

class CharacterQueTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void empty_givesZeroAndStaysEmpty();
    void zeroByte_readsLikeAnEmptyQueue();
    void full_dropsTheNextByte();
    void wrapsAround_inOrder();
    void clear_emptiesAndStartsOver();
    void put_takesWhatFits();
    void take_givesUpToThatMany();
    void waitUntil_seesAByteAtOnce();
    void waitUntil_givesUpAtTheDeadline();
    void wakeWaiters_makesAWaitLookAgain();
    void oneProducerOneConsumer_keepsEveryByteInOrder();
    void clearBesideAPut_leavesWholeState();
};

void CharacterQueTest::empty_givesZeroAndStaysEmpty()
{
    CharacterQue que;
    QCOMPARE(que.getChar(), quint8(0));
    QCOMPARE(que.count(), 0);
    QCOMPARE(que.space(), 8192);
}

void CharacterQueTest::zeroByte_readsLikeAnEmptyQueue()
{
    CharacterQue que;
    QVERIFY(que.putChar(0));
    QCOMPARE(que.count(), 1);
    QCOMPARE(que.getChar(), quint8(0));
    QCOMPARE(que.count(), 0);
}

void CharacterQueTest::full_dropsTheNextByte()
{
    CharacterQue que;
    for (int i = 0; i < 8191; ++i)
        QVERIFY(que.putChar(static_cast<quint8>(i)));
    QCOMPARE(que.space(), 1);
    QVERIFY(que.putChar(77));
    QCOMPARE(que.space(), 0);
    QVERIFY(!que.putChar(99));
    QCOMPARE(que.count(), 8192);
    QCOMPARE(que.getChar(), quint8(0));
    QVERIFY(que.putChar(99));
}

void CharacterQueTest::wrapsAround_inOrder()
{
    CharacterQue que;
    for (int i = 0; i < 8193; ++i) {
        QVERIFY(que.putChar(static_cast<quint8>(i)));
        QCOMPARE(que.getChar(), static_cast<quint8>(i));
    }
    QCOMPARE(que.count(), 0);
    QCOMPARE(que.put("abc", 3), 3);
    QCOMPARE(que.take(3), QByteArray("abc"));
}

void CharacterQueTest::clear_emptiesAndStartsOver()
{
    CharacterQue que;
    que.put("abc", 3);
    que.clear();
    QCOMPARE(que.count(), 0);
    QCOMPARE(que.space(), 8192);
    QCOMPARE(que.getChar(), quint8(0));
    que.put("d", 1);
    QCOMPARE(que.getChar(), quint8('d'));
}

void CharacterQueTest::put_takesWhatFits()
{
    CharacterQue que;
    const QByteArray most(8190, 'x');
    QCOMPARE(que.put(most.constData(), 8190), 8190);
    QCOMPARE(que.put("abc", 3), 2);
    QCOMPARE(que.put("abc", 3), 0);
    que.take(8190);
    QCOMPARE(que.take(10), QByteArray("ab"));
}

void CharacterQueTest::take_givesUpToThatMany()
{
    CharacterQue que;
    que.put("abcdef", 6);
    QCOMPARE(que.take(0), QByteArray());
    QCOMPARE(que.take(4), QByteArray("abcd"));
    QCOMPARE(que.take(4), QByteArray("ef"));
    QCOMPARE(que.take(4), QByteArray());
}

void CharacterQueTest::waitUntil_seesAByteAtOnce()
{
    CharacterQue que;
    std::thread producer([&que] {
        std::this_thread::sleep_for(20ms);
        que.putChar('x');
    });
    const auto start = std::chrono::steady_clock::now();
    QVERIFY(que.waitUntil(start + 10s, [](int count) { return count > 0; }));
    QVERIFY(std::chrono::steady_clock::now() - start < 5s);
    producer.join();
}

void CharacterQueTest::waitUntil_givesUpAtTheDeadline()
{
    const CharacterQue que;
    const auto start = std::chrono::steady_clock::now();
    QVERIFY(!que.waitUntil(start + 30ms, [](int count) { return count > 0; }));
    QVERIFY(std::chrono::steady_clock::now() - start >= 30ms);
}

void CharacterQueTest::wakeWaiters_makesAWaitLookAgain()
{
    CharacterQue que;
    std::atomic<bool> broken = false;
    std::thread other([&] {
        std::this_thread::sleep_for(20ms);
        broken = true;
        que.wakeWaiters();
    });
    QVERIFY(
        que.waitUntil(std::chrono::steady_clock::now() + 10s, [&](int) { return broken.load(); }));
    other.join();
}

void CharacterQueTest::oneProducerOneConsumer_keepsEveryByteInOrder()
{
    constexpr int total = 300'000;
    CharacterQue que;
    std::thread producer([&que] {
        for (int i = 0; i < total;) {
            if (que.space() > 0 && que.putChar(static_cast<quint8>(i % 251)))
                ++i;
            else
                std::this_thread::yield();
        }
    });
    int wrong = 0;
    for (int i = 0; i < total;) {
        if (que.count() == 0) {
            std::this_thread::yield();
            continue;
        }
        wrong += que.getChar() != static_cast<quint8>(i % 251);
        ++i;
    }
    producer.join();
    QCOMPARE(wrong, 0);
    QCOMPARE(que.count(), 0);
}

// A clear that tore a put would leave a count that disagrees with the places of the ring, and bytes
// would come out in a wrong order afterwards.
void CharacterQueTest::clearBesideAPut_leavesWholeState()
{
    CharacterQue que;
    std::atomic<bool> stop = false;
    std::thread producer([&] {
        for (quint8 i = 0; !stop; ++i)
            que.putChar(i);
    });
    for (int round = 0; round < 20'000; ++round) {
        que.clear();
        const int count = que.count();
        QVERIFY(count >= 0 && count <= 8192);
    }
    stop = true;
    producer.join();
    que.clear();
    que.put("order", 5);
    QCOMPARE(que.take(8192), QByteArray("order"));
}

QTEST_GUILESS_MAIN(CharacterQueTest)
#include "characterque_test.moc"
