// SPDX-License-Identifier: MIT
#pragma once

#include "tools/qovelmorboard/LedPainter.h"

#include <QWidget>

namespace qovelmor::simboard {

/// The board in a window.
class BoardWindow : public QWidget
{
    Q_OBJECT

public:
    BoardWindow();

    void setPicture(const BoardPicture &picture);
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    BoardPicture picture_;
    LedPainter painter_{7};
    QImage image_;
};

} // namespace qovelmor::simboard
