// SPDX-License-Identifier: MIT
//
// What the message table costs the window: filling it, scrolling it by a page, moving the ▶ mark.
// Every second message has no date of its own, so that its first-seen time is looked up as it is
// drawn. QT_QPA_PLATFORM=offscreen paints into memory; the same goes for xcb under a real server.
#include "messages/FirstSeenMemory.h"
#include "messages/MessageTableModel.h"
#include "platform/SystemClock.h"
#include "platform/UserDefaults.h"
#include "platform/views/ListTable.h"

#include <QApplication>
#include <QScrollBar>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

namespace {

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

MessageVector messages(int count)
{
    MessageVector list;
    list.reserve(static_cast<std::size_t>(count));
    for (int number = 0; number < count; ++number) {
        Message message;
        message.headline = u"ニュースの見出しは三十文字ほどの長さになることが多い %1"_s.arg(number);
        if (number % 2 == 0)
            message.date = QString::asprintf("11/%02d 10:%02d", number % 28 + 1, number % 60);
        message.description = u"本文の初めの部分。"_s;
        message.siteName = u"見本新聞"_s;
        message.isNew = number % 3 == 0;
        list.push_back(std::move(message));
    }
    return list;
}

PresentationSnapshot presentation(const MessageSnapshot &list, int marked)
{
    auto shown = std::make_shared<MessagePresentation>();
    shown->messages = list;
    shown->messageIndex = marked;
    return shown;
}

/// The table in a window of an ordinary size, over real first-seen times.
struct Window
{
    Window()
    {
        table.setLook({{48, 110, 170, 460}});
        table.resize(840, 560);
        table.show();
        QCoreApplication::processEvents();
    }
    void paint() { table.viewport()->repaint(); }
    void paintCell(int row)
    {
        table.viewport()->repaint(
            table.visualRect(model.index(row, MessageTableModel::MSGPresent)));
    }

    SystemClock clock{nullptr};
    QTemporaryDir folder;
    UserDefaults defaults{folder.filePath(u"store.plist"_s)};
    FirstSeenMemory firstSeen{clock, defaults};
    MessageTableModel model{
        [this](const QString &headline) { return firstSeen.dateStringWithMessage(headline); }};
    ListTable table{model, {u"msgListView"_s, u"messages"_s, u"empty"_s, u"empty"_s}};
};

void fill(benchmark::State &state)
{
    Window window;
    const auto list =
        std::make_shared<const MessageVector>(messages(static_cast<int>(state.range(0))));
    const auto empty = std::make_shared<const MessageVector>();
    for (auto _ : state) {
        state.PauseTiming();
        window.model.show(presentation(empty, 0), false);
        window.paint();
        state.ResumeTiming();
        window.model.show(presentation(list, 0), false);
        window.paint();
    }
}

void scrollByAPage(benchmark::State &state)
{
    Window window;
    const auto list =
        std::make_shared<const MessageVector>(messages(static_cast<int>(state.range(0))));
    window.model.show(presentation(list, 0), true);
    window.paint();
    QScrollBar *bar = window.table.verticalScrollBar();
    for (auto _ : state) {
        if (bar->value() == bar->maximum())
            bar->setValue(0);
        bar->triggerAction(QAbstractSlider::SliderPageStepAdd);
        window.paint();
    }
}

void moveTheMark(benchmark::State &state)
{
    Window window;
    const auto list =
        std::make_shared<const MessageVector>(messages(static_cast<int>(state.range(0))));
    window.model.show(presentation(list, 0), true);
    window.paint();
    int resets = 0;
    QObject::connect(&window.model, &QAbstractItemModel::modelReset, [&resets] { ++resets; });
    int marked = 0;
    for (auto _ : state) {
        const int before = marked;
        marked = (marked + 1) % 20;
        window.model.show(presentation(list, marked), true);
        window.paintCell(before);
        window.paintCell(marked);
    }
    if (resets > 0)
        state.SkipWithError("the model was reset");
}

} // namespace

BENCHMARK(fill)->Arg(100)->Arg(10'000)->Unit(benchmark::kMillisecond);
BENCHMARK(scrollByAPage)->Arg(100)->Arg(10'000)->Unit(benchmark::kMillisecond);
BENCHMARK(moveTheMark)->Arg(100)->Arg(10'000)->Unit(benchmark::kMillisecond);

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
