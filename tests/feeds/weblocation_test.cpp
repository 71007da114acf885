// SPDX-License-Identifier: MIT
#include "feeds/WebLocation.h"

#include <QFile>
#include <QMimeData>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

#include <sys/stat.h>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

class WebLocationTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void linkFile_data();
    void linkFile();
    void missingFile();
    void fifo_isNotWaitedFor();
    void droppedText();
    void droppedLinks();
    void droppedFile();
};

namespace {

QString writeFile(const QTemporaryDir &folder, const QString &name, const QByteArray &bytes)
{
    QFile file(folder.filePath(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("the test's file cannot be written");
    return file.fileName();
}

} // namespace

void WebLocationTest::linkFile_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("address");

    const auto address = u"http://example.jp/?a=1&b=2"_s;
    const QByteArray weblocBytes = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                   "<plist version=\"1.0\"><dict><key>URL</key>"
                                   "<string>http://example.jp/?a=1&amp;b=2</string></dict></plist>";
    QTest::newRow("webloc") << u"a.webloc"_s << weblocBytes << address;
    QTest::newRow("webloc, upper case") << u"A.WEBLOC"_s << weblocBytes << address;
    QTest::newRow("webloc, cut") << u"a.webloc"_s << weblocBytes.chopped(10) << u""_s;
    QTest::newRow("webloc without an address")
        << u"a.webloc"_s << "<plist version=\"1.0\"><dict/></plist>"_ba << u""_s;
    QTest::newRow("webloc with an array")
        << u"a.webloc"_s << "<plist version=\"1.0\"><array/></plist>"_ba << u""_s;
    QTest::newRow("webloc, empty") << u"a.webloc"_s << ""_ba << u""_s;

    const QByteArray urlBytes =
        "[InternetShortcut]\r\nURL=http://example.jp/?a=1&b=2\r\nIDList=\r\n";
    QTest::newRow("url") << u"a.url"_s << urlBytes << address;
    QTest::newRow("url, other case of names") << u"a.url"_s << urlBytes.toLower() << address;
    QTest::newRow("url, entry of another group")
        << u"a.url"_s << "[Other]\nURL=http://example.jp/\n[InternetShortcut]\n"_ba << u""_s;
    QTest::newRow("url, too large") << u"a.url"_s << urlBytes + QByteArray(64 * 1024, ' ') << u""_s;

    const QByteArray desktopBytes = "# a link\n[Desktop Entry]\nType=Link\nName[ja]=名前\n"
                                    "URL=http://example.jp/?a=1&b=2\n";
    QTest::newRow("desktop link") << u"a.desktop"_s << desktopBytes << address;
    QTest::newRow("desktop, an application")
        << u"a.desktop"_s << "[Desktop Entry]\nType=Application\nURL=http://example.jp/\n"_ba
        << u""_s;
    QTest::newRow("desktop, names are case-sensitive")
        << u"a.desktop"_s << "[Desktop Entry]\nType=Link\nUrl=http://example.jp/\n"_ba << u""_s;
    QTest::newRow("another kind of file") << u"a.txt"_s << "http://example.jp/"_ba << u""_s;
}

void WebLocationTest::linkFile()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, bytes);
    const QTemporaryDir folder;
    QTEST(urlInLinkFile(writeFile(folder, name, bytes)), "address");
}

void WebLocationTest::missingFile()
{
    const QTemporaryDir folder;
    for (const QString &name : {u"a.webloc"_s, u"a.url"_s, u"a.desktop"_s})
        QCOMPARE(urlInLinkFile(folder.filePath(name)), u""_s);
}

void WebLocationTest::fifo_isNotWaitedFor()
{
    const QTemporaryDir folder;
    for (const QString &name : {u"a.webloc"_s, u"a.url"_s, u"a.desktop"_s}) {
        const QString path = folder.filePath(name);
        QCOMPARE(::mkfifo(QFile::encodeName(path).constData(), 0600), 0);
        QCOMPARE(urlInLinkFile(path), u""_s);
    }
}

void WebLocationTest::droppedText()
{
    QMimeData data;
    QCOMPARE(droppedAddress(data), u""_s);
    data.setText(u" http://example.jp/\n"_s);
    QCOMPARE(droppedAddress(data), u"http://example.jp/"_s);
    data.setText(u"\n http://example.jp/ \r\nThe title of the page"_s); // as some browsers say it
    QCOMPARE(droppedAddress(data), u"http://example.jp/"_s);
}

void WebLocationTest::droppedLinks()
{
    QMimeData data;
    data.setText(u"The title of the page"_s);
    data.setUrls({QUrl(u"feed://example.jp/a"_s), QUrl(u"http://example.jp/b"_s)});
    QCOMPARE(droppedAddress(data), u"feed://example.jp/a"_s);

    // As the browser sent it: the server may not know what "あ" is.
    data.setData(u"text/uri-list"_s, "http://example.jp/%E3%81%82?q=a%20b%2Fc\r\n");
    QCOMPARE(droppedAddress(data), u"http://example.jp/%E3%81%82?q=a%20b%2Fc"_s);
}

void WebLocationTest::droppedFile()
{
    const QTemporaryDir folder;
    const QString path =
        writeFile(folder, u"リンク.url"_s, "[InternetShortcut]\nURL=http://example.jp/\n");
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(path)});
    QCOMPARE(droppedAddress(data), u"http://example.jp/"_s);
    data.setUrls({QUrl::fromLocalFile(u"/dev/zero"_s)});
    QCOMPARE(droppedAddress(data), u""_s);
}

QTEST_GUILESS_MAIN(WebLocationTest)
#include "weblocation_test.moc"
