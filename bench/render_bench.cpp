// SPDX-License-Identifier: MIT
#include "render/VelmorFont.h"

#include <QGuiApplication>

#include <benchmark/benchmark.h>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

namespace {

/// A line as the board shows it: kanji, kana, digits and ASCII, `length` characters.
QString lineOf(qsizetype length)
{
    const QString sample = u"11/21 12:34 緊急地震速報が発表されました（気象庁）、株価は急騰 Qt "_s;
    return sample.repeated(length / sample.size() + 1).left(length);
}

void reportPerCharacter(benchmark::State &state, qsizetype characters)
{
    state.counters["per char"] = benchmark::Counter(static_cast<double>(characters),
                                                    benchmark::Counter::kIsIterationInvariantRate |
                                                        benchmark::Counter::kInvert);
}

void renderLine(benchmark::State &state, VelmorFont &font)
{
    const QString line = lineOf(state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(font.bitmapWithString(line));
    reportPerCharacter(state, line.size());
}

void dotFonts(benchmark::State &state)
{
    VelmorFont font;
    renderLine(state, font);
}
BENCHMARK(dotFonts)->Arg(1)->Arg(100)->Unit(benchmark::kMicrosecond);

/// 625 full-width glyphs fill the 10,000 columns of a bitmap.
void dotFontsFullLine(benchmark::State &state)
{
    VelmorFont font;
    font.setRotation(state.range(0) != 0);
    const QString line(625, u'漢');
    for (auto _ : state)
        benchmark::DoNotOptimize(font.bitmapWithString(line));
    reportPerCharacter(state, line.size());
}
BENCHMARK(dotFontsFullLine)->ArgName("rotated")->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);

void outlineFont(benchmark::State &state)
{
    VelmorFont font;
    font.setUseFontx(false);
    renderLine(state, font);
}
BENCHMARK(outlineFont)->Arg(1)->Arg(100)->Arg(1000)->Unit(benchmark::kMicrosecond);

void outlineFontNarrow(benchmark::State &state)
{
    VelmorFont font;
    font.setUseFontx(false);
    font.setExpansion(-0.2F);
    renderLine(state, font);
}
BENCHMARK(outlineFontNarrow)->Arg(100)->Unit(benchmark::kMicrosecond);

/// Each line of the board is rendered by a font object of its own.
void newFontObject(benchmark::State &state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(std::make_unique<VelmorFont>());
}
BENCHMARK(newFontObject)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
