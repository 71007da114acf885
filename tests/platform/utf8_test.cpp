// SPDX-License-Identifier: MIT
#include "platform/Utf8.h"

#include <QtTest>

#include <random>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

namespace {

QString decoded(const QByteArray &utf8)
{
    return fromCheckedUtf8({utf8.constData(), static_cast<std::size_t>(utf8.size())});
}

} // namespace

class Utf8Test : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void texts_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("empty") << u""_s;
        QTest::newRow("ASCII") << u"plain"_s;
        QTest::newRow("two bytes") << u"é½Ж"_s;
        QTest::newRow("three bytes") << u"見出し①㈱髙"_s;
        QTest::newRow("four bytes") << u"𠮷野家🍣"_s;
        QTest::newRow("all in turn") << u"a見é🍣b🍣é見a"_s;
        QTest::newRow("first and last of each length")
            << QString::fromUcs4(U"\x01\x7f\x80\u07ff\u0800\uffff\U00010000\U0010ffff");
    }

    void texts()
    {
        QFETCH(QString, text);
        QCOMPARE(decoded(text.toUtf8()), text);
        QVERIFY(!decoded(text.toUtf8()).isNull());
    }

    // Nobody should hand over such bytes; if someone does, nothing is
    // written beyond the text.
    void randomBytes_doNoHarm()
    {
        const unsigned seed = std::random_device()();
        qInfo("seed %u", seed);
        std::mt19937 random(seed);
        for (int round = 0; round < 20'000; ++round) {
            QByteArray bytes = u"a見é🍣b見出し"_s.toUtf8();
            bytes.truncate(static_cast<qsizetype>(random() % (bytes.size() + 1U)));
            if (!bytes.isEmpty() && round % 2 == 0)
                bytes.remove(static_cast<qsizetype>(random() % std::size_t(bytes.size())), 1);
            const QString text = decoded(bytes);
            QVERIFY(text.size() <= bytes.size());
            if (bytes.isValidUtf8())
                QCOMPARE(text, QString::fromUtf8(bytes));
        }
    }

    void nothingIsReservedBeyondTheText()
    {
        const QString text = u"見"_s.repeated(10'000);
        QVERIFY(decoded(text.toUtf8()).capacity() < 10'100);
    }
};

QTEST_GUILESS_MAIN(Utf8Test)
#include "utf8_test.moc"
