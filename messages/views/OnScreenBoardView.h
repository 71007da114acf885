// SPDX-License-Identifier: MIT
#pragma once

#include "messages/views/RSSView.h"

namespace qovelmor {

class OnScreenBoard;

/// Shows the on-screen board as a sign in its housing. The picture is as large as the widget allows
/// with every dot on whole pixels of the screen, so its dots are all alike and sharp.
class OnScreenBoardView final : public RSSView
{
    Q_OBJECT

public:
    /// The board must outlive the view.
    explicit OnScreenBoardView(OnScreenBoard &board, QWidget *parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    /// Where the dots are, in the widget's coordinates.
    QRectF fieldRect() const;

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    int columns() const;
    int cellInDevicePixels() const;
    QSize sizeForCell(int cell) const;
    void takeFrame();
    void fitBoard();
    void paintHousing(QPainter &painter, const QRectF &field) const;

    OnScreenBoard &board_;
    int shownColumns_ = 0;
};

} // namespace qovelmor
