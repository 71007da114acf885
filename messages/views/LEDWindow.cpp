// SPDX-License-Identifier: MIT
#include "messages/views/LEDWindow.h"

#include "messages/OnScreenBoard.h"
#include "messages/views/DescriptionDrawer.h"
#include "messages/views/OnScreenBoardView.h"
#include "messages/views/WindowPlace.h"
#include "platform/Localization.h"
#include "platform/UserDefaults.h"
#include "platform/views/FittedPlace.h"

#include <QAction>
#include <QCloseEvent>
#include <QScreen>
#include <QSplitter>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

const auto geometryKey = u"LEDWindowGeometry"_s;
const auto drawerHeightKey = u"LEDWindowDrawerHeight"_s;
const auto drawerOpenKey = u"LEDWindowDrawerOpen"_s; // when the place was stored
constexpr int firstDrawerHeight = 110;
constexpr int lowestDrawer = 48;
constexpr int highestDrawer = 2000;
constexpr QSize frameAllowance{8, 40};
constexpr auto settleTime = 700ms; // after the last move, so that a drag is stored once

} // namespace

LEDWindow::LEDWindow(OnScreenBoard &board, UserDefaults &defaults, QWidget *parent)
    : QWidget(parent, Qt::Window)
    , board_(board)
    , defaults_(defaults)
    , boardView_(new OnScreenBoardView(board))
    , ledDrawer_(new DescriptionDrawer(u"ledDrawer"_s))
    , splitter_(new QSplitter(Qt::Vertical))
    , drawerHeight_(firstDrawerHeight)
{
    setObjectName(u"ledWindow"_s);
    setWindowTitle(localized(u"LEDWindowTitle"_s));
    setAttribute(Qt::WA_ShowWithoutActivating); // the keys stay with whoever opened it

    splitter_->addWidget(boardView_);
    splitter_->addWidget(ledDrawer_);
    splitter_->setChildrenCollapsible(false);
    splitter_->setStretchFactor(0, 1);
    splitter_->setStretchFactor(1, 0);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(splitter_);

    connect(boardView_, &OnScreenBoardView::doubleClicked, this, &LEDWindow::boardDoubleClicked);
    connect(splitter_, &QSplitter::splitterMoved, this, &LEDWindow::storePlaceLater);
    addItem(u"actOpenMessageOnDisplay"_s, u"LEDWindowOpenItem"_s, {Qt::Key_Return},
            &LEDWindow::boardDoubleClicked);
    addItem(u"actCloseLEDWindow"_s, u"MenuCloseLEDWindow"_s,
            {Qt::CTRL | Qt::Key_W, Qt::CTRL | Qt::Key_L}, &LEDWindow::closeRequested);
    boardView_->addActions(actions());
    boardView_->setContextMenuPolicy(Qt::ActionsContextMenu);
    settled_.setSingleShot(true);
    settled_.setInterval(settleTime);
    connect(&settled_, &QTimer::timeout, this, &LEDWindow::storePlace);
}

LEDWindow::~LEDWindow()
{
    if (isVisible())
        storePlace();
}

// What the mouse does on the sign can be done by keys and by its menu too.
void LEDWindow::addItem(const QString &name, const QString &textKey,
                        const QList<QKeySequence> &keys, void (LEDWindow::*request)())
{
    auto *item = new QAction(localized(textKey), this);
    item->setObjectName(name);
    item->setShortcuts(keys);
    connect(item, &QAction::triggered, this, request);
    addAction(item);
}

bool LEDWindow::isDrawerOpen() const
{
    return !ledDrawer_->isHidden();
}

void LEDWindow::setDrawerOpen(bool open)
{
    if (open == isDrawerOpen())
        return;
    if (!open)
        noteDrawerHeight();
    else if (isPlaced_)
        drawerHeight_ = std::min(drawerHeight_, roomBelow());
    const int boardHeight = height();
    ledDrawer_->setVisible(open);
    if (!isMaximized() && !isFullScreen())
        resize(width(), height() + (open ? heightOfOpenDrawer() : -heightOfOpenDrawer()));
    if (open)
        splitter_->setSizes({boardHeight, drawerHeight_});
}

// A panel that reached below the screen would make the window manager push the sign up, under
// whatever stands there.
int LEDWindow::roomBelow() const
{
    const int edge = screen()->availableGeometry().bottom() - frameAllowance.width();
    return std::max(lowestDrawer, edge - geometry().bottom() - splitter_->handleWidth());
}

int LEDWindow::heightOfOpenDrawer() const
{
    return drawerHeight_ + splitter_->handleWidth();
}

void LEDWindow::noteDrawerHeight()
{
    if (isVisible() && isDrawerOpen()) // before it is shown, nothing has been laid out
        drawerHeight_ = ledDrawer_->height();
}

void LEDWindow::setDescription(const QString &text)
{
    ledDrawer_->showDescription(text);
}

void LEDWindow::closeEvent(QCloseEvent *event)
{
    if (!event->spontaneous()) {
        event->accept();
        return;
    }
    event->ignore();
    Q_EMIT closeRequested();
}

// The place is restored only now: how wide the board is stands in the settings, which are read
// after the windows were made.
void LEDWindow::showEvent(QShowEvent *event)
{
    if (!event->spontaneous() && !std::exchange(isPlaced_, true)) {
        if (board_.execShowString() == 0)
            board_.drawDiodeBoard();
        const bool isOpen = isDrawerOpen();
        setDrawerOpen(false);
        restorePlace();
        setDrawerOpen(isOpen);
    }
    QWidget::showEvent(event);
}

void LEDWindow::hideEvent(QHideEvent *event)
{
    if (!event->spontaneous())
        storePlace();
    QWidget::hideEvent(event);
}

void LEDWindow::moveEvent(QMoveEvent *event)
{
    QWidget::moveEvent(event);
    storePlaceLater();
}

void LEDWindow::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    storePlaceLater();
}

void LEDWindow::showBeside(const QRect &other, const QRect &screen)
{
    other_ = other;
    screen_ = screen;
    show();
    raise();
}

// The window comes back with its panel shut, whoever opens it makes it higher again.
void LEDWindow::restorePlace()
{
    if (const auto height = defaults_.integerForKey(drawerHeightKey); height >= lowestDrawer)
        drawerHeight_ = int(std::min<qint64>(height, highestDrawer));
    if (!restoreFitted(*this, defaults_.dataForKey(geometryKey)))
        takeFirstPlace();
    else if (defaults_.boolForKey(drawerOpenKey) && !isMaximized() && !isFullScreen())
        resize(width(), height() - heightOfOpenDrawer());
}

// How much a frame takes is not known before a window has been shown for a while.
void LEDWindow::takeFirstPlace()
{
    resize(boardView_->sizeHint());
    if (!other_.isEmpty())
        move(placeBeside(other_, size() + frameAllowance, screen_));
}

void LEDWindow::storePlaceLater()
{
    if (isVisible())
        settled_.start();
}

void LEDWindow::storePlace()
{
    settled_.stop();
    noteDrawerHeight();
    defaults_.setBool(isDrawerOpen(), drawerOpenKey);
    defaults_.setInteger(drawerHeight_, drawerHeightKey);
    defaults_.setData(saveGeometry(), geometryKey);
    defaults_.synchronize();
}

} // namespace qovelmor
