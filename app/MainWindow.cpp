// SPDX-License-Identifier: MIT
#include "app/MainWindow.h"

#include "app/StartupWindow.h"
#include "app/VelmorRSS.h"
#include "feeds/views/FeedListView.h"
#include "messages/MessageList.h"
#include "messages/views/LEDWindow.h"
#include "messages/views/MessageListView.h"
#include "platform/Localization.h"
#include "platform/SystemLog.h"
#include "platform/UserDefaults.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QSplitter>
#include <QStyle>
#include <QTabWidget>
#include <QToolButton>
#include <QVBoxLayout>

#include <utility>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

const QString geometryKey = u"MainWindowGeometry"_s;
const QString drawerHeightKey = u"DescriptionDrawerHeight"_s;
constexpr int defaultDrawerHeight = 110;
constexpr QSize defaultSize{860, 600};
constexpr QSize smallestSize{480, 320};

} // namespace

MainWindow::MainWindow(Controllers controllers, FeedListView *feedView,
                       MessageListView *messageView, LEDWindow &ledWindow)
    : control_(controllers.control)
    , msgList_(controllers.msgList)
    , defaults_(controllers.defaults)
    , feedView_(feedView)
    , messageView_(messageView)
    , ledWindow_(ledWindow)
{
    setObjectName(u"mainWindow"_s);
    setWindowTitle(u"QoVelmorRSS"_s);
    setMinimumSize(smallestSize);

    mainTab_ = new QTabWidget;
    mainTab_->setObjectName(u"mainTab"_s);
    mainTab_->setDocumentMode(true);
    feedView_->setProperty("identifier", tab::list);
    messageView_->setProperty("identifier", tab::message);
    mainTab_->addTab(feedView_, localized(u"TabList"_s));
    mainTab_->addTab(messageView_, localized(u"TabMessage"_s));

    descriptionDrawer_ = new QPlainTextEdit;
    descriptionDrawer_->setObjectName(u"descriptionDrawer"_s);
    descriptionDrawer_->setAccessibleName(localized(u"DescriptionDrawer"_s));
    descriptionDrawer_->setReadOnly(true);
    descriptionDrawer_->setTabChangesFocus(true);
    descriptionDrawer_->hide();

    splitter_ = new QSplitter(Qt::Vertical);
    splitter_->addWidget(mainTab_);
    splitter_->addWidget(descriptionDrawer_);
    splitter_->setStretchFactor(0, 1);
    splitter_->setChildrenCollapsible(false);

    auto *content = new QWidget;
    auto *layout = new QVBoxLayout(content);
    layout->addWidget(createCommandRow());
    layout->addWidget(splitter_, 1);
    layout->addWidget(createStatusRow());
    setCentralWidget(content);
    createActions();
    restoreSizes();

    connect(mainTab_, &QTabWidget::currentChanged, this,
            [this] { control_.tabViewDidSelectTabViewItem(selectedTab()); });
    connect(splitter_, &QSplitter::splitterMoved, this, [this] { storeSizes(); });
    connect(&ledWindow_, &LEDWindow::closeRequested, this, [this] { control_.actDrawerButton(); });
    connect(feedView_, &FeedListView::statusChanged, this, &MainWindow::showNotice);
    connect(feedView_, &FeedListView::addressBeingFetched, this, &MainWindow::showFetching);
    msgList_.changeNotice().listen([this] { showPresentation(); });
}

MainWindow::~MainWindow() = default;

// Building.
// -----------------------------------------------------------------------------------------

QWidget *MainWindow::createCommandRow()
{
    const auto button = [this](const QString &name, const QString &text,
                               QStyle::StandardPixmap icon) {
        auto *made = new QPushButton(style()->standardIcon(icon), text);
        made->setObjectName(name);
        return made;
    };
    startDispButton_ =
        button(u"startDispButton"_s, localized(u"StartDisplayButton"_s), QStyle::SP_MediaPlay);
    stopDispButton_ =
        button(u"stopDispButton"_s, localized(u"StopDisplayButton"_s), QStyle::SP_MediaStop);
    getRSSButton_ =
        button(u"getRSSButton"_s, localized(u"ReadFeedsButton"_s), QStyle::SP_BrowserReload);
    drawerButton_ = createToggle(u"drawerButton"_s, localized(u"LEDWindowButton"_s));
    descriptionButton_ = createToggle(u"descriptionButton"_s, localized(u"DescriptionButton"_s));

    connect(startDispButton_, &QPushButton::clicked, this, [this] { control_.actStartDisp(); });
    connect(stopDispButton_, &QPushButton::clicked, this, [this] { control_.actStopDisp(); });
    connect(getRSSButton_, &QPushButton::clicked, this, [this] { control_.actGetRSS(); });
    connect(drawerButton_, &QToolButton::clicked, this, [this] {
        drawerButton_->setChecked(isLEDWindowVisible()); // the controller decides
        control_.actDrawerButton();
    });
    connect(descriptionButton_, &QToolButton::clicked, this, [this] {
        descriptionButton_->setChecked(!descriptionButton_->isChecked());
        control_.actDescriptionDrawer();
    });

    auto *row = new QWidget;
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(startDispButton_);
    layout->addWidget(stopDispButton_);
    layout->addWidget(getRSSButton_);
    layout->addStretch(1);
    layout->addWidget(drawerButton_);
    layout->addWidget(descriptionButton_);
    return row;
}

QToolButton *MainWindow::createToggle(const QString &name, const QString &text)
{
    auto *toggle = new QToolButton;
    toggle->setObjectName(name);
    toggle->setText(text);
    toggle->setCheckable(true);
    toggle->setFocusPolicy(Qt::StrongFocus);
    return toggle;
}

QWidget *MainWindow::createStatusRow()
{
    statusText_ = new QLabel;
    statusText_->setObjectName(u"statusText"_s);
    statusText_->setTextFormat(Qt::PlainText);
    statusText_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    progressIndi_ = new QProgressBar;
    progressIndi_->setObjectName(u"progressIndi"_s);
    progressIndi_->setAccessibleName(localized(u"ReadProgress"_s));
    progressIndi_->setFormat(u"%v/%m"_s);
    progressIndi_->setFixedWidth(160);
    progressIndi_->hide();
    messageNumberText_ = new QLabel;
    messageNumberText_->setObjectName(u"messageNumberText"_s);
    messageNumberText_->setTextFormat(Qt::PlainText);

    auto *row = new QWidget;
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(statusText_, 1);
    layout->addWidget(progressIndi_);
    layout->addWidget(messageNumberText_);
    row->setMinimumHeight(progressIndi_->sizeHint().height());
    return row;
}

void MainWindow::createActions()
{
    const auto add = [this](QMenu *menu, const QString &name, const QString &text,
                            const QKeySequence &keys, void (VelmorRSS::*command)()) {
        QAction *action = menu->addAction(text);
        action->setObjectName(name);
        action->setShortcut(keys);
        connect(action, &QAction::triggered, this, [this, command] { (control_.*command)(); });
        return action;
    };
    QMenu *file = menuBar()->addMenu(localized(u"MenuFile"_s));
    add(file, u"actGetRSS"_s, localized(u"MenuReadFeeds"_s), QKeySequence::Refresh,
        &VelmorRSS::actGetRSS);
    file->addSeparator();
    file->addActions(feedView_->fileActions());
    file->addSeparator();
    add(file, u"actQuit"_s, localized(u"MenuQuit"_s), QKeySequence::Quit, &VelmorRSS::actQuit);

    QMenu *display = menuBar()->addMenu(localized(u"MenuDisplay"_s));
    actStartDisp_ = add(display, u"actStartDisp"_s, localized(u"MenuStartDisplay"_s),
                        QKeySequence(Qt::CTRL | Qt::Key_D), &VelmorRSS::actStartDisp);
    actStopDisp_ = add(display, u"actStopDisp"_s, localized(u"MenuStopDisplay"_s),
                       QKeySequence(Qt::CTRL | Qt::Key_Period), &VelmorRSS::actStopDisp);
    display->addSeparator();
    add(display, u"actOpenLEDWindow"_s, localized(u"MenuLEDWindow"_s),
        QKeySequence(Qt::CTRL | Qt::Key_L), &VelmorRSS::actOpenLEDWindow);
}

// What the controller asks.
// -------------------------------------------------------------------------

void MainWindow::showStartupWindow()
{
    startupWindow_ = new StartupWindow;
    startupWindow_->setAttribute(Qt::WA_DeleteOnClose);
    startupWindow_->show();
}

void MainWindow::closeStartupWindow()
{
    if (startupWindow_ != nullptr)
        startupWindow_->close();
    startupWindow_ = nullptr;
}

void MainWindow::showMainWindow()
{
    show();
    raise();
    activateWindow();
}

void MainWindow::hideMainWindow()
{
    hide();
}

bool MainWindow::isMainWindowVisible() const
{
    return isVisible();
}

void MainWindow::selectTab(const QString &identifier)
{
    for (int index = 0; index < mainTab_->count(); ++index) {
        if (mainTab_->widget(index)->property("identifier").toString() == identifier)
            mainTab_->setCurrentIndex(index);
    }
}

QString MainWindow::selectedTab() const
{
    return mainTab_->currentWidget()->property("identifier").toString();
}

void MainWindow::clearMessageSelection()
{
    messageView_->clearSelection();
}

void MainWindow::scrollMessagesToTop()
{
    messageView_->scrollToRow(0);
}

void MainWindow::createMenus() {}

void MainWindow::showLEDWindow()
{
    ledWindow_.show();
    ledWindow_.raise();
}

void MainWindow::closeLEDWindow()
{
    ledWindow_.hide();
}

bool MainWindow::isLEDWindowVisible() const
{
    return ledWindow_.isVisible();
}

void MainWindow::setDrawerButton(bool on)
{
    drawerButton_->setChecked(on);
}

bool MainWindow::descriptionButton() const
{
    return descriptionButton_->isChecked();
}

void MainWindow::setDescriptionButton(bool on)
{
    descriptionButton_->setChecked(on);
}

void MainWindow::setDescriptionButtonEnabled(bool enabled)
{
    descriptionButton_->setEnabled(enabled);
}

bool MainWindow::isDescriptionDrawerOpen() const
{
    return !descriptionDrawer_->isHidden();
}

void MainWindow::setDescriptionDrawerOpen(bool open)
{
    if (open && descriptionDrawer_->isHidden()) {
        const qint64 stored = defaults_.integerForKey(drawerHeightKey);
        const int height =
            stored > 0 ? static_cast<int>(std::min<qint64>(stored, 2000)) : defaultDrawerHeight;
        descriptionDrawer_->show();
        splitter_->setSizes({splitter_->height() - height, height});
    } else {
        descriptionDrawer_->setVisible(open);
    }
}

bool MainWindow::isLedDrawerOpen() const
{
    return ledWindow_.isDrawerOpen();
}

void MainWindow::setLedDrawerOpen(bool open)
{
    ledWindow_.setDrawerOpen(open);
}

void MainWindow::updateControls()
{
    startDispButton_->setEnabled(control_.canStartDisp());
    actStartDisp_->setEnabled(control_.canStartDisp());
    stopDispButton_->setEnabled(control_.canStopDisp());
    actStopDisp_->setEnabled(control_.canStopDisp());
    messageView_->renew();
}

void MainWindow::showAlert(const QString &title, const QString &text, const QString &button,
                           std::function<void()> answered)
{
    auto *alert = new QMessageBox(QMessageBox::Warning, title, title, QMessageBox::NoButton, this);
    alert->setObjectName(u"alert"_s);
    alert->setTextFormat(Qt::PlainText);
    alert->setInformativeText(text);
    alert->addButton(button, QMessageBox::AcceptRole);
    alert->setAttribute(Qt::WA_DeleteOnClose);
    if (answered)
        connect(alert, &QDialog::finished, this, [answered = std::move(answered)] { answered(); });
    alert->open();
}

void MainWindow::terminate()
{
    storeSizes();
    for (QWidget *window : QApplication::topLevelWidgets())
        window->hide();
    QCoreApplication::quit();
}

void MainWindow::showNotice(const QString &text)
{
    notice_ = text;
    showPresentation();
}

// The fetch keeps the main thread: what it waits for is painted before it begins.
void MainWindow::showFetching(const QString &sentence)
{
    if (startupWindow_ != nullptr)
        startupWindow_->showAddress(sentence);
    showNotice(sentence);
    statusText_->repaint();
}

// What the window shows.
// ----------------------------------------------------------------------------

void MainWindow::showPresentation()
{
    const auto shown = msgList_.presentation();
    if (!shown->statusText.isEmpty())
        notice_.clear();
    statusText_->setText(shown->statusText.isEmpty() ? notice_ : shown->statusText);
    progressIndi_->setVisible(shown->progressRunning);
    progressIndi_->setMaximum(std::max(shown->progressMaximum, 1));
    progressIndi_->setValue(shown->progressValue);
    messageNumberText_->setText(shown->messageNumber);
    if (descriptionDrawer_->toPlainText() != shown->description)
        descriptionDrawer_->setPlainText(shown->description);
    ledWindow_.setDescription(shown->description);
    updateControls();
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    event->ignore();
    control_.actQuit();
}

// For those who measure the start: QT_LOGGING_RULES="qovelmorrss.app.debug=true" shows the line.
void MainWindow::paintEvent(QPaintEvent *event)
{
    QMainWindow::paintEvent(event);
    if (!std::exchange(isPainted_, true))
        qCDebug(logApp) << "main window shown";
}

void MainWindow::restoreSizes()
{
    resize(defaultSize);
    const QByteArray geometry = defaults_.dataForKey(geometryKey);
    if (!geometry.isEmpty())
        restoreGeometry(geometry);
}

void MainWindow::storeSizes()
{
    defaults_.setData(saveGeometry(), geometryKey);
    if (descriptionDrawer_->isVisible())
        defaults_.setInteger(descriptionDrawer_->height(), drawerHeightKey);
    defaults_.synchronize();
}

} // namespace qovelmor
