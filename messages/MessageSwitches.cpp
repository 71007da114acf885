// SPDX-License-Identifier: MIT
#include "messages/MessageSwitches.h"

#include "platform/UserDefaults.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

const auto dispLineKey = u"DispLineNumber"_s;
const auto dispDateKey = u"DispTitleDate"_s;
const auto dispNameKey = u"DispSiteName"_s;
const auto dispDescKey = u"DispDescription"_s;
const auto maxMessagesKey = u"MaxSiteMessages"_s;
const auto useMaxKey = u"UseMaxMessages"_s;
const auto orderKey = u"DispMessageOrder"_s;
const auto eachRSSKey = u"DispEachRSS"_s;
const auto calendarKey = u"ShowCalendarDate"_s;
const auto infoKey = u"DispInfoMessages"_s;
const auto fontNameKey = u"LEDViewFontName"_s;
const auto fontBoarderKey = u"FontBoarderValue"_s;

constexpr auto firstFontName = "HiraMinPro-W3"_L1;

} // namespace

MessageOrder DisplaySwitches::order() const
{
    switch (dispOrder) {
    case 0:
        return MessageOrder::OldestFirst;
    case 2:
        return MessageOrder::Random;
    default:
        return MessageOrder::NewestFirst;
    }
}

MessageSwitches::MessageSwitches(UserDefaults &defaults) : defaults_(defaults)
{
    DisplaySwitches first;
    first.fontName = firstFontName;
    switches_ = std::make_shared<const DisplaySwitches>(first);
    defaults_.registerDefaults({
        {dispLineKey, first.isDispLine},
        {dispDateKey, first.isDispDate},
        {dispNameKey, first.isDispName},
        {dispDescKey, first.isDispDesc},
        {maxMessagesKey, first.maxMessages},
        {useMaxKey, first.useMaxMsg},
        {orderKey, first.dispOrder},
        {eachRSSKey, first.dispEachRSS},
        {calendarKey, first.showCalendar},
        {infoKey, first.dispInfo},
        {fontNameKey, first.fontName},
        {fontBoarderKey, first.fontBoarder},
    });
}

void MessageSwitches::load()
{
    const auto integer = [this](const QString &key) {
        constexpr qint64 limit = std::numeric_limits<int>::max();
        return static_cast<int>(std::clamp(defaults_.integerForKey(key), -limit, limit));
    };
    auto read = std::make_shared<DisplaySwitches>();
    read->isDispLine = defaults_.boolForKey(dispLineKey);
    read->isDispDate = defaults_.boolForKey(dispDateKey);
    read->isDispName = defaults_.boolForKey(dispNameKey);
    read->isDispDesc = defaults_.boolForKey(dispDescKey);
    read->maxMessages = integer(maxMessagesKey);
    read->useMaxMsg = defaults_.boolForKey(useMaxKey);
    read->dispOrder = integer(orderKey);
    read->dispEachRSS = defaults_.boolForKey(eachRSSKey);
    read->showCalendar = defaults_.boolForKey(calendarKey);
    read->dispInfo = defaults_.boolForKey(infoKey);
    read->fontName = defaults_.stringForKey(fontNameKey);
    read->fontBoarder = integer(fontBoarderKey);

    const std::lock_guard lock(mutex_);
    switches_ = std::move(read);
}

std::shared_ptr<const DisplaySwitches> MessageSwitches::snapshot() const
{
    const std::lock_guard lock(mutex_);
    return switches_;
}

template <typename T>
void MessageSwitches::change(T DisplaySwitches::*field, const T &value)
{
    const std::lock_guard lock(mutex_);
    auto changed = std::make_shared<DisplaySwitches>(*switches_);
    changed.get()->*field = value;
    switches_ = std::move(changed);
}

void MessageSwitches::store(PropertyValue value, const QString &key)
{
    defaults_.setValueIfChanged(std::move(value), key);
    defaults_.synchronize();
}

void MessageSwitches::setIsDispLine(bool value)
{
    change(&DisplaySwitches::isDispLine, value);
    store(value, dispLineKey);
}

void MessageSwitches::setIsDispDate(bool value)
{
    change(&DisplaySwitches::isDispDate, value);
    store(value, dispDateKey);
}

void MessageSwitches::setIsDispName(bool value)
{
    change(&DisplaySwitches::isDispName, value);
    store(value, dispNameKey);
}

void MessageSwitches::setIsDispDesc(bool value)
{
    change(&DisplaySwitches::isDispDesc, value);
    store(value, dispDescKey);
}

void MessageSwitches::setMaxMessages(int value)
{
    const int kept = std::max(value, 0);
    change(&DisplaySwitches::maxMessages, kept);
    store(kept, maxMessagesKey);
}

void MessageSwitches::setUseMaxMsg(bool value)
{
    change(&DisplaySwitches::useMaxMsg, value);
    store(value, useMaxKey);
}

void MessageSwitches::setDispOrder(int value)
{
    change(&DisplaySwitches::dispOrder, value);
    store(value, orderKey);
}

void MessageSwitches::setDispEachRSS(bool value)
{
    change(&DisplaySwitches::dispEachRSS, value);
    store(value, eachRSSKey);
}

void MessageSwitches::setShowCalendar(bool value)
{
    change(&DisplaySwitches::showCalendar, value);
    store(value, calendarKey);
}

void MessageSwitches::setDispInfo(bool value)
{
    change(&DisplaySwitches::dispInfo, value);
    store(value, infoKey);
}

void MessageSwitches::setFontName(const QString &value)
{
    change(&DisplaySwitches::fontName, value);
    store(value, fontNameKey);
}

void MessageSwitches::setFontBoarder(int value)
{
    change(&DisplaySwitches::fontBoarder, value);
    store(value, fontBoarderKey);
}

} // namespace qovelmor
