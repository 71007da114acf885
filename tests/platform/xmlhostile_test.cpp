// SPDX-License-Identifier: MIT
// Hundreds of documents that nobody would write for reading: an error or a result, in bounded time
// and memory, and never a part that passes for the whole.
#include "HostileXml.h"
#include "platform/XmlDocument.h"
#include "tests/support/HttpServer.h"
#include "tests/support/ProcessUse.h"

#include <QTemporaryFile>
#include <QtTest>

#include <time.h>
#include <unistd.h>

#include <random>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

namespace {

constexpr double mostSeconds = 2.0; // of the processor
constexpr long mostMebibytes = 512;

double threadSeconds()
{
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) + double(time.tv_nsec) * 1e-9;
}

QByteArray feed()
{
    return "<?xml version='1.0' encoding='UTF-8'?>\n<!DOCTYPE rss [<!ENTITY e 'x'>]>\n"
           "<rss version='2.0'><channel><title>題 &amp; &e;</title>\n"
           "<item><title>一</title><link>http://h/1</link><description><![CDATA[<b>d</b>]]>"
           "</description></item>\n<!-- c --><item><title>二</title></item></channel></rss>";
}

QByteArray shiftJisFeed()
{
    return "<?xml version='1.0' encoding='Shift_JIS'?><rss><channel><item><title>" +
           QByteArray::fromHex("8740878afbfc93fa967b") + "</title></item></channel></rss>";
}

QByteArray wideFeed()
{
    const QString text = u"\ufeff<?xml version='1.0' encoding='UTF-16'?><rss><item><title>"
                         "日本</title></item></rss>"_s;
    return QByteArray(reinterpret_cast<const char *>(text.utf16()), text.size() * 2);
}

} // namespace

class XmlHostileTest : public QObject
{
    Q_OBJECT

private:
    int documents_ = 0;

    void judge(const HostileXml &hostile)
    {
        ++documents_;
        const ProcessUse use(::getpid());
        if (!isSanitized())
            use.forgetPeak();
        const long before = use.memoryKiB();
        const double start = threadSeconds();
        bool isRead = false;
        QString cause;
        {
            const XmlParseResult result = XmlDocument::parse(hostile.xml);
            isRead = result.document != nullptr;
            cause = result.failure.cause;
            if (result.document)
                result.document->nodesForXPath("/rss/channel/item/title");
            QVERIFY2(isRead || !result.failure.cause.isEmpty(), hostile.name.constData());
        }
        if (hostile.outcome != XmlOutcome::Either)
            QVERIFY2(isRead == (hostile.outcome == XmlOutcome::Result),
                     hostile.name + ": " + cause.toUtf8());
        if (isSanitized())
            return; // its checks cost time and memory of their own
        const double seconds = threadSeconds() - start;
        const long mebibytes = (use.peakMemoryKiB() - before) / 1024;
        QVERIFY2(seconds < mostSeconds && mebibytes < mostMebibytes,
                 qPrintable(u"%1: %2 s, %3 MiB"_s.arg(QString::fromUtf8(hostile.name))
                                .arg(seconds)
                                .arg(mebibytes)));
    }

    void judgeAll(const std::vector<HostileXml> &documents)
    {
        for (const HostileXml &hostile : documents) {
            judge(hostile);
            if (QTest::currentTestFailed())
                return;
        }
    }

private Q_SLOTS:
    void greedy() { judgeAll(greedyDocuments((isSanitized() ? 1 : 31) * 1024 * 1024)); }
    void damaged() { judgeAll(damagedDocuments()); }
    void lying() { judgeAll(lyingDocuments()); }

    void reaching_readsNothingAndAsksNobody()
    {
        QTemporaryFile secret;
        QVERIFY(secret.open());
        secret.write("secret");
        secret.flush();
        const HttpServer server;
        const auto documents = reachingDocuments("file://" + secret.fileName().toUtf8(),
                                                 server.address("/secret").toUtf8());
        for (const HostileXml &hostile : documents) {
            judge(hostile);
            const XmlParseResult result = XmlDocument::parse(hostile.xml);
            if (!result.document)
                continue;
            for (const char *query : {"/a", "//@*"}) {
                for (const XmlNode &node : result.document->nodesForXPath(query).nodes)
                    QVERIFY2(!node.stringValue().contains(u"secret"_s) ||
                                 hostile.name.contains("base") || hostile.name.contains("schema") ||
                                 hostile.name.contains("inclusion"),
                             hostile.name.constData());
            }
        }
        QVERIFY(server.requests().empty());
    }

    void cutAtEveryByte_isAnError()
    {
        for (const QByteArray &whole : {feed(), shiftJisFeed(), wideFeed()}) {
            judge({"whole", whole, XmlOutcome::Result});
            for (qsizetype size = 0; size < whole.size(); ++size)
                judge({"cut at " + QByteArray::number(size), whole.first(size), XmlOutcome::Error});
        }
    }

    // A document that reads after damage reads whole: the end of the root is there.
    void randomDamage_isAnErrorOrWhole()
    {
        const auto seed = qEnvironmentVariableIntValue("QOVELMOR_SEED");
        qInfo("seed %d (QOVELMOR_SEED)", seed);
        std::mt19937 random(static_cast<unsigned>(seed));
        const QByteArray whole = feed();
        for (int i = 0; i < 2000; ++i) {
            QByteArray damaged = whole;
            for (auto changes = 1 + random() % 3; changes > 0; --changes) {
                const auto at = static_cast<qsizetype>(random() % std::size_t(damaged.size()));
                if (random() % 2 == 0)
                    damaged[at] = static_cast<char>(random());
                else
                    damaged.remove(at, 1 + static_cast<qsizetype>(random() % 9));
            }
            judge({"random " + QByteArray::number(i), damaged, {}});
        }
    }

    // Every character that Japanese desktops added to the two encodings reads as one character.
    void charactersOfNecAndIbm_areRead()
    {
        const auto read = [](const char *encoding, const QByteArray &bytes) {
            const XmlParseResult result =
                XmlDocument::parse("<?xml version='1.0' encoding='" + QByteArray(encoding) +
                                   "'?><a>" + bytes + "</a>");
            return result.document ? result.document->nodesForXPath("/a").nodes[0].stringValue()
                                   : QString();
        };
        int count = 0;
        const auto verify = [&](const char *encoding, const QByteArray &bytes) {
            const QString text = read(encoding, bytes);
            if (text.isEmpty() && bytes.size() == 2 && (bytes[1] == '\x7f' || bytes[1] == '\xfd'))
                return;
            QVERIFY2(text.size() == 1 && text[0] != QChar(0xfffd), bytes.toHex().constData());
            ++count;
        };
        const auto range = [&](const char *encoding, int from, int to) {
            for (int code = from; code <= to; ++code) {
                if (const int low = code & 0xff; low < 0x40 || low == 0x7f || low > 0xfc)
                    continue;
                verify(encoding, QByteArray(1, char(code >> 8)) + char(code & 0xff));
            }
        };
        range("Shift_JIS", 0x8740, 0x875d); // NEC: ① to Ⅹ
        range("Shift_JIS", 0x875f, 0x8775); // NEC: units, ㈱ and the like follow
        range("Shift_JIS", 0x8780, 0x879c);
        range("Shift_JIS", 0xed40, 0xeeec); // IBM's, as NEC placed them
        range("Shift_JIS", 0xfa40, 0xfc4b); // IBM's own places, 髙 among them
        for (int low = 0xa1; low <= 0xbe; ++low)
            verify("EUC-JP", QByteArray(1, '\xad') + char(low));
        QVERIFY2(count > 800, qPrintable(QString::number(count)));
        QCOMPARE(read("EUC-JP", QByteArray::fromHex("ada1adea8ff4fb")), u"①㈱髙"_s);
    }

    void cleanupTestCase() { qInfo("%d documents", documents_); }
};

QTEST_GUILESS_MAIN(XmlHostileTest)
#include "xmlhostile_test.moc"
