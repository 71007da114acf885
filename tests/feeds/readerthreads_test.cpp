// SPDX-License-Identifier: MIT
//
// One thread reads a feed while another asks for what it holds.
#include "feeds/RSSReader.h"
#include "platform/SimulatedClock.h"
#include "tests/feeds/FeedTexts.h"

#include <QtTest>

#include <algorithm>
#include <thread>

using namespace qovelmor;
using namespace qovelmor::feedtexts;
using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int reads = 400;
constexpr int itemsEach = 30;

QByteArray documentOf(const QByteArray &word)
{
    return rss2(item("<title>" + word + "</title><link>" + word + "</link><description>" + word +
                     "</description>")
                    .repeated(itemsEach));
}

/// Two documents in turn, and an error after each pair.
class ChangingLoader final : public FeedLoader
{
public:
    FeedLoad load(const FeedRequest &) override
    {
        const int turn = turn_++ % 3;
        if (turn == 2)
            return ReadError{7, u"Transfer"_s, u"the line is down"_s};
        auto parsed = XmlDocument::parse(turn == 0 ? first_ : second_);
        return LoadedFeed{std::make_shared<const XmlFeedDocument>(std::move(parsed.document)), {}};
    }

private:
    const QByteArray first_ = documentOf("first");
    const QByteArray second_ = documentOf("second");
    int turn_ = 0;
};

/// Every part of every item is of one document.
bool isWhole(const std::vector<ItemRecord> &items)
{
    if (items.empty())
        return true;
    const QString word = items.front().headline;
    return items.size() == itemsEach && std::all_of(items.begin(), items.end(), [&](const auto &i) {
               return i.headline == word && i.link == word && i.description == word;
           });
}

} // namespace

class ReaderThreadsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void askedDuringReads_givesWholeListsOnly()
    {
        SimulatedClock clock({});
        ChangingLoader loader;
        RSSReader reader({loader, clock}, u"http://example.com/"_s, true, u"名前"_s, 2);
        std::atomic<bool> isDone{false};
        std::thread reading([&] {
            for (int i = 0; i < reads; ++i)
                reader.readHeadlines();
            isDone = true;
        });
        int asked = 0;
        int torn = 0;
        while (!isDone || asked == 0) {
            ++asked;
            if (!isWhole(reader.headlines()))
                ++torn;
            // None of these may wait for the read or see half of a text.
            reader.setName(asked % 2 == 0 ? u"偶数の名前"_s : u"奇数の名前"_s);
            if (!reader.name()->endsWith(u"数の名前"_s) || reader.statusString().isEmpty() ||
                (reader.date() && reader.date()->size() != 11))
                ++torn;
        }
        reading.join();
        QCOMPARE(torn, 0);
        QVERIFY(isWhole(reader.headlines()));
        QCOMPARE(reader.count(), itemsEach);
    }
};

QTEST_GUILESS_MAIN(ReaderThreadsTest)
#include "readerthreads_test.moc"
