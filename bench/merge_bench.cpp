// SPDX-License-Identifier: MIT
//
// What a read costs behind the network: gather, order, remove duplicates, mark, and store durably.
#include "messages/MergeRules.h"
#include "messages/RandomInsertion.h"
#include "messages/RememberedMessages.h"
#include "platform/UserDefaults.h"

#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <random>

namespace {

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

constexpr int messagesPerSite = 50;

/// One site's headlines: mixed dates, texts of an ordinary length, one in ten seen elsewhere too.
MessageVector siteMessages(std::mt19937 &random, int count, int total)
{
    std::uniform_int_distribution<int> any(0, total * 10);
    std::uniform_int_distribution<int> day(1, 28);
    std::uniform_int_distribution<int> minute(0, 59);
    MessageVector messages;
    for (int i = 0; i < count; ++i) {
        const int number = any(random) % 10 == 0 ? any(random) % 100 : any(random);
        Message message;
        message.headline =
            u"ニュースの見出しは三十文字ほどの長さになることが多い "_s + QString::number(number);
        message.date = QString::asprintf("11/%02d 10:%02d", day(random), minute(random));
        message.description = u"本文の初めの部分。"_s.repeated(8);
        message.link = u"http://example.com/news/2026/"_s + QString::number(number);
        message.siteName = u"見本新聞"_s;
        messages.push_back(std::move(message));
    }
    return messages;
}

std::vector<MessageVector> sites(int total)
{
    std::mt19937 random(20261114);
    std::vector<MessageVector> all;
    for (int made = 0; made < total; made += messagesPerSite)
        all.push_back(siteMessages(random, std::min(messagesPerSite, total - made), total));
    return all;
}

MessageVector merged(std::vector<MessageVector> all)
{
    MessageVector list;
    for (MessageVector &site : all) {
        arrangeSite(site, noSiteCap, MessageOrder::OldestFirst);
        std::move(site.begin(), site.end(), std::back_inserter(list));
    }
    return list;
}

void finish(MessageVector &list, const MessageVector &previous)
{
    benchmark::DoNotOptimize(removeDuplicates(list));
    sortOldestFirst(list);
    markNew(list, previous);
}

void mergeInOrder(benchmark::State &state)
{
    const auto all = sites(static_cast<int>(state.range(0)));
    const MessageVector previous = merged(all);
    for (auto _ : state) {
        MessageVector list = merged(all);
        finish(list, previous);
        benchmark::DoNotOptimize(list);
    }
}

void mergeAtRandom(benchmark::State &state)
{
    const auto all = sites(static_cast<int>(state.range(0)));
    const MessageVector previous = merged(all);
    const RandomSource random = &std::rand;
    for (auto _ : state) {
        RandomInsertion insertion(random);
        for (const MessageVector &site : all) {
            for (const Message &message : site)
                insertion.add(message);
        }
        MessageVector list = insertion.take();
        benchmark::DoNotOptimize(removeDuplicates(list));
        markNew(list, previous);
        benchmark::DoNotOptimize(list);
    }
}

void mergeAndStore(benchmark::State &state)
{
    const auto all = sites(static_cast<int>(state.range(0)));
    const MessageVector previous = merged(all);
    QTemporaryDir folder;
    UserDefaults defaults(folder.filePath(u"store.plist"_s));
    for (auto _ : state) {
        MessageVector list = merged(all);
        finish(list, previous);
        defaults.removeKey(u"LastRSSMessages"_s); // so that each turn has something to write
        const auto shortened = shortenedForStore(list, rememberedBytes(list.size()));
        defaults.setArray(toArray(shortened ? *shortened : list), u"LastRSSMessages"_s);
        if (!defaults.synchronize())
            state.SkipWithError("the store could not be written");
    }
}

// A setting changes while that many messages are remembered: the store is written whole.
void storeOneSetting(benchmark::State &state)
{
    QTemporaryDir folder;
    UserDefaults defaults(folder.filePath(u"store.plist"_s));
    const auto all = sites(static_cast<int>(state.range(0)));
    defaults.setArray(toArray(merged(all)), u"LastRSSMessages"_s);
    int value = 0;
    for (auto _ : state) {
        defaults.setInteger(++value, u"LEDSpeed"_s);
        if (!defaults.synchronize())
            state.SkipWithError("the store could not be written");
    }
}

} // namespace

BENCHMARK(mergeInOrder)->Arg(1'000)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);
BENCHMARK(mergeAtRandom)->Arg(1'000)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);
BENCHMARK(mergeAndStore)->Arg(1'000)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);
BENCHMARK(storeOneSetting)->Arg(100)->Arg(1'000)->Arg(10'000)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
