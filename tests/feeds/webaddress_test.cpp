// SPDX-License-Identifier: MIT
#include "feeds/WebAddress.h"

#include <QTest>

using namespace qovelmor;

class WebAddressTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void address_data();
    void address();
};

void WebAddressTest::address_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isWeb");
    QTest::addColumn<QString>("asHttp");
    QTest::addColumn<DropVerdict>("verdict");

    const auto row = [](const char *name, const char16_t *text, bool isWeb, const char16_t *asHttp,
                        DropVerdict verdict) {
        QTest::newRow(name) << QString::fromUtf16(text) << isWeb << QString::fromUtf16(asHttp)
                            << verdict;
    };
    using enum DropVerdict;
    row("http", u"http://example.jp/", true, u"http://example.jp/", Accepted);
    row("feed", u"feed://example.jp/", true, u"http://example.jp/", Accepted);
    row("only the scheme, 7 characters", u"http://", true, u"http://", Accepted);
    row("6 characters", u"http:/", false, u"http:/", Refused);
    row("empty", u"", false, u"", Refused);
    row("https", u"https://example.jp/", false, u"https://example.jp/", TypeInstead);
    row("feed without slashes", u"feed:example", false, u"feed:example", Refused);
    row("feed in the middle", u"http://a/feed://b", true, u"http://a/feed://b", Accepted);
    row("only the first is replaced", u"feed://a/feed://b", true, u"http://a/feed://b", Accepted);
    row("upper case", u"HTTP://example.jp/", false, u"HTTP://example.jp/", Refused);
    row("a blank before", u" http://example.jp/", false, u" http://example.jp/", Refused);
    row("a script", u"javascript:alert(1)", false, u"javascript:alert(1)", Refused);
    row("a file", u"file:///etc/passwd", false, u"file:///etc/passwd", Refused);
}

void WebAddressTest::address()
{
    QFETCH(QString, text);
    QTEST(isWebAddressString(text), "isWeb");
    QTEST(feedToHttpString(text), "asHttp");
    QTEST(dropVerdict(text), "verdict");
}

QTEST_APPLESS_MAIN(WebAddressTest)
#include "webaddress_test.moc"
