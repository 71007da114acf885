// SPDX-License-Identifier: MIT
//
// The on-screen board: what one step of a scroll costs, and how well a scroll keeps its pace.
//
//   QT_QPA_PLATFORM=offscreen build/board_step_bench

#include "messages/DiodeBoard.h"
#include "messages/LineStrip.h"
#include "messages/ScrollRun.h"
#include "platform/SystemClock.h"

#include <QGuiApplication>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <numeric>
#include <vector>

using namespace qovelmor;
using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;

namespace {

using Times = std::vector<std::chrono::nanoseconds>;

double microseconds(std::chrono::nanoseconds time)
{
    return std::chrono::duration<double, std::micro>(time).count();
}

double mean(const Times &times)
{
    return microseconds(std::accumulate(times.begin(), times.end(), 0ns)) / double(times.size());
}

double percentile(Times &times, int percent)
{
    const auto place = times.begin() + std::ptrdiff_t(times.size() - 1) * percent / 100;
    std::nth_element(times.begin(), place, times.end());
    return microseconds(*place);
}

QString lineOf(int characters)
{
    const auto sentence =
        u"駅前の広場で朝市がひらかれ、新鮮な野菜がならびました。11/14 10:30【町の便り】"_s;
    return sentence.repeated(characters / int(sentence.size()) + 1).left(characters);
}

LineStyle orange()
{
    return {screenBoardFont(u"IPAexMincho"_s), QColor(255, 140, 0), 0};
}

// All steps of one line across a board of 512 by 64 points, as the board's thread makes them: an
// empty board, the band on it, a picture to hand over.
void oneStep(benchmark::State &state)
{
    const QString text = lineOf(int(state.range(0)));
    const auto geometry = DiodeGeometry::of(4, double(state.range(1)));
    const QImage empty = emptyDiodeBoard(geometry);
    Times times;
    for (auto _ : state) {
        LineStrip strip(text, orange(), geometry.cell);
        for (int left = 512;; left -= 4) {
            const auto start = std::chrono::steady_clock::now();
            if (!strip.isWiderThan(-left))
                break;
            QImage picture = empty.copy();
            strip.copyTo(picture, left / 4);
            benchmark::DoNotOptimize(picture.constBits());
            times.push_back(std::chrono::steady_clock::now() - start);
        }
    }
    state.counters["steps"] = double(times.size()) / double(state.iterations());
    state.counters["mean_us"] = mean(times);
    state.counters["p99_us"] = percentile(times, 99);
    state.counters["max_us"] = percentile(times, 100);
}
BENCHMARK(oneStep)
    ->ArgNames({"characters", "density"})
    ->Args({50, 1})
    ->Args({50, 2})
    ->Args({10000, 1})
    ->Args({10000, 2})
    ->Unit(benchmark::kMillisecond);

// Draws as the board does and notes when each step began.
class NotingStage final : public ScrollStage
{
public:
    NotingStage(Times &begun, Clock &clock) : begun_(begun), clock_(clock) {}
    int scrollSpeed() const override { return 3; }
    int waitBeforeInterval() override { return 0; }
    int waitAfterInterval() override { return 0; }
    bool drawStep(int offset) override
    {
        begun_.push_back(clock_.steadyNow().time_since_epoch());
        if (!strip_.isWiderThan(offset - 512))
            return false;
        QImage picture = empty_.copy();
        strip_.copyTo(picture, (512 - offset) / 4);
        benchmark::DoNotOptimize(picture.constBits());
        return true;
    }
    void drawEmpty() override {}

private:
    Times &begun_;
    Clock &clock_;
    const DiodeGeometry geometry_ = DiodeGeometry::of(4, 1);
    const QImage empty_ = emptyDiodeBoard(geometry_);
    LineStrip strip_{lineOf(50), orange(), geometry_.cell};
};

// A headline at speed 3: the steps should begin 24 ms apart.
void paceAtSpeed3(benchmark::State &state)
{
    SystemClock clock;
    Times between;
    for (auto _ : state) {
        Times begun;
        {
            ScrollRun run(clock);
            run.show([&] { return std::make_unique<NotingStage>(begun, clock); });
            while (run.state() != 0)
                clock.sleepFor(50ms);
        }
        for (std::size_t i = 1; i < begun.size(); ++i)
            between.push_back(begun[i] - begun[i - 1]);
    }
    state.counters["mean_ms"] = mean(between) / 1000;
    state.counters["off_percent"] = (mean(between) / 24000 - 1) * 100;
    state.counters["p99_ms"] = percentile(between, 99) / 1000;
    state.counters["max_ms"] = percentile(between, 100) / 1000;
}
BENCHMARK(paceAtSpeed3)->Iterations(1)->UseRealTime()->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    const QGuiApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
