// SPDX-License-Identifier: MIT
#include "messages/RememberedMessages.h"
#include "platform/PropertyListFile.h"

#include <QtTest>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qint64 limit = 100'000;
// Head and foot of a file, for what the list is alone in.
constexpr qint64 bytesAround = 500;

Message message(const QString &headline, const QString &description)
{
    return {headline, u"11/14 10:30"_s, description, u"http://a/"_s, u"サイト"_s, false};
}

MessageVector messages(std::size_t count, const Message &each)
{
    return {count, each};
}

} // namespace

class RememberedMessagesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatFitsIsRememberedAsItIs()
    {
        QVERIFY(!shortenedForStore({}, limit));
        QVERIFY(!shortenedForStore(messages(100, message(u"h"_s, QString(500, u'd'))), limit));
        // One long text in a list that fits is nobody's harm.
        QVERIFY(!shortenedForStore({message(u"h"_s, QString(99'000, u'd'))}, limit));
    }

    void ordinaryListsAreRememberedWhole()
    {
        const MessageVector list =
            messages(100'000, message(QString(30, u'見'), QString(72, u'本')));
        QVERIFY(!shortenedForStore(list, rememberedBytes(list.size())));
        const auto bytes = writePropertyList(PropertyDictionary{{u"Key"_s, toArray(list)}});
        QVERIFY(bytes && bytes->size() <= rememberedBytes(list.size()));
    }

    void onlyLongDescriptionsAreCut()
    {
        MessageVector list = messages(50, message(u"h"_s, QString(70'000, u'd')));
        list.push_back(message(u"short"_s, u"as it is"_s));
        list.push_back({});
        const auto kept = shortenedForStore(list, limit);
        QVERIFY(kept);
        QCOMPARE(kept->size(), list.size());
        QVERIFY(kept->at(50) == list[50]);
        QVERIFY(kept->at(51) == list[51]); // an absent text stays absent
        QCOMPARE(kept->at(0).description.value_or(QString()), QString(1024, u'd'));
        QCOMPARE(kept->at(0).headline, u"h"_s);
        QVERIFY(kept->at(0).link == list[0].link);
    }

    void noCharacterIsCutInTwo()
    {
        const QString faces = u"x"_s + u"😀"_s.repeated(40'000);
        const auto kept = shortenedForStore({message(u"h"_s, faces)}, limit);
        QVERIFY(kept);
        const QString text = kept->at(0).description.value_or(QString());
        QCOMPARE(text.size(), 16'383);
        QVERIFY(faces.startsWith(text));
        QVERIFY(text.back().isLowSurrogate());
    }

    void resultAlwaysFits_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<Message>("each");
        QTest::newRow("descriptions") << 1000 << message(u"h"_s, QString(70'000, u'長'));
        QTest::newRow("descriptions of mark-up") << 60 << message(u"h"_s, QString(70'000, u'&'));
        QTest::newRow("descriptions of controls") << 60 << message(u"h"_s, QString(70'000, u'\1'));
        QTest::newRow("headlines") << 40 << message(QString(1'000'000, u'長'), u"d"_s);
        QTest::newRow("headlines of faces") << 40 << message(u"😀"_s.repeated(100'000), u"d"_s);
        Message everywhere = message(QString(50'000, u'<'), QString(50'000, u'<'));
        everywhere.date = everywhere.siteName = everywhere.link = QString(50'000, u'<');
        QTest::newRow("every text") << 30 << everywhere;
        QTest::newRow("too many messages") << 5000 << message(u"h"_s, u"d"_s);
    }

    void resultAlwaysFits()
    {
        QFETCH(int, count);
        QFETCH(Message, each);
        const auto kept = shortenedForStore(messages(static_cast<std::size_t>(count), each), limit);
        QVERIFY(kept);
        QVERIFY(!kept->empty());
        const auto bytes = writePropertyList(PropertyDictionary{{u"Key"_s, toArray(*kept)}});
        QVERIFY(bytes);
        QVERIFY2(bytes->size() <= limit + bytesAround, qPrintable(QString::number(bytes->size())));
        QVERIFY(bytes->size() > limit / 20); // as much as there is room for, about
        QVERIFY(!shortenedForStore(*kept, limit));
    }
};

QTEST_APPLESS_MAIN(RememberedMessagesTest)
#include "rememberedmessages_test.moc"
