// SPDX-License-Identifier: MIT
#pragma once

#include "platform/SimulatedClock.h"
#include "render/ProgressBoard.h"
#include "render/VelmorFont.h"
#include "render/VelmorProgress.h"
#include "tools/qovelmorboard/SimulatedBoard.h"

#include <QStringList>

#include <vector>

namespace qovelmor {

/// A picture as the board gets it: one word for each column, row 0 as its highest bit.
using BoardColumns = std::vector<simboard::ColumnWord>;

inline BoardColumns columnsOf(const VelmorBitmap &bitmap)
{
    BoardColumns columns;
    for (int x = 0; x < bitmap.width(); ++x) {
        unsigned word = 0;
        for (int y = 0; y < bitmap.height(); ++y)
            word |= bitmap.column(x)[y] != 0 ? 0x8000U >> y : 0U;
        columns.push_back(static_cast<simboard::ColumnWord>(word));
    }
    return columns;
}

/// The font settings of a profile.
struct LineFont
{
    bool useBitmapFont = true;
    QString name = QStringLiteral("HiraMinPro-W3");
    int boarder = 72;
    bool isNarrow = false;

    std::shared_ptr<const VelmorBitmap> draw(const QString &text) const
    {
        VelmorFont font(name, 0, 0, isNarrow ? -0.2F : 0.0F, useBitmapFont);
        font.setBoarder(boarder);
        return font.bitmapWithString(text);
    }
};

/// Keeps the pictures that a progress bar sends.
class ProgressPictures final : public ProgressBoard
{
public:
    explicit ProgressPictures(const LineFont &font) : font_(font) {}

    std::shared_ptr<const VelmorBitmap> bitmapWithString(const QString &text) override
    {
        return font_.draw(text);
    }
    int cmodule() override { return 4; }
    void cmodule(int) override {}
    void sendBufferBitmap(const VelmorBitmap &bitmap) override
    {
        pictures.push_back(columnsOf(bitmap));
    }
    void sc_show() override {}
    void sc_clear() override {}

    std::vector<BoardColumns> pictures;

private:
    LineFont font_;
};

/// The pictures of the bar while so many sites are read, from the empty bar on.
inline std::vector<BoardColumns> progressPictures(int sites, const LineFont &font)
{
    ProgressPictures board(font);
    SimulatedClock clock{Clock::CalendarTime()};
    VelmorProgress progress(clock, &board);
    progress.setTitle(QStringLiteral("読込中"));
    progress.setMaxValue(sites);
    progress.startAnimation();
    for (int site = 1; site <= sites; ++site)
        progress.setDoubleValue(site);
    return board.pictures;
}

inline std::vector<BoardColumns> linePictures(const QStringList &lines, const LineFont &font)
{
    std::vector<BoardColumns> pictures;
    for (const QString &line : lines)
        pictures.push_back(columnsOf(*font.draw(line)));
    return pictures;
}

/// The pictures of the runs of one kind.
inline std::vector<BoardColumns> shownPictures(const std::vector<simboard::ColumnRun> &runs,
                                               bool scrolling)
{
    std::vector<BoardColumns> pictures;
    for (const simboard::ColumnRun &run : runs) {
        if (run.scrolling == scrolling)
            pictures.push_back(run.columns);
    }
    return pictures;
}

/// Says where two sequences of pictures differ first; empty when they are the same.
inline QString firstDifference(const std::vector<BoardColumns> &shown,
                               const std::vector<BoardColumns> &expected)
{
    for (std::size_t i = 0; i < std::min(shown.size(), expected.size()); ++i) {
        const BoardColumns &is = shown[i];
        const BoardColumns &wanted = expected[i];
        if (is == wanted)
            continue;
        const auto place = std::mismatch(is.begin(), is.end(), wanted.begin(), wanted.end());
        return QStringLiteral("picture %1 of %2: %3 columns instead of %4, the first other is %5")
            .arg(i + 1)
            .arg(expected.size())
            .arg(is.size())
            .arg(wanted.size())
            .arg(place.first - is.begin());
    }
    if (shown.size() == expected.size())
        return {};
    return QStringLiteral("%1 pictures instead of %2").arg(shown.size()).arg(expected.size());
}

} // namespace qovelmor
