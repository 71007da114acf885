// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace qovelmor {

class Clock;
class ProgressBoard;

/// A progress bar on the board: a title, then a bar that fills the rest of the board's width. The
/// filled part is followed by the outline of the empty part.
///
/// Each step is sent at once and holds its caller back for half a second, so that it stays visible:
/// it is meant for the thread that does the long task.
class VelmorProgress
{
public:
    /// Clock and board must outlive the object. Without a board nothing is drawn or waited for.
    explicit VelmorProgress(Clock &clock, ProgressBoard *system = nullptr);

    void setSystem(ProgressBoard *system) { system_ = system; }
    const QString &title() const { return title_; }
    void setTitle(const QString &title) { title_ = title; }
    double maxValue() const { return maxValue_; }
    void setMaxValue(double value) { maxValue_ = value; }

    /// Clears the board and shows the empty bar.
    void startAnimation();
    /// Shows the bar for this value, from 0 to maxValue(). A board that does not know its width
    /// counts as 4 modules, and is told so. A title wider than the board is cut, without a bar.
    void setDoubleValue(double value);
    void stopAnimation();

private:
    void show(double value);

    Clock &clock_;
    ProgressBoard *system_;
    QString title_;
    double maxValue_ = 100.0;
};

} // namespace qovelmor
