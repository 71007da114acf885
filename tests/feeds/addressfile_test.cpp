// SPDX-License-Identifier: MIT
#include "feeds/AddressFile.h"
#include "platform/PropertyListFile.h"

#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

class AddressFileTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void path_data();
    void path();
    void file_isAnArrayOfStrings();
    void extensionInCapitals_isRead_data();
    void extensionInCapitals_isRead();
    void writtenListsCanBeRead_data();
    void writtenListsCanBeRead();
    void unreadable_data();
    void unreadable();
    void fifo_isNotWaitedFor();
    void whatIsNoString_isLeftOut();
    void cutAtEveryByte();
    void unwritable();
    void roundTrip_ofRandomLists();

private:
    QString file(const QString &name) const { return folder_.filePath(name); }
    QString fileHolding(const QByteArray &bytes) const
    {
        QFile out(file(u"list.rssurl"_s));
        if (!out.open(QIODevice::WriteOnly) || out.write(bytes) != bytes.size())
            qFatal("the test's file cannot be written");
        return out.fileName();
    }

    QTemporaryDir folder_;
};

void AddressFileTest::path_data()
{
    QTest::addColumn<QString>("chosen");
    QTest::addColumn<QString>("used");
    QTest::newRow("with the extension") << u"/a/b.rssurl"_s << u"/a/b.rssurl"_s;
    QTest::newRow("another extension") << u"/a/b.txt"_s << u"/a/b.rssurl"_s;
    QTest::newRow("no extension") << u"/a/b"_s << u"/a/b.rssurl"_s;
    QTest::newRow("two extensions") << u"/a/b.tar.gz"_s << u"/a/b.tar.rssurl"_s;
    QTest::newRow("a point in the folder") << u"/a.d/b"_s << u"/a.d/b.rssurl"_s;
    QTest::newRow("a hidden file") << u"/a/.b"_s << u"/a/.b.rssurl"_s;
    QTest::newRow("Japanese") << u"/a/一覧.plist"_s << u"/a/一覧.rssurl"_s;
}

void AddressFileTest::path()
{
    QFETCH(QString, chosen);
    QTEST(addressFilePath(chosen), "used");
}

void AddressFileTest::file_isAnArrayOfStrings()
{
    QVERIFY(writeAddressFile(file(u"out.txt"_s), {u"http://a/"_s, u"feed://b/?x=1&y=<2>"_s}));
    QVERIFY(!QFile::exists(file(u"out.txt"_s)));
    QFile written(file(u"out.rssurl"_s));
    QVERIFY(written.open(QIODevice::ReadOnly));
    const auto root = parsePropertyList(written.readAll());
    QVERIFY(root);
    QVERIFY(*root == PropertyValue(PropertyArray{u"http://a/"_s, u"feed://b/?x=1&y=<2>"_s}));
}

void AddressFileTest::extensionInCapitals_isRead_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("capitals") << u"FEEDS.RSSURL"_s;
    QTest::newRow("mixed") << u"Feeds.RssUrl"_s;
}

void AddressFileTest::extensionInCapitals_isRead()
{
    QFETCH(QString, name);
    QVERIFY(QFile::copy(fileHolding("<plist><array><string>http://a/</string></array></plist>"),
                        file(name)));
    QCOMPARE(readAddressFile(file(name)), QStringList{u"http://a/"_s});
    QVERIFY(writeAddressFile(file(name), {u"http://b/"_s})); // under the one name there is
    QCOMPARE(readAddressFile(file(name)), QStringList{u"http://a/"_s});
    QCOMPARE(readAddressFile(addressFilePath(file(name))), QStringList{u"http://b/"_s});
    QVERIFY(QFile::remove(file(name)));
    QCOMPARE(readAddressFile(file(name)), QStringList{u"http://b/"_s});
}

void AddressFileTest::writtenListsCanBeRead_data()
{
    QTest::addColumn<qsizetype>("addresses");
    QTest::addColumn<qsizetype>("length");
    QTest::addColumn<bool>("isWritten");
    QTest::newRow("as many as there may be") << qsizetype{19'998} << qsizetype{10} << true;
    QTest::newRow("one more") << qsizetype{19'999} << qsizetype{10} << false;
    QTest::newRow("nearly a megabyte") << qsizetype{1} << qsizetype{1'040'000} << true;
    QTest::newRow("more than a megabyte") << qsizetype{1} << qsizetype{1024 * 1024} << false;
}

void AddressFileTest::writtenListsCanBeRead()
{
    QFETCH(qsizetype, addresses);
    QFETCH(qsizetype, length);
    QFETCH(bool, isWritten);
    const QString path = file(u"long.rssurl"_s);
    QVERIFY(writeAddressFile(path, {u"http://old/"_s}));
    const QStringList list(addresses, QString(length, u'x'));
    QCOMPARE(writeAddressFile(path, list), isWritten);
    QCOMPARE(isTooLongForAddressFile(list), !isWritten);
    QCOMPARE(readAddressFile(path), isWritten ? list : QStringList{u"http://old/"_s});
    // Nothing is refused that an import would take.
    QCOMPARE(writePropertyListFile(path, PropertyArray(list.begin(), list.end())), 0);
    QCOMPARE(readAddressFile(path).has_value(), isWritten);
}

void AddressFileTest::unreadable_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("empty") << ""_ba;
    QTest::newRow("no property list") << "<html></html>"_ba;
    QTest::newRow("a dictionary") << "<plist version=\"1.0\"><dict/></plist>"_ba;
    QTest::newRow("a string") << "<plist version=\"1.0\"><string>http://a/</string></plist>"_ba;
    QTest::newRow("more than a megabyte") << "<plist version=\"1.0\"><array>"_ba +
                                                 QByteArray(1024 * 1024, ' ') +
                                                 "</array></plist>"_ba;
    QTest::newRow("too many entries") << "<plist version=\"1.0\"><array>"_ba +
                                             QByteArray("<string>a</string>").repeated(30'000) +
                                             "</array></plist>"_ba;
}

void AddressFileTest::unreadable()
{
    QFETCH(QByteArray, bytes);
    QVERIFY(!readAddressFile(fileHolding(bytes)));
    QVERIFY(!readAddressFile(file(u"missing"_s)));
    QVERIFY(!readAddressFile(u"/"_s));
}

void AddressFileTest::fifo_isNotWaitedFor()
{
    const QString path = file(u"fifo.rssurl"_s);
    QCOMPARE(::mkfifo(QFile::encodeName(path).constData(), 0600), 0);
    QVERIFY(!readAddressFile(path));
}

void AddressFileTest::whatIsNoString_isLeftOut()
{
    const QString path = fileHolding("<plist version=\"1.0\"><array><string>http://a/</string>"
                                     "<integer>5</integer><array/><string></string>"
                                     "</array></plist>");
    QCOMPARE(readAddressFile(path), (QStringList{u"http://a/"_s, u""_s}));
}

void AddressFileTest::cutAtEveryByte()
{
    QVERIFY(writeAddressFile(file(u"whole"_s), {u"http://a/"_s, u"http://b/"_s}));
    QFile whole(file(u"whole.rssurl"_s));
    QVERIFY(whole.open(QIODevice::ReadOnly));
    const QByteArray bytes = whole.readAll().trimmed();
    for (qsizetype size = 0; size < bytes.size(); ++size)
        QVERIFY(!readAddressFile(fileHolding(bytes.left(size))));
}

void AddressFileTest::unwritable()
{
    QVERIFY(!writeAddressFile(file(u"no/such/folder/list"_s), {u"http://a/"_s}));
}

void AddressFileTest::roundTrip_ofRandomLists()
{
    const quint32 seed = QRandomGenerator::system()->generate();
    qInfo("seed %u", seed);
    QRandomGenerator random(seed);
    for (int round = 0; round < 50; ++round) {
        QStringList addresses;
        for (int i = random.bounded(20); i > 0; --i) {
            QString address = u"http://"_s;
            for (int length = random.bounded(30); length > 0; --length)
                address += QChar(random.bounded(0x20, 0xd800));
            addresses << address;
        }
        QVERIFY(writeAddressFile(file(u"random"_s), addresses));
        QCOMPARE(readAddressFile(file(u"random"_s)), addresses);
    }
}

QTEST_APPLESS_MAIN(AddressFileTest)
#include "addressfile_test.moc"
