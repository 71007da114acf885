// SPDX-License-Identifier: MIT
#include "board/ColumnWords.h"
#include "render/VelmorBitmap.h"

#include <QTest>

#include <bit>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

namespace {
constexpr bool swapHere = std::endian::native == std::endian::little;
}

class ColumnWordsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void topDotIsTheHighestBit();
    void rowsBeyondTheHeight_areDark();
    void withoutTheSwap_theMachinesOrderStays();
    void width_data();
    void width();
};

void ColumnWordsTest::topDotIsTheHighestBit()
{
    VelmorBitmap bitmap(3);
    bitmap.setBit(0, 0);
    bitmap.setBit(1, 15);
    bitmap.setBit(2, 7);
    bitmap.setBit(2, 8);
    QCOMPARE(columnWords(bitmap, swapHere), "\x80\x00\x00\x01\x01\x80"_ba);
}

void ColumnWordsTest::rowsBeyondTheHeight_areDark()
{
    VelmorBitmap bitmap(1);
    bitmap.setBit(0, 7);
    bitmap.setBit(0, 8);
    bitmap.setHeight(8);
    QCOMPARE(columnWords(bitmap, swapHere), "\x01\x00"_ba);
    bitmap.setHeight(-3);
    QCOMPARE(columnWords(bitmap, swapHere), "\x00\x00"_ba);
}

void ColumnWordsTest::withoutTheSwap_theMachinesOrderStays()
{
    VelmorBitmap bitmap(1);
    bitmap.setBit(0, 0);
    QCOMPARE(columnWords(bitmap, !swapHere), "\x00\x80"_ba);
}

void ColumnWordsTest::width_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("bytes");
    QTest::newRow("below zero") << -5 << 0;
    QTest::newRow("empty") << 0 << 0;
    QTest::newRow("one") << 1 << 2;
    QTest::newRow("widest") << 10000 << 20000;
    QTest::newRow("wider than the store") << 2000000000 << 20000;
}

void ColumnWordsTest::width()
{
    QFETCH(int, width);
    QFETCH(int, bytes);
    const VelmorBitmap bitmap(width);
    QCOMPARE(columnWords(bitmap, swapHere), QByteArray(bytes, '\0'));
}

QTEST_APPLESS_MAIN(ColumnWordsTest)
#include "columnwords_test.moc"
