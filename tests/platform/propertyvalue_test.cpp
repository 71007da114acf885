// SPDX-License-Identifier: MIT
#include "platform/PropertyValue.h"

#include <QTest>

#include <limits>

using namespace Qt::Literals::StringLiterals;
using namespace qovelmor;

namespace {

// One row of the conversions: what a value gives as each scalar type.
struct Conversion
{
    PropertyValue value;
    bool asBool;
    qint64 asInteger;
    double asDouble;
    std::optional<QString> asText;
};

} // namespace

Q_DECLARE_METATYPE(std::shared_ptr<Conversion>)

class PropertyValueTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void dictionary_keepsTheOrderOfFirstSetting()
    {
        PropertyDictionary dictionary{{u"b"_s, 1}, {u"a"_s, 2}, {u"b"_s, 3}};
        dictionary.set(u"c"_s, 4);
        dictionary.set(u"a"_s, 5);
        QCOMPARE(dictionary.size(), 3u);
        QStringList keys;
        for (const auto &entry : dictionary.entries())
            keys << entry.key;
        QCOMPARE(keys, (QStringList{u"b"_s, u"a"_s, u"c"_s}));
        QCOMPARE(dictionary.integer(u"b"_s), 3);
        QCOMPARE(dictionary.integer(u"a"_s), 5);
    }

    void dictionary_removesAndAnswersForAbsentKeys()
    {
        PropertyDictionary dictionary{{u"name"_s, u"新聞"_s}, {u"on"_s, true}};
        QCOMPARE(dictionary.string(u"name"_s), std::optional(u"新聞"_s));
        QVERIFY(dictionary.boolean(u"on"_s));
        QVERIFY(!dictionary.string(u"on"_s)); // another type
        QVERIFY(dictionary.remove(u"name"_s));
        QVERIFY(!dictionary.remove(u"name"_s));
        QVERIFY(!dictionary.string(u"name"_s));
        QVERIFY(!dictionary.boolean(u"name"_s));
        QCOMPARE(dictionary.integer(u"name"_s), 0);
        QVERIFY(dictionary.find(u"name"_s) == nullptr);
        QVERIFY(dictionary.remove(u"on"_s) && dictionary.isEmpty());
    }

    void values_ofDifferentTypesDiffer()
    {
        QVERIFY(PropertyValue(1) == PropertyValue(qint64{1}));
        QVERIFY(!(PropertyValue(1) == PropertyValue(1.0)));
        QVERIFY(!(PropertyValue(1) == PropertyValue(true)));
        const PropertyValue list(PropertyArray{1, u"x"_s, PropertyDictionary{{u"k"_s, 2.5}}});
        QVERIFY(list == PropertyValue(PropertyArray{1, u"x"_s, PropertyDictionary{{u"k"_s, 2.5}}}));
        QVERIFY(!(list == PropertyValue(PropertyArray{1, u"x"_s})));
    }

    void conversion_data()
    {
        QTest::addColumn<std::shared_ptr<Conversion>>("row");
        const auto row = [](const char *name, Conversion conversion) {
            QTest::newRow(name) << std::make_shared<Conversion>(std::move(conversion));
        };
        constexpr qint64 most = std::numeric_limits<qint64>::max();
        constexpr qint64 least = std::numeric_limits<qint64>::min();
        row("yes", {true, true, 1, 1.0, u"1"_s});
        row("no", {false, false, 0, 0.0, u"0"_s});
        row("integer", {-72, true, -72, -72.0, u"-72"_s});
        row("zero", {0, false, 0, 0.0, u"0"_s});
        row("real is cut to an integer", {2.9, true, 2, 2.9, u"2.9"_s});
        row("small real is true", {0.25, true, 0, 0.25, u"0.25"_s});
        row("huge real", {1e300, true, most, 1e300, u"1e+300"_s});
        row("huge negative real", {-1e300, true, least, -1e300, u"-1e+300"_s});
        row("text number", {u" 12abc"_s, true, 12, 12.0, u" 12abc"_s});
        row("text real", {u"-2.5e1x"_s, true, -25, -25.0, u"-2.5e1x"_s});
        row("text with bare exponent", {u"3e"_s, true, 3, 3.0, u"3e"_s});
        row("text point only", {u"."_s, false, 0, 0.0, u"."_s});
        row("text largest integer", {u"9223372036854775807"_s, true, most, 9223372036854775807.0,
                                     u"9223372036854775807"_s});
        row("text one above the largest integer",
            {u"9223372036854775808"_s, true, most, 9223372036854775808.0,
             u"9223372036854775808"_s});
        row("text YES", {u"YES"_s, true, 0, 0.0, u"YES"_s});
        row("text true", {u"true"_s, true, 0, 0.0, u"true"_s});
        row("text NO", {u"NO"_s, false, 0, 0.0, u"NO"_s});
        row("text zero", {u"0"_s, false, 0, 0.0, u"0"_s});
        row("empty text", {QString(), false, 0, 0.0, QString()});
        row("data", {QByteArray("1"), false, 0, 0.0, std::nullopt});
        row("date", {QDateTime::fromSecsSinceEpoch(5), false, 0, 0.0, std::nullopt});
        row("array", {PropertyArray{1}, false, 0, 0.0, std::nullopt});
        row("dictionary", {PropertyDictionary{{u"a"_s, 1}}, false, 0, 0.0, std::nullopt});
    }

    void conversion()
    {
        QFETCH(std::shared_ptr<Conversion>, row);
        QCOMPARE(row->value.toBool(), row->asBool);
        QCOMPARE(row->value.toInteger(), row->asInteger);
        QCOMPARE(row->value.toDouble(), row->asDouble);
        QCOMPARE(row->value.toText(), row->asText);
    }

    void notANumber_countsZeroAsInteger()
    {
        QCOMPARE(PropertyValue(std::numeric_limits<double>::quiet_NaN()).toInteger(), 0);
    }
};

QTEST_GUILESS_MAIN(PropertyValueTest)
#include "propertyvalue_test.moc"
