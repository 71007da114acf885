// SPDX-License-Identifier: MIT
// Figures of the board link: `build/board_bench`.
#include "board/ColumnWords.h"
#include "board/FarmLine.h"
#include "board/HexText.h"
#include "board/VelmorSystem.h"
#include "platform/SystemClock.h"
#include "render/VelmorBitmap.h"
#include "tests/support/PseudoTerminal.h"
#include "tests/support/ScriptedBoard.h"
#include "tests/support/StdoutCapture.h"

#include <benchmark/benchmark.h>
#include <time.h>

#include <algorithm>
#include <mutex>
#include <thread>
#include <vector>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;
using std::chrono::steady_clock;

namespace {

std::shared_ptr<const VelmorBitmap> striped(int columns)
{
    auto image = std::make_shared<VelmorBitmap>(columns);
    for (int x = 0; x < columns; ++x)
        image->setBit(x, x % 16);
    return image;
}

std::unique_ptr<VelmorSystem> linkTo(const QByteArray &path, Clock &clock)
{
    auto system = std::make_unique<VelmorSystem>(clock, BoardLimits{}, [path](SerialDeviceType) {
        return SerialLookup{0, false, {path}};
    });
    const StdoutCapture quiet;
    if (!system->openSerialPortWithNumber(0))
        qFatal("the pseudo-terminal does not open");
    return system;
}

/// Dots to the command lines of a whole image, as they go to the port.
void encodeColumns(benchmark::State &state)
{
    const auto image = striped(static_cast<int>(state.range(0)));
    qsizetype bytes = 0;
    for (auto _ : state) {
        bytes = 0;
        for (const QString &words : wordStringsWithData(columnWords(*image, true)))
            bytes += farmLine(u"sc_data "_s + words).size();
        benchmark::DoNotOptimize(bytes);
    }
    state.counters["bytes/column"] = static_cast<double>(bytes) / image->width();
}
BENCHMARK(encodeColumns)->Arg(625)->Arg(10000)->Unit(benchmark::kMicrosecond);

/// Answers each line at once and notes how long the next one takes to begin.
class Stopwatch
{
public:
    explicit Stopwatch(PseudoTerminal &far) : far_(far), thread_([this] { run(); }) {}
    ~Stopwatch()
    {
        stop_ = true;
        thread_.join();
    }

    std::vector<double> takeMicroseconds()
    {
        const std::lock_guard lock(mutex_);
        return std::exchange(microseconds_, {});
    }

private:
    void run()
    {
        std::optional<steady_clock::time_point> answered;
        while (!stop_) {
            const QByteArray bytes = far_.read(std::chrono::milliseconds(20));
            const auto now = steady_clock::now();
            if (!bytes.isEmpty() && answered) {
                const std::lock_guard lock(mutex_);
                microseconds_.push_back(
                    std::chrono::duration<double, std::micro>(now - *answered).count());
                answered.reset();
            }
            if (bytes.contains('\r')) {
                far_.write("sc_mode\r\nD 2\r\nOk.\r\n");
                answered = steady_clock::now();
            }
        }
    }

    PseudoTerminal &far_;
    std::mutex mutex_;
    std::vector<double> microseconds_;
    std::atomic<bool> stop_ = false;
    std::thread thread_;
};

/// From the last byte of a reply that was read to the first byte of the next command.
void replyToNextCommand(benchmark::State &state)
{
    SystemClock clock;
    PseudoTerminal far;
    const auto system = linkTo(far.path(), clock);
    Stopwatch stopwatch(far);
    system->sc_mode();
    stopwatch.takeMicroseconds();
    for (auto _ : state)
        benchmark::DoNotOptimize(system->sc_mode());
    std::vector<double> times = stopwatch.takeMicroseconds();
    std::sort(times.begin(), times.end());
    if (times.empty())
        return;
    state.counters["median_us"] = times[times.size() / 2];
    state.counters["p99_us"] = times[times.size() * 99 / 100];
}
BENCHMARK(replyToNextCommand)->Iterations(5000)->Unit(benchmark::kMicrosecond);

/// All bytes of a run, and the least that the protocol allows for its columns: full lines of
/// 16 words, one blank between two words and none behind the last.
void wireBytes(benchmark::State &state)
{
    constexpr int columns = 640;
    SystemClock clock;
    ScriptedBoard far;
    const auto system = linkTo(far.path(), clock);
    system->setScroll(state.range(0) != 0);
    double sent = 0;
    for (auto _ : state) {
        system->sync();
        far.takeLines();
        system->showBitmap(striped(columns));
        system->sync();
        sent = 0;
        for (const QByteArray &line : far.takeLines())
            sent += line == "sync" ? 0.0 : static_cast<double>(line.size()) + 1;
    }
    constexpr double least = (8 + 16 * 5 - 1 + 1) / 16.0;
    state.counters["bytes/column"] = sent / columns;
    state.counters["least"] = least;
}
BENCHMARK(wireBytes)
    ->ArgName("scrolling")
    ->Arg(0)
    ->Arg(1)
    ->Iterations(3)
    ->Unit(benchmark::kMillisecond);

/// Processor time of an open link that nobody talks on, per cent of a core.
void idleLink(benchmark::State &state)
{
    SystemClock clock;
    PseudoTerminal far;
    const auto system = linkTo(far.path(), clock);
    const auto processor = [] {
        timespec time{};
        clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
    };
    constexpr double seconds = 10.0;
    const double before = processor();
    for (auto _ : state)
        clock.sleepFor(std::chrono::seconds(10));
    state.counters["percent"] = 100.0 * (processor() - before) / seconds;
}
BENCHMARK(idleLink)->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
