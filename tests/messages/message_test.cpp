// SPDX-License-Identifier: MIT
#include "messages/Message.h"

#include <QtTest>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

class MessageTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void storedForm()
    {
        const Message message{u"H"_s, u"11/14 10:30"_s, u"D"_s, u"http://l/"_s, u"S"_s, true};
        const PropertyDictionary stored = toDictionary(message);
        QCOMPARE(stored.size(), 6U);
        QCOMPARE(stored.string(u"HeadlineString"_s), u"H"_s);
        QCOMPARE(stored.string(u"DateString"_s), u"11/14 10:30"_s);
        QCOMPARE(stored.string(u"DescriptionString"_s), u"D"_s);
        QCOMPARE(stored.string(u"LinkString"_s), u"http://l/"_s);
        QCOMPARE(stored.string(u"RSSNameString"_s), u"S"_s);
        QVERIFY(stored.boolean(u"NewRSSMessage"_s));
        QVERIFY(stored.find(u"NewRSSMessage"_s)->get<bool>());
        QVERIFY(messageFrom(stored) == message);
    }

    void absenceAndEmptinessSurvive()
    {
        const Message absent{u"H"_s, {}, {}, {}, {}, false};
        QCOMPARE(toDictionary(absent).size(), 2U);
        QVERIFY(messageFrom(toDictionary(absent)) == absent);
        const Message empty{u"H"_s, u""_s, u""_s, u""_s, u""_s, false};
        QCOMPARE(toDictionary(empty).size(), 6U);
        QVERIFY(messageFrom(toDictionary(empty)) == empty);
    }

    void listsKeepTheirOrder()
    {
        const MessageVector list{{u"a"_s, {}, {}, {}, {}}, {u"b"_s, {}, {}, {}, {}}};
        PropertyArray stored = toArray(list);
        QVERIFY(messagesFrom(stored) == list);
        stored.insert(stored.begin(), PropertyValue(3));
        QVERIFY(messagesFrom(stored) == list);
        QVERIFY(messagesFrom({}).empty());
    }

    void wrongTypesAreAbsent()
    {
        const PropertyDictionary stored{{u"HeadlineString"_s, 3}, {u"DateString"_s, true}};
        QVERIFY(messageFrom(stored) == Message());
    }
};

QTEST_APPLESS_MAIN(MessageTest)
#include "message_test.moc"
