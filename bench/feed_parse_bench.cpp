// SPDX-License-Identifier: MIT
//
// Reading one feed from its bytes to its items, beside a bare libxml2 parse of the same bytes.
// `feed_parse_bench --write FOLDER` writes the documents to files, for feedparser_compare.py.
#include "bench/FeedDocuments.h"
#include "feeds/FeedExtraction.h"
#include "feeds/FeedFormat.h"
#include "feeds/RSSReader.h"
#include "platform/SystemClock.h"

#include <benchmark/benchmark.h>
#include <libxml/parser.h>
#include <time.h>

#include <cstring>
#include <fstream>
#include <iostream>
#include <string>

namespace qovelmor {
namespace {

/// Parses the same bytes each time, as the loader does after a transfer.
class MemoryLoader final : public FeedLoader
{
public:
    explicit MemoryLoader(const QByteArray &bytes) : bytes_(bytes) {}

    FeedLoad load(const FeedRequest &) override
    {
        XmlParseResult result = XmlDocument::parse(bytes_, {}, feedContainers());
        return LoadedFeed{std::make_shared<const XmlFeedDocument>(std::move(result.document)), {}};
    }

private:
    QByteArray bytes_;
};

void parseBare(const QByteArray &bytes)
{
    constexpr int options = XML_PARSE_NONET | XML_PARSE_NOENT | XML_PARSE_NOCDATA;
    ::xmlFreeDoc(::xmlReadMemory(bytes.constData(), static_cast<int>(bytes.size()), nullptr,
                                 nullptr, options));
}

/// Processor time of this thread: what else the machine does then counts little.
double threadSeconds()
{
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

double secondsOf(const auto &work)
{
    const double start = threadSeconds();
    work();
    return threadSeconds() - start;
}

/// Both in turn, so that a busy machine slows both alike; the counter "ratio" compares their sums.
void readBesideBareParse(benchmark::State &state)
{
    const int format = static_cast<int>(state.range(0));
    const QByteArray bytes = benchfeeds::document(format, static_cast<int>(state.range(1)));
    MemoryLoader loader(bytes);
    SystemClock clock;
    RSSReader reader({loader, clock}, QStringLiteral("http://example.com/"), true,
                     QStringLiteral("例"), format);
    double bare = 0;
    double whole = 0;
    for (auto _ : state) {
        bare += secondsOf([&] { parseBare(bytes); });
        const double seconds = secondsOf([&] { reader.readHeadlines(); });
        state.SetIterationTime(seconds);
        whole += seconds;
    }
    if (reader.count() != static_cast<int>(state.range(1)))
        state.SkipWithError("not all items were read");
    const auto count = static_cast<double>(state.iterations());
    state.counters["bytes"] = static_cast<double>(bytes.size());
    state.counters["bare_ms"] = bare / count * 1e3;
    state.counters["ratio"] = whole / bare;
}

int writeDocuments(const std::string &folder)
{
    for (const int format : {1, 2, 3}) {
        for (const int count : {20, 1000, 10'000}) {
            const QByteArray bytes = benchfeeds::document(format, count);
            std::ofstream file(folder + "/format" + std::to_string(format) + "-" +
                               std::to_string(count) + ".xml");
            file.write(bytes.constData(), bytes.size());
            if (!file.flush()) {
                std::cerr << "cannot write to " << folder << '\n';
                return 1;
            }
        }
    }
    return 0;
}

} // namespace
} // namespace qovelmor

BENCHMARK(qovelmor::readBesideBareParse)
    ->ArgNames({"format", "items"})
    ->ArgsProduct({{2, 1, 3}, {20, 1000, 10'000}})
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

int main(int argc, char **argv)
{
    if (argc == 3 && std::strcmp(argv[1], "--write") == 0)
        return qovelmor::writeDocuments(argv[2]);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
