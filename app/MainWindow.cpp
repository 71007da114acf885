// SPDX-License-Identifier: MIT
#include "app/MainWindow.h"

#include "app/CommandRow.h"
#include "app/MainMenu.h"
#include "app/StartupWindow.h"
#include "app/StatusRow.h"
#include "app/VelmorRSS.h"
#include "feeds/views/FeedListView.h"
#include "messages/MessageList.h"
#include "messages/views/DescriptionDrawer.h"
#include "messages/views/LEDWindow.h"
#include "messages/views/MessageListView.h"
#include "platform/Localization.h"
#include "platform/SystemLog.h"
#include "platform/UserDefaults.h"
#include "platform/views/Alert.h"
#include "platform/views/FittedPlace.h"
#include "platform/views/ListTable.h"
#include "settings/Setup.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QMenuBar>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QSplitter>
#include <QTabWidget>
#include <QVBoxLayout>

#include <utility>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

const QString geometryKey = u"MainWindowGeometry"_s;
constexpr QSize firstSize{860, 600};
constexpr QSize smallestSize{480, 320};
constexpr int roomForBoard = 232; // its window with the frames of both
constexpr auto problemInterval = 2s;

// In the middle of the room that the window of the on-screen board leaves above it.
QRect firstPlace(QRect screen)
{
    screen.setHeight(screen.height() - roomForBoard);
    QRect place(QPoint(), firstSize.boundedTo(screen.size()).expandedTo(smallestSize));
    place.moveCenter(screen.center());
    place.moveTop(std::max(screen.top(), place.top()));
    return place;
}

} // namespace

MainWindow::MainWindow(Controllers controllers, FeedListView *feedView,
                       MessageListView *messageView, LEDWindow &ledWindow)
    : parts_(controllers)
    , feedView_(feedView)
    , messageView_(messageView)
    , ledWindow_(ledWindow)
    , menu_(new MainMenu(*menuBar(), parts_.control, parts_.msgList))
    , commandRow_(new CommandRow(parts_.control))
    , mainTab_(new QTabWidget)
    , descriptionDrawer_(new DescriptionDrawer(u"descriptionDrawer"_s))
    , splitter_(new QSplitter(Qt::Vertical))
    , statusRow_(new StatusRow)
{
    setObjectName(u"mainWindow"_s);
    setWindowTitle(u"QoVelmorRSS"_s);
    setMinimumSize(smallestSize);
    mainTab_->setObjectName(u"mainTab"_s);
    mainTab_->setAccessibleName(localized(u"MainTab"_s));
    mainTab_->setDocumentMode(true);
    addTab(feedView_, tab::list, u"TabList"_s, u"MenuShowTabList"_s);
    menu_->addFeedItems(feedView_->fileActions());
    addTab(messageView_, tab::message, u"TabMessage"_s, u"MenuShowTabMessage"_s);
    layOut();
    connectParts();
    restoreSizes();
}

MainWindow::~MainWindow() = default;

// Building. ---------------------------------------------------------------------------------------

void MainWindow::layOut()
{
    splitter_->addWidget(mainTab_);
    splitter_->addWidget(descriptionDrawer_);
    splitter_->setStretchFactor(0, 1);
    splitter_->setChildrenCollapsible(false);

    auto *content = new QWidget;
    auto *layout = new QVBoxLayout(content);
    layout->addWidget(commandRow_);
    layout->addWidget(splitter_, 1);
    layout->addWidget(statusRow_);
    setCentralWidget(content);
}

void MainWindow::connectParts()
{
    connect(mainTab_, &QTabWidget::currentChanged, this, [this] {
        parts_.control.tabViewDidSelectTabViewItem(selectedTab());
        menu_->validateItems();
    });
    for (const ListTable *table : {feedView_->listView(), messageView_->listView()})
        connect(table, &ListTable::selectedRowChanged, menu_, &MainMenu::validateItems);
    connect(messageView_->listView(), &ListTable::copyRequested, this,
            [this] { parts_.control.actCopyRow(); });
    connect(splitter_, &QSplitter::splitterMoved, this, [this] { storeSizes(); });
    connect(menu_, &MainMenu::aboutRequested, this, &MainWindow::showAbout);
    connect(feedView_, &FeedListView::statusChanged, this, &MainWindow::showNotice);
    connect(feedView_, &FeedListView::feedsChanged, this, &MainWindow::showProblems);
    connect(feedView_, &FeedListView::addressBeingFetched, this, &MainWindow::showFetching);
    connect(statusRow_, &StatusRow::messageNumberDoubleClicked, this,
            [this] { parts_.msgList.actDoubleClickRSSView(); });
    connect(&ledWindow_, &LEDWindow::closeRequested, this,
            [this] { parts_.control.actDrawerButton(); });
    connect(&ledWindow_, &LEDWindow::boardDoubleClicked, this,
            [this] { parts_.msgList.actDoubleClickRSSView(); });
    parts_.msgList.changeNotice().listen([self = QPointer(this)] {
        if (self)
            self->showPresentation();
    });

    problemWatch_.setInterval(problemInterval);
    connect(&problemWatch_, &QTimer::timeout, this, &MainWindow::showProblems);
    problemWatch_.start();
}

void MainWindow::addTab(QWidget *view, const QString &identifier, const QString &textKey,
                        const QString &itemTextKey)
{
    view->setProperty(identifierProperty, identifier);
    mainTab_->addTab(view, localized(textKey));
    auto *item = new QAction(localized(itemTextKey), this);
    item->setObjectName(u"actShowTab_"_s + identifier);
    item->setShortcut(QKeySequence(Qt::CTRL | Qt::Key(Qt::Key_0 + mainTab_->count())));
    connect(item, &QAction::triggered, this, [this, identifier] { selectTab(identifier); });
    menu_->addTabItem(item);
}

void MainWindow::addWindow(QWidget *window, const QString &name, const QString &itemTextKey,
                           const QKeySequence &keys)
{
    auto *item = new QAction(localized(itemTextKey), this);
    item->setObjectName(name);
    item->setShortcut(keys);
    connect(item, &QAction::triggered, window, [window] { bringUp(*window); });
    menu_->addWindowItem(item);
}

void MainWindow::setGuide(QWidget *window)
{
    connect(menu_, &MainMenu::guideRequested, window, [window] { bringUp(*window); });
}

// What the window shows. --------------------------------------------------------------------------

void MainWindow::showNotice(const QString &text)
{
    statusRow_->showNotice(text);
}

void MainWindow::showFetching(const QString &address, const QString &sentence)
{
    if (startupWindow_ != nullptr)
        startupWindow_->showAddress(address);
    statusRow_->showFetching(sentence);
}

void MainWindow::showPresentation()
{
    const auto shown = parts_.msgList.presentation();
    statusRow_->showPresentation(*shown);
    descriptionDrawer_->showDescription(shown->description);
    ledWindow_.setDescription(shown->description);
    showProblems();
    updateControls();
}

// Settings and lists are saved from many places; whether the last save went well is asked now and
// then instead of in each of them.
void MainWindow::showProblems()
{
    statusRow_->setProblem(StandingProblem::Store, parts_.defaults.lastError());
    statusRow_->setProblem(StandingProblem::Board, parts_.setup.boardProblem());
    statusRow_->setProblem(StandingProblem::Feeds, feedView_->problem());
    statusRow_->setProblem(StandingProblem::Information, parts_.msgList.informationProblem());
}

void MainWindow::showAbout()
{
    Alert about{u"aboutDialog"_s,
                localized(u"AboutText"_s).arg(QCoreApplication::applicationVersion()),
                localized(u"AboutInfo"_s), localized(u"Understand"_s)};
    about.windowTitle = spokenText(u"MenuAbout"_s);
    about.picture = windowIcon().pixmap(64);
    openAlert(*this, about);
}

// Minimized, the window is not to be seen, and its menu item and the tray bring it back.
void MainWindow::changeEvent(QEvent *event)
{
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::WindowStateChange)
        menu_->validateItems();
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    event->ignore();
    if (hidesWhenClosed_ && hidesWhenClosed_())
        hideMainWindow();
    else
        parts_.control.actQuit();
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
    if (restoreFitted(*this, parts_.defaults.dataForKey(geometryKey)))
        return;
    const QRect place = firstPlace(screen()->availableGeometry());
    resize(place.size());
    move(place.topLeft());
}

void MainWindow::storeSizes()
{
    parts_.defaults.setData(saveGeometry(), geometryKey);
    if (descriptionDrawer_->isVisible())
        parts_.defaults.setInteger(descriptionDrawer_->height(),
                                   QString::fromUtf16(drawerHeightKey));
    parts_.defaults.synchronize();
}

} // namespace qovelmor
