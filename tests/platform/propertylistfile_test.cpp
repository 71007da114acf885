// SPDX-License-Identifier: MIT
#include "platform/PropertyListFile.h"
#include "platform/PropertyListWriter.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <locale.h>
#include <stdio.h>
#include <sys/stat.h>

#include <cerrno>
#include <ctime>
#include <limits>

using namespace Qt::Literals::StringLiterals;
using namespace qovelmor;

namespace {

QByteArray document(const QByteArray &body)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">" + body +
           "</plist>\n";
}

PropertyDictionary sample()
{
    return {{u"RSSSiteAddresses"_s,
             PropertyArray{PropertyDictionary{
                               {u"RSSNameString"_s, u"朝の“新聞” <&> ①㈱髙 🗞"_s},
                               {u"RSSValidate"_s, true},
                               {u"RSSFormat"_s, 3}},
                           PropertyDictionary{}, PropertyArray{}}},
            {u"zebra first"_s, false},
            {u"FontBoarderValue"_s, 72},
            {u"Least"_s, std::numeric_limits<qint64>::min()},
            {u"Most"_s, std::numeric_limits<qint64>::max()},
            {u"PlaySoundVolume"_s, 0.5},
            {u"Whole"_s, 1.0},
            {u"Odd"_s, 0.1},
            {u"Narrow"_s, -0.2},
            {u"Tiny"_s, std::numeric_limits<double>::denorm_min()},
            {u"Zero"_s, 0.0},
            {u"Color"_s, QByteArray("\0\x01\xff<&", 5)},
            {u"NoData"_s, QByteArray()},
            {u"Moment"_s, QDateTime::fromSecsSinceEpoch(1'793'000'000, Qt::UTC)},
            {u"White"_s, u"  a\tb\r\nc\rd  "_s},
            {u"Empty"_s, QString()},
            {QString(), u"empty key"_s}};
}

QByteArray nested(int levels)
{
    return document(QByteArray("<array>").repeated(levels) +
                    QByteArray("</array>").repeated(levels));
}

// One line for each element, one tab for each level.
constexpr auto laidOut = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                         "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
                         "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
                         "<plist version=\"1.0\">\n"
                         "<dict>\n"
                         "\t<key>a&lt;&amp;&gt;</key>\n"
                         "\t<array>\n"
                         "\t\t<true/>\n"
                         "\t\t<dict>\n"
                         "\t\t\t<key>text</key>\n"
                         "\t\t\t<string>a &lt; b</string>\n"
                         "\t\t</dict>\n"
                         "\t</array>\n"
                         "\t<key>data</key>\n"
                         "\t<data>ZG90cw==</data>\n"
                         "\t<key>date</key>\n"
                         "\t<date>2023-11-14T22:13:20Z</date>\n"
                         "\t<key>none</key>\n"
                         "\t<array>\n"
                         "\t\t<array/>\n"
                         "\t\t<dict/>\n"
                         "\t\t<string></string>\n"
                         "\t</array>\n"
                         "\t<key>number</key>\n"
                         "\t<integer>-7</integer>\n"
                         "\t<key>real</key>\n"
                         "\t<real>0.25</real>\n"
                         "</dict>\n"
                         "</plist>\n";

} // namespace

class PropertyListFileTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyType_readsBackEqualAndInOrder()
    {
        const auto bytes = writePropertyList(sample());
        QVERIFY(bytes);
        const auto back = parsePropertyList(*bytes);
        QVERIFY(back);
        const auto *values = back->get<PropertyDictionary>();
        QVERIFY(values != nullptr);
        for (std::size_t i = 0; i < sample().size(); ++i) {
            QCOMPARE(values->entries().at(i).key, sample().entries()[i].key);
            QVERIFY2(values->entries()[i].value == sample().entries()[i].value,
                     qPrintable(sample().entries()[i].key));
        }
        QVERIFY(*back == PropertyValue(sample()));
    }

    void documents_areLaidOutAsOtherWritersDo()
    {
        const PropertyDictionary values{
            {u"a<&>"_s, PropertyArray{true, PropertyDictionary{{u"text"_s, u"a < b"_s}}}},
            {u"data"_s, QByteArray("dots")},
            {u"date"_s, QDateTime::fromSecsSinceEpoch(1'700'000'000, Qt::UTC)},
            {u"none"_s, PropertyArray{PropertyArray{}, PropertyDictionary{}, QString()}},
            {u"number"_s, -7},
            {u"real"_s, 0.25}};
        QCOMPARE(*writePropertyList(values), QByteArray(laidOut));
    }

    // A feed may send millions of them in one description; the store must open again tomorrow.
    void textsFullOfMarkup_readBackInTime()
    {
        const QString text = u" <&>]]>🗞&\n"_s.repeated(200'000);
        const PropertyValue value = PropertyDictionary{{text.first(3'300), text}};
        const auto bytes = writePropertyList(value);
        QVERIFY(bytes);
        const std::clock_t begin = std::clock();
        const auto back = parsePropertyList(*bytes);
        QVERIFY(std::clock() - begin < 5 * CLOCKS_PER_SEC); // of processor time
        QVERIFY(back == std::optional(value));
    }

    // What a reader would refuse must not take a good file's place.
    void writing_keepsTheLimitsOfReading()
    {
        const PropertyValue value = PropertyArray{true, PropertyArray{u"漢"_s}};
        PropertyListWriter whole({});
        QVERIFY(whole.write(value));
        const qint64 size = whole.document().size();
        for (const auto &[limits, isWithin] :
             std::initializer_list<std::pair<PropertyListLimits, bool>>{
                 {{.bytes = size, .depth = 4, .elements = 5}, true},
                 {{.bytes = size - 1}, false},
                 {{.depth = 3}, false},
                 {{.elements = 4}, false}}) {
            QCOMPARE(PropertyListWriter(limits).write(value), isWithin);
            QCOMPARE(parsePropertyList(whole.document(), limits).has_value(), isWithin);
        }
    }

    void reals_stayReals()
    {
        QVERIFY(writePropertyList(1.0)->contains("<real>1</real>"));
        QVERIFY(writePropertyList(-5)->contains("<integer>-5</integer>"));
        QCOMPARE(parsePropertyList(document("<real>3</real>")), std::optional<PropertyValue>(3.0));
    }

    // The program runs in the user's locale, and half of Europe writes 0,5.
    void reals_areWrittenWithAPointWhateverTheLocale()
    {
        const QTemporaryDir locales;
        const QString german = locales.filePath(u"de_DE.UTF-8"_s);
        QProcess::execute(u"localedef"_s, {u"-i"_s, u"de_DE"_s, u"-f"_s, u"UTF-8"_s, german});
        QVERIFY2(QFile::exists(german), "localedef needs the package locales");
        qputenv("LOCPATH", QFile::encodeName(locales.path()));
        QVERIFY(setlocale(LC_NUMERIC, "de_DE.UTF-8") != nullptr);
        char inGerman[8] = {};
        snprintf(inGerman, sizeof inGerman, "%.1f", 0.5);
        const auto bytes = writePropertyList(0.5);
        const auto value = parsePropertyList(document("<real>0.25</real>"));
        setlocale(LC_NUMERIC, "C");
        QCOMPARE(inGerman, "0,5"); // the locale was really in force
        QVERIFY(bytes->contains("<real>0.5</real>"));
        QCOMPARE(value, std::optional<PropertyValue>(0.25));
    }

    void numbersThatTheFormatLacks_becomeZero()
    {
        for (const double number :
             {std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()})
            QCOMPARE(parsePropertyList(*writePropertyList(number)),
                     std::optional<PropertyValue>(0.0));
    }

    void dates_beyondTheFormatStayAtItsEnd()
    {
        const auto far = QDateTime(QDate(4001, 1, 1), QTime(), Qt::UTC);
        const auto back = parsePropertyList(*writePropertyList(far));
        QCOMPARE(back->get<QDateTime>()->date().year(), 2068);
        const auto after2038 = QDateTime(QDate(2040, 2, 29), QTime(1, 2, 3), Qt::UTC);
        QCOMPARE(parsePropertyList(*writePropertyList(after2038)),
                 std::optional<PropertyValue>(after2038));
    }

    void charactersThatXmlLacks_areReplacedAndTheResultParses()
    {
        QString text;
        for (char16_t c = 0; c < 0x20; ++c)
            text += QChar(c);
        text += QChar(0xFFFE);
        text += QChar(0xFFFF);
        text += QChar(0xD800); // half a surrogate pair
        text += u"\u007f終";
        const auto bytes = writePropertyList(PropertyDictionary{{text, text}});
        const auto back = parsePropertyList(*bytes);
        QVERIFY(back);
        const auto &entry = back->get<PropertyDictionary>()->entries().at(0);
        const QString kept = *entry.value.get<QString>();
        QCOMPARE(kept.size(), text.size());
        QCOMPARE(kept[9], u'\t');
        QCOMPARE(kept[10], u'\n');
        QCOMPARE(kept[0], QChar(QChar::ReplacementCharacter));
        QCOMPARE(kept[0x1b], QChar(QChar::ReplacementCharacter));
        QVERIFY(kept.endsWith(u"\u007f終"));
        QCOMPARE(entry.key, kept);
    }

    void documents_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<bool>("parses");
        const QByteArray text = "<string>a</string>";
        QTest::newRow("plain") << document(text) << true;
        QTest::newRow("byte order mark") << "\xEF\xBB\xBF" + document(text) << true;
        QTest::newRow("no declaration") << "<plist version=\"1.0\">" + text + "</plist>" << true;
        QTest::newRow("document type")
            << "<?xml version=\"1.0\"?><!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
               "\"http://127.0.0.1:1/x.dtd\"><plist version=\"1.0\">" +
                   text + "</plist>"
            << true;
        QTest::newRow("comment") << document("<!-- </array> & so on -->" + text) << true;
        QTest::newRow("character data section")
            << document("<string><![CDATA[a<b]]></string>") << true;
        QTest::newRow("empty") << QByteArray() << false;
        QTest::newRow("white space") << QByteArray("  \n") << false;
        QTest::newRow("no property list") << QByteArray("<html><body/></html>") << false;
        QTest::newRow("text") << QByteArray("http://example.jp/\n") << false;
        QTest::newRow("unknown element") << document("<float>3</float>") << false;
        QTest::newRow("key without value")
            << document("<dict><key>a</key><key>b</key><true/></dict>") << false;
        QTest::newRow("rubbish after the end") << document(text) + "x" << false;
        QTest::newRow("zeros after the end") << document(text) + QByteArray(16, '\0') << false;
        QTest::newRow("bad nesting") << document("<array><dict></array></dict>") << false;
        QTest::newRow("control character") << document("<string>a\x01</string>") << false;
        QTest::newRow("no UTF-8") << document("<string>\x83\x65</string>") << false;
        QTest::newRow("another encoding")
            << "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><plist version=\"1.0\">" + text +
                   "</plist>"
            << false;
        QTest::newRow("undeclared entity") << document("<string>&foo;</string>") << false;
        QTest::newRow("declared entity")
            << "<?xml version=\"1.0\"?><!DOCTYPE plist [<!ENTITY a \"b\">]><plist>" + text +
                   "</plist>"
            << false;
        QTest::newRow("64 levels with the root element") << nested(63) << true;
        QTest::newRow("65 levels with the root element") << nested(64) << false;
        QTest::newRow("a million levels") << nested(1'000'000) << false;
        QTest::newRow("a million open tags")
            << document(QByteArray("<dict>").repeated(1'000'000)) << false;
        QByteArray attributes;
        for (int i = 0; i < 200'000; ++i)
            attributes += " a" + QByteArray::number(i) + "=\"\"";
        QTest::newRow("200,000 attributes")
            << "<plist" + attributes + ">" + text + "</plist>" << false;
    }

    void documents()
    {
        QFETCH(QByteArray, bytes);
        const std::clock_t begin = std::clock();
        QTEST(parsePropertyList(bytes).has_value(), "parses");
        QVERIFY(std::clock() - begin < 2 * CLOCKS_PER_SEC); // of processor time
    }

    void limits_holdOnBothSides()
    {
        const QByteArray bytes = document("<array><true/><true/></array>"); // four elements
        QVERIFY(parsePropertyList(bytes, {.elements = 4}));
        QVERIFY(!parsePropertyList(bytes, {.elements = 3}));
        QVERIFY(parsePropertyList(bytes, {.bytes = bytes.size()}));
        QVERIFY(!parsePropertyList(bytes, {.bytes = bytes.size() - 1}));
        PropertyValue deep = PropertyArray{};
        for (int i = 0; i < 62; ++i)
            deep = PropertyArray{std::move(deep)};
        QVERIFY(parsePropertyList(*writePropertyList(deep)));
        QVERIFY(!writePropertyList(PropertyArray{deep}));
    }

    void everyPrefix_isRefused()
    {
        const QByteArray whole = writePropertyList(sample())->trimmed();
        QVERIFY(parsePropertyList(whole));
        for (qsizetype size = 0; size < whole.size(); ++size)
            QVERIFY2(!parsePropertyList(whole.first(size)), qPrintable(QString::number(size)));
    }

    void everyFlippedBit_isHarmless()
    {
        const QByteArray whole = *writePropertyList(sample());
        for (qsizetype i = 0; i < whole.size(); ++i) {
            for (int bit = 0; bit < 8; ++bit) {
                QByteArray damaged = whole;
                damaged[i] = static_cast<char>(damaged[i] ^ (1 << bit));
                const auto value = parsePropertyList(damaged);
                // What still parses can be written, and that parses again.
                QVERIFY(!value || parsePropertyList(*writePropertyList(*value)));
            }
        }
    }

    void files_writeAndRead()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"feeds.rssurl"_s);
        const PropertyValue addresses = PropertyArray{u"http://example.jp/1"_s, u"http://日本/"_s};
        QCOMPARE(writePropertyListFile(path, addresses), 0);
        QCOMPARE(readPropertyListFile(path).root, std::optional(addresses));
        QCOMPARE(writePropertyListFile(path, PropertyArray{}), 0); // shorter than before
        QCOMPARE(readPropertyListFile(path).root, std::optional<PropertyValue>(PropertyArray{}));
        QCOMPARE(writePropertyListFile(folder.filePath(u"none/x"_s), addresses), ENOENT);
    }

    void files_thatAreNoPlainFilesAreRefusedAtOnce()
    {
        const QTemporaryDir folder;
        const QString fifo = folder.filePath(u"fifo"_s);
        QCOMPARE(::mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
        QCOMPARE(readPropertyListFile(fifo).error, EINVAL);
        QCOMPARE(writePropertyListFile(fifo, true), EINVAL);
        QCOMPARE(readPropertyListFile(u"/dev/zero"_s).error, EINVAL);
        QCOMPARE(writePropertyListFile(u"/dev/full"_s, true), EINVAL);
        QCOMPARE(readPropertyListFile(folder.path()).error, EISDIR);
        QCOMPARE(readPropertyListFile(folder.filePath(u"none"_s)).error, ENOENT);
    }

    void files_overTheLimitAreRefusedUnread()
    {
        const QTemporaryDir folder;
        QFile file(folder.filePath(u"huge"_s));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(file.resize(qint64{1} << 40)); // a sparse terabyte
        QCOMPARE(readPropertyListFile(file.fileName()).error, EFBIG);
    }
};

QTEST_GUILESS_MAIN(PropertyListFileTest)
#include "propertylistfile_test.moc"
