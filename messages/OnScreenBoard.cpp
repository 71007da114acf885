// SPDX-License-Identifier: MIT
#include "messages/OnScreenBoard.h"

#include "board/BoardLink.h"
#include "messages/DiodeBoard.h"
#include "messages/LineStrip.h"
#include "messages/needs/MessageSettings.h"
#include "render/FontSettings.h"

#include <optional>
#include <utility>

namespace qovelmor {

namespace {

constexpr int defaultWait = 10;

// A board that has no wait (0, also when there is no board) counts 10; one that does not answer
// (−1) is not waited for.
int waitInSteps(int boardWait)
{
    return boardWait == 0 ? defaultWait : std::max(boardWait, 0);
}

} // namespace

/// One line on its way across the board. Its look is taken once; only the density follows the
/// window at once, because a long line would else stay blurred for minutes.
class OnScreenBoard::Line final : public ScrollStage
{
public:
    Line(OnScreenBoard &board, QString text)
        : board_(board)
        , text_(std::move(text))
        , style_{screenBoardFont(board.fontName()), board.settings_.lightLEDColor(),
                 board.expansion()}
        , modules_(board.settings_.moduleCount())
    {
        takeDensity();
    }

    int scrollSpeed() const override { return board_.settings_.scrollSpeed(); }
    int waitBeforeInterval() override
    {
        return waitInSteps(board_.settings_.ledSystem().waitBefore());
    }
    int waitAfterInterval() override
    {
        return waitInSteps(board_.settings_.ledSystem().waitAfter());
    }

    bool drawStep(int offset) override
    {
        takeDensity();
        const int left = geometry_.widthInPoints() - offset;
        if (!strip_->isWiderThan(-left))
            return false;
        QImage picture = empty_.copy();
        if (!picture.isNull())
            strip_->copyTo(picture, left / DiodeGeometry::pointsPerDot);
        board_.publish(std::move(picture));
        return true;
    }

    void drawEmpty() override { board_.publish(empty_.copy()); }

private:
    void takeDensity()
    {
        const auto geometry = DiodeGeometry::of(modules_, board_.pixelsPerPoint());
        if (strip_ && geometry == geometry_)
            return;
        geometry_ = geometry;
        empty_ = emptyDiodeBoard(geometry);
        strip_.emplace(text_, style_, geometry.cell);
    }

    OnScreenBoard &board_;
    const QString text_;
    const LineStyle style_;
    const int modules_;
    DiodeGeometry geometry_;
    QImage empty_; ///< never handed out itself: pictures that cross threads share nothing
    std::optional<LineStrip> strip_;
};

OnScreenBoard::OnScreenBoard(const MessageSettings &settings, Clock &clock, MainThread &mainThread)
    : settings_(settings)
    , frameChanged_(mainThread)
    , fontName_(defaultFontName())
    , ledImage_(std::make_shared<const QImage>())
    , run_(clock)
{}

OnScreenBoard::~OnScreenBoard() = default;

void OnScreenBoard::showString(const QString &text)
{
    run_.show([this, text] { return std::make_unique<Line>(*this, text); });
}

void OnScreenBoard::drawDiodeBoard()
{
    publish(emptyDiodeBoard(DiodeGeometry::of(settings_.moduleCount(), pixelsPerPoint())));
}

QString OnScreenBoard::fontName() const
{
    const std::lock_guard lock(mutex_);
    return fontName_;
}

void OnScreenBoard::setFontName(const QString &name)
{
    const std::lock_guard lock(mutex_);
    fontName_ = name;
}

OnScreenBoard::Frame OnScreenBoard::ledImage() const
{
    const std::lock_guard lock(mutex_);
    return ledImage_;
}

void OnScreenBoard::publish(QImage picture)
{
    auto frame = std::make_shared<const QImage>(std::move(picture));
    {
        const std::lock_guard lock(mutex_);
        ledImage_.swap(frame); // the picture before is let go outside the lock
    }
    frameChanged_.changed();
}

} // namespace qovelmor
