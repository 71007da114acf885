// SPDX-License-Identifier: MIT
#include "messages/views/OnScreenBoardView.h"

#include "messages/DiodeBoard.h"
#include "messages/OnScreenBoard.h"
#include "platform/Localization.h"

#include <QLinearGradient>
#include <QPaintEvent>
#include <QPainter>
#include <QPointer>

#include <algorithm>
#include <cmath>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int bezel = 10;           // width of the housing round the field, in points
constexpr int margin = bezel + 6;   // from the field to the widget's edge
constexpr int preferredCell = 6;    // points of a dot in a window nobody has sized yet
constexpr int preferredWidth = 960; // a wide board starts with smaller dots instead
constexpr int smallestCell = 2;

} // namespace

OnScreenBoardView::OnScreenBoardView(OnScreenBoard &board, QWidget *parent)
    : RSSView(parent), board_(board)
{
    setObjectName(u"scrollView"_s);
    setAccessibleName(localized(u"LEDBoardView"_s));
    setAttribute(Qt::WA_OpaquePaintEvent);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    if (board_.ledImage()->isNull())
        board_.drawDiodeBoard();
    shownColumns_ = columns();
    board_.frameChanged().listen([view = QPointer(this)] {
        if (view)
            view->takeFrame();
    });
}

int OnScreenBoardView::columns() const
{
    const auto frame = board_.ledImage();
    return int(std::lround(frame->deviceIndependentSize().width() / DiodeGeometry::pointsPerDot));
}

QSize OnScreenBoardView::sizeForCell(int cell) const
{
    const int columnsOrOne = std::max(columns(), DiodeGeometry::columnsPerModule);
    return {columnsOrOne * cell + 2 * margin, DiodeGeometry::rows * cell + 2 * margin};
}

QSize OnScreenBoardView::sizeHint() const
{
    const int fitting = preferredWidth / std::max(columns(), 1);
    return sizeForCell(std::clamp(fitting, smallestCell, preferredCell));
}

QSize OnScreenBoardView::minimumSizeHint() const
{
    return sizeForCell(1).boundedTo({preferredWidth, preferredWidth});
}

// The widest dot with which the whole board fits.
int OnScreenBoardView::cellInDevicePixels() const
{
    const double ratio = devicePixelRatioF();
    const double across = (width() - 2 * margin) * ratio / std::max(columns(), 1);
    const double down = (height() - 2 * margin) * ratio / DiodeGeometry::rows;
    return std::max(1, int(std::floor(std::min(across, down))));
}

QRectF OnScreenBoardView::fieldRect() const
{
    const double ratio = devicePixelRatioF();
    const int cell = cellInDevicePixels();
    const QSizeF field(columns() * cell / ratio, DiodeGeometry::rows * cell / ratio);
    const auto wholePixel = [=](double points) { return std::floor(points * ratio) / ratio; };
    return {QPointF(wholePixel((width() - field.width()) / 2),
                    wholePixel((height() - field.height()) / 2)),
            field};
}

// A new picture of a board of the same size changes nothing but the field.
void OnScreenBoardView::takeFrame()
{
    if (columns() == shownColumns_) {
        update(fieldRect().toAlignedRect());
        return;
    }
    shownColumns_ = columns();
    updateGeometry();
    fitBoard();
    update();
}

// Asks for pictures with as many pixels as the screen will show. An idle board is drawn anew at
// once; a running line does so by itself.
void OnScreenBoardView::fitBoard()
{
    const double ratio = double(cellInDevicePixels()) / DiodeGeometry::pointsPerDot;
    if (ratio == board_.pixelsPerPoint())
        return;
    board_.setPixelsPerPoint(ratio);
    if (board_.execShowString() == 0)
        board_.drawDiodeBoard();
}

void OnScreenBoardView::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    const QRectF field = fieldRect();
    if (!field.toAlignedRect().contains(event->rect()))
        paintHousing(painter, field);
    const auto frame = board_.ledImage();
    if (frame->isNull())
        return;
    // Both rectangles are of the same size in pixels except just after a resize.
    painter.setRenderHint(QPainter::SmoothPixmapTransform,
                          frame->size() != (field.size() * devicePixelRatioF()).toSize());
    painter.drawImage(field, *frame, QRectF(frame->rect()));
}

void OnScreenBoardView::paintHousing(QPainter &painter, const QRectF &field) const
{
    painter.fillRect(rect(), QColor(0x14, 0x15, 0x17));
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF housing = field.adjusted(-bezel, -bezel, bezel, bezel);
    QLinearGradient metal(housing.topLeft(), housing.bottomLeft());
    metal.setColorAt(0, QColor(0x4a, 0x4d, 0x52));
    metal.setColorAt(0.08, QColor(0x33, 0x35, 0x39));
    metal.setColorAt(1, QColor(0x22, 0x24, 0x27));
    painter.setPen(QColor(0x5a, 0x5e, 0x64));
    painter.setBrush(metal);
    painter.drawRoundedRect(housing, 6, 6);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::black);
    painter.drawRoundedRect(field.adjusted(-2, -2, 2, 2), 2, 2);
    painter.setRenderHint(QPainter::Antialiasing, false);
}

void OnScreenBoardView::resizeEvent(QResizeEvent *event)
{
    RSSView::resizeEvent(event);
    fitBoard();
    update();
}

// The density of the screen is known only now.
void OnScreenBoardView::showEvent(QShowEvent *event)
{
    RSSView::showEvent(event);
    fitBoard();
}

} // namespace qovelmor
