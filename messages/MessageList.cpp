// SPDX-License-Identifier: MIT
#include "messages/MessageList.h"

#include "board/BoardLink.h"
#include "messages/CalendarText.h"
#include "messages/DisplayLine.h"
#include "messages/ReadCycle.h"
#include "messages/RememberedMessages.h"
#include "messages/RowText.h"
#include "messages/needs/LineScreen.h"
#include "messages/needs/MessageSettings.h"
#include "messages/needs/RunControl.h"
#include "platform/Localization.h"
#include "platform/Sounds.h"
#include "platform/SystemLog.h"
#include "platform/UserDefaults.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

const auto lastMessagesKey = u"LastRSSMessages"_s;

bool holds(const MessageVector &messages, int row)
{
    return row >= 0 && static_cast<std::size_t>(row) < messages.size();
}

const Message &messageAt(const MessageVector &messages, int row)
{
    return messages[static_cast<std::size_t>(row)];
}

} // namespace

MessageList::MessageList(Parts parts)
    : clock_(parts.clock)
    , defaults_(parts.defaults)
    , sounds_(parts.sounds)

    , random_(std::move(parts.random))
    , notice_(parts.mainThread)
    , switches_(parts.defaults)
    , viewSettings_(parts.defaults)
    , firstSeen_(parts.clock, parts.defaults)
    , logBook_(parts.clock)
    , information_(std::move(parts.documentFolder), std::move(parts.informationTemplate))
    , display_(parts.clock, information_, switches_)
    , ledProgress_(display_)
    , lastMSG_(std::make_shared<const MessageVector>())
{}

MessageList::~MessageList() = default;

void MessageList::connect(const Connections &connections)
{
    feeds_ = &connections.feeds;
    settings_ = &connections.settings;
    runControl_ = &connections.runControl;
    screen_ = &connections.screen;
    logBook_.connect(connections.settings, connections.runControl);
    display_.connect(connections.settings, connections.runControl, connections.screen);
    ledProgress_.connect(connections.settings, connections.runControl, connections.boardProgress);
}

void MessageList::awakeFromNibx()
{
    switches_.load();
    firstSeen_.load();
    lastMSG_ = std::make_shared<const MessageVector>(
        messagesFrom(defaults_.arrayForKey(lastMessagesKey).value_or(PropertyArray())));

    const auto switches = switches_.snapshot();
    screen_->setFontName(switches->fontName);
    settings_->ledSystem().setFontName(switches->fontName);
    settings_->ledSystem().setBoarder(switches->fontBoarder);
    prepareInfoMessages(switches->dispInfo);
}

void MessageList::applicationWillTerminate()
{
    display_.finishTitle();
    saveFirstSeenTimes();
    writeStringLog(u"QoVelmarRSS終了"_s);
}

template <typename Edit>
void MessageList::present(const Edit &edit)
{
    presentation_.change(edit);
    notice_.changed();
}

bool MessageList::isPresentMarked() const
{
    return runControl_ && runControl_->dispRSSState() == 1;
}

void MessageList::setStatusText(const QString &text)
{
    present([&](MessagePresentation &shown) { shown.statusText = text; });
}

// The read cycle. ------------------------------------------------------------------------------

void MessageList::readRSSPages()
{
    const auto switches = switches_.snapshot();
    startTitleLine(*switches);
    startReadProgress(feeds_->validSiteCount());
    ReadCycle cycle({clock_, *settings_, firstSeen_, logBook_, random_,
                     [this](const QString &address) { siteStarts(address); },
                     [this](int sitesRead) { siteIsRead(sitesRead); }},
                    switches);
    ReadOutcome outcome = cycle.run(*feeds_, *lastMSG_);
    if (outcome.isWhole)
        keep(std::move(outcome));
    else
        endReadProgress(QString());
    display_.finishTitle();
}

void MessageList::startTitleLine(const DisplaySwitches &switches)
{
    const QString title = information_.titleLine();
    if (switches.dispInfo && !title.isEmpty())
        display_.startTitle(u"【QoVelmorRSS】"_s + title);
}

void MessageList::startReadProgress(int siteCount)
{
    present([&](MessagePresentation &shown) {
        shown.progressMaximum = siteCount;
        shown.progressValue = 0;
        shown.progressRunning = true;
    });
    ledProgress_.startLEDProgress(siteCount);
}

void MessageList::siteStarts(const QString &address)
{
    setStatusText(address);
}

void MessageList::siteIsRead(int sitesRead)
{
    present([&](MessagePresentation &shown) { shown.progressValue = sitesRead; });
    ledProgress_.moveLEDProgress(sitesRead);
}

// The window gets the new list before the pause that ends a read.
void MessageList::keep(ReadOutcome outcome)
{
    takenCount_ = outcome.takenCount;
    lastMSG_ = std::make_shared<const MessageVector>(std::move(outcome.messages));
    present([&](MessagePresentation &shown) { shown.messages = lastMSG_; });
    const bool isStored = storeMessages(*lastMSG_);
    logBook_.writeReadCompleteLog(outcome.takenCount);

    setStatusText(localized(u"Read RSS complete"_s));
    clock_.sleepFor(1s);
    endReadProgress(isStored ? QString() : defaults_.lastError());
}

// One durable write for the whole read, first-seen times included.
bool MessageList::storeMessages(const MessageVector &messages)
{
    const auto shortened = shortenedForStore(messages, rememberedBytes(messages.size()));
    if (shortened && !std::exchange(isShorteningSaid_, true)) {
        systemLog(
            logMessages(),
            u"readRSSPages: too much text to remember, long descriptions are cut in the store"_s);
    }
    defaults_.setArray(toArray(shortened ? *shortened : messages), lastMessagesKey);
    firstSeen_.storeChanges();
    return defaults_.synchronize();
}

void MessageList::endReadProgress(const QString &statusText)
{
    present([&](MessagePresentation &shown) {
        shown.statusText = statusText;
        shown.progressRunning = false;
    });
    ledProgress_.stopLEDProgress();
}

void MessageList::randomAddObject(const std::optional<Message> &message)
{
    if (!message) {
        systemLog(logMessages(), u"randomAddObject: object is nil"_s);
        return;
    }
    const MessageSnapshot before = msgList();
    const std::size_t place = randomPlace(before->size(), random_());
    MessageVector messages;
    messages.reserve(before->size() + 1);
    std::copy_n(before->begin(), place, std::back_inserter(messages));
    messages.push_back(*message);
    std::copy_n(before->begin() + static_cast<std::ptrdiff_t>(place), before->size() - place,
                std::back_inserter(messages));
    const auto list = std::make_shared<const MessageVector>(std::move(messages));
    present([&](MessagePresentation &shown) { shown.messages = list; });
}

QString MessageList::dateStringWithMessage(const QString &headline)
{
    return firstSeen_.dateStringWithMessage(headline);
}

std::optional<Clock::CalendarTime> MessageList::dateWithString(const QString &text) const
{
    return qovelmor::dateWithString(text, clock_.calendarNow());
}

bool MessageList::isTooOldDate(const QString &text) const
{
    return qovelmor::isTooOldDate(text, clock_.calendarNow());
}

void MessageList::saveFirstSeenTimes()
{
    if (firstSeen_.storeChanges())
        defaults_.synchronize();
}

// The display. ---------------------------------------------------------------------------------

void MessageList::dispRSSDataWithIndex(int index)
{
    const MessageSnapshot messages = msgList();
    if (!holds(*messages, index)) {
        systemLog(logMessages(), u"dispRSSDataWithIndex: index error1"_s);
        return;
    }
    const Message &message = messageAt(*messages, index);
    playArrivalSound(message);

    const auto switches = switches_.snapshot();
    const int count = static_cast<int>(messages->size());
    const QString date =
        message.date ? *message.date : firstSeen_.dateStringWithMessage(message.headline);
    const QString line = displayLine(message, index + 1, count, date, *switches);
    const bool isScroll = settings_->isScroll();
    present([&](MessagePresentation &shown) {
        shown.messageIndex = index;
        shown.messageNumber = QString::number(index + 1) + u'/' + QString::number(count);
        shown.description = message.description.value_or(QString());
        if (isScroll) {
            shown.scrollToRow = index;
            ++shown.scrollRequests;
        }
    });
    logBook_.writeDispMessageLog(line);
    saveFirstSeenTimes();
    if (!line.isEmpty())
        display_.show(line);
}

void MessageList::playArrivalSound(const Message &message)
{
    if (message.isNew && settings_->playArrivalSound())
        sounds_.play(settings_->arrivalSoundName(), settings_->playSoundVolume());
}

void MessageList::eraseDispNumber()
{
    present([](MessagePresentation &shown) { shown.messageNumber.clear(); });
}

// Switches that reach further than the list. ---------------------------------------------------

void MessageList::setDispInfo(bool value)
{
    prepareInfoMessages(value);
    switches_.setDispInfo(value);
}

void MessageList::prepareInfoMessages(bool load)
{
    const bool isRead = information_.prepareInfoMessages(load);
    informationProblem_ = isRead ? QString() : localized(u"InformationFileError"_s);
    notice_.changed();
}

void MessageList::setFontName(const QString &name)
{
    settings_->ledSystem().setFontName(name);
    screen_->setFontName(name);
    switches_.setFontName(name);
}

void MessageList::setFontBoarder(int threshold)
{
    settings_->ledSystem().setBoarder(threshold);
    switches_.setFontBoarder(threshold);
}

void MessageList::setExpansion(float expansion)
{
    screen_->setExpansion(expansion);
    settings_->ledSystem().setExpansion(expansion);
}

// What a person does. --------------------------------------------------------------------------

void MessageList::actDoubleClickListView(int selectedRow, bool hasOptionKey)
{
    const MessageSnapshot messages = msgList();
    if (!holds(*messages, selectedRow))
        return;
    if (!hasOptionKey) {
        openLink(messageAt(*messages, selectedRow));
        return;
    }
    if (runControl_->isDisplayActive())
        runControl_->stopDispRSS();
    runControl_->setLastDispLine(selectedRow);
    runControl_->startDispRSS();
}

void MessageList::actDoubleClickRSSView()
{
    if (runControl_->dispRSSState() != 1)
        return;
    const auto shown = presentation();
    if (!holds(*shown->messages, shown->messageIndex)) {
        systemLog(logMessages(), u"actDoubleClickRSSView: index error"_s);
        return;
    }
    openLink(messageAt(*shown->messages, shown->messageIndex));
}

void MessageList::openLink(const Message &message)
{
    if (!runControl_->siteAccessWithAddress(message.link.value_or(QString())))
        runControl_->siteAccessErrorAlert();
}

std::optional<QString> MessageList::actCopyRow(int selectedRow) const
{
    const MessageSnapshot messages = msgList();
    if (!holds(*messages, selectedRow)) {
        systemLog(logMessages(), u"actCopyRow: index error"_s);
        return std::nullopt;
    }
    return copiedRowText(messageAt(*messages, selectedRow));
}

std::vector<BoarderItem> MessageList::createBoarderMenu()
{
    const int threshold = switches()->fontBoarder;
    setFontBoarder(threshold);
    return boarderItems(threshold);
}

// The bitmap font files leave nothing to choose while the board draws with them.
bool MessageList::isFontItemEnabled() const
{
    return !(runControl_->isOutputLED() && settings_->useBitmapFont());
}

bool MessageList::isBoarderItemEnabled() const
{
    return runControl_->isOutputLED() && !settings_->useBitmapFont();
}

} // namespace qovelmor
