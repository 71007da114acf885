// SPDX-License-Identifier: MIT
#include "messages/MessageMenus.h"
#include "messages/RowText.h"

#include <QtTest>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

class RowTextTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void copiedRow_data()
    {
        using Text = std::optional<QString>;
        QTest::addColumn<Text>("date");
        QTest::addColumn<Text>("description");
        QTest::addColumn<QString>("copied");
        QTest::newRow("everything")
            << Text(u"11/14 10:30"_s) << Text(u"D"_s) << u"11/14 10:30 H＊＊＊D"_s;
        QTest::newRow("empty date") << Text(QString()) << Text(u"D"_s) << u"日時不明 H＊＊＊D"_s;
        QTest::newRow("absent date") << Text() << Text(u"D"_s) << u"日時不明 H＊＊＊D"_s;
        QTest::newRow("empty description")
            << Text(u"11/14 10:30"_s) << Text(QString()) << u"11/14 10:30 H"_s;
        QTest::newRow("absent description")
            << Text(u"11/14 10:30"_s) << Text() << u"11/14 10:30 H(null)"_s;
    }

    void copiedRow()
    {
        QFETCH(std::optional<QString>, date);
        QFETCH(std::optional<QString>, description);
        const Message message{u"H"_s, date, description, std::nullopt, std::nullopt};
        QTEST(copiedRowText(message), "copied");
    }

    void thresholdMenu_data()
    {
        QTest::addColumn<int>("value");
        QTest::addColumn<int>("checked");
        QTest::newRow("first") << 8 << 0;
        QTest::newRow("as at the first start: the ninth") << 72 << 8;
        QTest::newRow("last") << 248 << 30;
        QTest::newRow("between two items") << 79 << 8;
        QTest::newRow("below the menu") << 0 << -1;
        QTest::newRow("above the menu") << 256 << -1;
    }

    void thresholdMenu()
    {
        QFETCH(int, value);
        QFETCH(int, checked);
        const auto items = boarderItems(value);
        QCOMPARE(items.size(), 31U);
        for (int i = 0; i < 31; ++i) {
            const BoarderItem &item = items[static_cast<std::size_t>(i)];
            QCOMPARE(item.threshold, 8 * (i + 1));
            QCOMPARE(item.isChecked, i == checked);
        }
    }
};

QTEST_APPLESS_MAIN(RowTextTest)
#include "rowtext_test.moc"
