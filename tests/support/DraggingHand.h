// SPDX-License-Identifier: MIT
#pragma once

#include <QTest>
#include <QTimer>
#include <QWidget>
#include <QWindow>

namespace qovelmor {

/// A hand that presses, moves in small steps and lets go. The drag runs an event loop of its own
/// inside one of the moves, so each step is on its way before the one in front of it is done.
class DraggingHand
{
public:
    void drag(QWidget &source, QPoint from, QWidget &target, QPoint to)
    {
        window_ = source.window()->windowHandle();
        start_ = source.mapTo(source.window(), from);
        end_ = source.window()->mapFromGlobal(target.mapToGlobal(to));
        QTest::mousePress(window_, Qt::LeftButton, {}, start_);
        step(1);
        QTRY_VERIFY(isDone_);
    }

private:
    void step(int number)
    {
        // The last steps stay where they are until the server has said what is there.
        if (number < moves + 5)
            QTimer::singleShot(20, [this, number] { step(number + 1); });
        if (number <= moves) {
            QTest::mouseMove(window_, start_ + (end_ - start_) * number / moves);
        } else if (number == moves + 5) {
            isDone_ = true;
            QTest::mouseRelease(window_, Qt::LeftButton, {}, end_);
        }
    }

    static constexpr int moves = 12;
    QWindow *window_ = nullptr;
    QPoint start_;
    QPoint end_;
    bool isDone_ = false;
};

} // namespace qovelmor
