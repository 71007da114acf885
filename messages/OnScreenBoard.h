// SPDX-License-Identifier: MIT
#pragma once

#include "messages/ScrollRun.h"
#include "messages/needs/LineScreen.h"
#include "platform/ChangeNotice.h"

#include <QColor>
#include <QImage>
#include <QString>

#include <atomic>
#include <memory>
#include <mutex>

namespace qovelmor {

class MessageSettings;

/// The imitation of the LED sign: a picture of 128 by 64 points for each module, through which one
/// line of text at a time scrolls from right to left. Drawing happens on a thread of its own; each
/// finished picture is handed over whole, so that whoever paints it never sees half of one.
class OnScreenBoard final : public LineScreen
{
public:
    using Frame = std::shared_ptr<const QImage>;

    OnScreenBoard(const MessageSettings &settings, Clock &clock, MainThread &mainThread);
    /// Stops the running line and joins its thread.
    ~OnScreenBoard() override;

    /// Starts a line; see ScrollRun::show(). It takes the number of modules, the colour, the font
    /// and the expansion as they are when it starts. Any thread.
    void showString(const QString &text) override;
    /// Ends the running line within one step of it and leaves the board empty. Any thread.
    void stopShowString() override { run_.stop(); }
    /// 0 nothing runs, 1 a line runs, 2 a stop was asked for.
    int execShowString() const { return run_.state(); }
    bool isShowing() const override { return run_.state() == 1; }

    /// Draws the board with every dot off.
    void drawDiodeBoard();

    // How the lines that start from now on look. Any thread.
    // ---------------------------------------

    QString fontName() const;
    void setFontName(const QString &name) override;
    float expansion() const { return expansion_; }
    /// Logarithmic: the text becomes e to this power times as wide.
    void setExpansion(float expansion) override { expansion_ = expansion; }

    /// How many pixels of the screen the view has for one point; below 1 for a very wide board. The
    /// next picture that is drawn has them.
    double pixelsPerPoint() const { return pixelsPerPoint_; }
    void setPixelsPerPoint(double ratio) { pixelsPerPoint_ = ratio; }

    /// The picture now; never null, but holding a null image while the board has no modules. Its
    /// size divided by its device pixel ratio is the board's size in points. Any thread.
    Frame ledImage() const;
    /// Called on the main thread after the picture has changed.
    ChangeNotice &frameChanged() { return frameChanged_; }

private:
    class Line;

    void publish(QImage picture);

    const MessageSettings &settings_;
    ChangeNotice frameChanged_;
    std::atomic<float> expansion_ = 0;
    std::atomic<double> pixelsPerPoint_ = 1;
    mutable std::mutex mutex_; ///< guards the two below; nothing is called under it
    QString fontName_;
    Frame ledImage_;
    ScrollRun run_; ///< last: its thread uses everything above
};

} // namespace qovelmor
