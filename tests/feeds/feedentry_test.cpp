// SPDX-License-Identifier: MIT
#include "feeds/FeedEntry.h"

#include <QRandomGenerator>
#include <QTest>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

class FeedEntryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void factoryEntries();
    void dictionary_hasItsKeysInOrder();
    void completeness_data();
    void completeness();
    void damagedEntries_data();
    void damagedEntries();
    void missingParts();
    void roundTrip_ofRandomEntries();
};

void FeedEntryTest::factoryEntries()
{
    const PropertyArray factory = factoryFeedEntries();
    QCOMPARE(factory.size(), std::size_t{4});
    for (const PropertyValue &value : factory) {
        const auto entry = feedEntryFrom(value);
        QVERIFY(entry);
        QCOMPARE(entry->validate, true);
        QVERIFY(entry->address.startsWith(u"https://"_s));
        QCOMPARE(entry->name, u""_s);
        QVERIFY(!value.get<PropertyDictionary>()->find(u"RSSFormat"_s));
    }
}

void FeedEntryTest::dictionary_hasItsKeysInOrder()
{
    QStringList keys;
    const PropertyDictionary dictionary = toDictionary(FeedEntry());
    for (const PropertyEntry &entry : dictionary.entries())
        keys << entry.key;
    QCOMPARE(keys, (QStringList{u"RSSValidate"_s, u"RSSAddressString"_s, u"RSSNameString"_s,
                                u"RSSFormat"_s}));
}

void FeedEntryTest::completeness_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<qint64>("format");
    QTest::addColumn<bool>("isComplete");
    QTest::newRow("RSS 1.0") << u"a"_s << qint64{1} << true;
    QTest::newRow("Atom") << u"a"_s << qint64{3} << true;
    QTest::newRow("unknown format") << u"a"_s << qint64{0} << false;
    QTest::newRow("a format too many") << u"a"_s << qint64{4} << false;
    QTest::newRow("a negative format") << u"a"_s << qint64{-1} << false;
    QTest::newRow("a format beyond 32 bits") << u"a"_s << (qint64{1} << 32) + 1 << false;
    QTest::newRow("no name") << u""_s << qint64{2} << false;
}

void FeedEntryTest::completeness()
{
    QFETCH(QString, name);
    QFETCH(qint64, format);
    const auto entry = feedEntryFrom(PropertyDictionary{{u"RSSAddressString"_s, u"http://a/"_s},
                                                        {u"RSSNameString"_s, name},
                                                        {u"RSSFormat"_s, format}});
    QTEST(entry->isComplete(), "isComplete");
}

void FeedEntryTest::damagedEntries_data()
{
    QTest::addColumn<std::shared_ptr<PropertyValue>>("value");
    const auto row = [](const char *name, const PropertyValue &value) {
        QTest::newRow(name) << std::make_shared<PropertyValue>(value);
    };
    row("a string", u"http://a/"_s);
    row("an array", PropertyArray{u"http://a/"_s});
    row("an empty dictionary", PropertyDictionary());
    row("an address that is a number", PropertyDictionary{{u"RSSAddressString"_s, 5}});
}

void FeedEntryTest::damagedEntries()
{
    QFETCH(std::shared_ptr<PropertyValue>, value);
    QVERIFY(!feedEntryFrom(*value));
}

void FeedEntryTest::missingParts()
{
    const auto entry = feedEntryFrom(PropertyDictionary{{u"RSSAddressString"_s, u"http://a/"_s}});
    QVERIFY(entry);
    QCOMPARE(entry->validate, false);
    QCOMPARE(entry->name, u""_s);
    QCOMPARE(entry->format, 0);
}

void FeedEntryTest::roundTrip_ofRandomEntries()
{
    const quint32 seed = QRandomGenerator::system()->generate();
    qInfo("seed %u", seed);
    QRandomGenerator random(seed);
    for (int i = 0; i < 1000; ++i) {
        const FeedEntry entry{random.bounded(2) == 1, QString::number(random.generate()),
                              i % 3 == 0 ? u""_s : u"名前"_s + QChar(random.bounded(0xd800)),
                              random.bounded(4)};
        QVERIFY(feedEntryFrom(toDictionary(entry)) == entry);
    }
}

QTEST_APPLESS_MAIN(FeedEntryTest)
#include "feedentry_test.moc"
