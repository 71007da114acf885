// SPDX-License-Identifier: MIT
#include "board/BoardExchange.h"

#include "board/FarmLine.h"

#include <algorithm>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

BoardExchange::Turn::Turn(BoardExchange &exchange) : exchange_(exchange)
{
    exchange_.turnMutex_.lock();
    if (++exchange_.turnDepth_ == 1)
        exchange_.isRefused_ = false;
}

BoardExchange::Turn::~Turn()
{
    HeldReports::Calls calls;
    if (--exchange_.turnDepth_ == 0)
        calls = exchange_.reports_.take();
    exchange_.turnMutex_.unlock();
    for (const auto &call : calls)
        call();
}

BoardExchange::BoardExchange(Clock &clock, BoardLimits limits, CocoaSerialPort::DeviceLookup lookup)
    : clock_(clock), limits_(limits), lookup_(std::move(lookup))
{}

BoardExchange::~BoardExchange()
{
    if (const auto port = serial())
        port->close();
}

void BoardExchange::setMessageList(BoardLog *log)
{
    const auto turn = takeTurn();
    reports_.setMessageList(log);
}

void BoardExchange::setPortLoss(PortLoss *loss)
{
    const auto turn = takeTurn();
    reports_.setPortLoss(loss);
}

std::shared_ptr<CocoaSerialPort> BoardExchange::serial() const
{
    const std::lock_guard lock(serialMutex_);
    return serial_;
}

void BoardExchange::setSerial(std::shared_ptr<CocoaSerialPort> port)
{
    const std::lock_guard lock(serialMutex_);
    serial_.swap(port);
}

int BoardExchange::comPort() const
{
    const auto port = serial();
    return port ? port->portNumber() : 0;
}

int BoardExchange::proveCount() const
{
    const auto port = serial();
    return port ? port->proveCount() : 0;
}

bool BoardExchange::isPortOpen() const
{
    const auto port = serial();
    return port && port->isOpen();
}

bool BoardExchange::isPortLost() const
{
    const auto port = serial();
    return port && port->isLost();
}

int BoardExchange::openingNumber() const
{
    const auto port = serial();
    return port ? port->openingNumber() : 0;
}

QString BoardExchange::openProblem() const
{
    const auto port = serial();
    return port ? port->openProblem() : QString();
}

bool BoardExchange::openSerialPortWithNumber(int number)
{
    const auto turn = takeTurn();
    if (isPortLost())
        return false;
    if (const auto held = serial())
        held->close();
    const auto port = std::make_shared<CocoaSerialPort>(clock_, limits_.port, lookup_, makeWire_);
    port->setMessageList(&reports_);
    port->setPortLoss(&reports_);
    // Devices that are named by hand need no look-up.
    const bool isLookedUp = port->initForRS232();
    setSerial(port);
    if (!isLookedUp && port->portCount() == 0)
        return false;
    if (!port->openWithPortNumber(number))
        return false;
    port->attributes().setBaudRate(19200);
    unread_ = UnreadAnswers();
    isRefused_ = false;
    sendString(farmLine(u"x"_s));
    return true;
}

bool BoardExchange::comTest()
{
    const auto turn = takeTurn();
    const auto port = serial();
    if (!port || !port->isOpen())
        return false;
    dropArrivals(*port);
    port->sendString(farmLine(u"ver"_s));
    unread_.commandSent();
    const auto reply = port->receiveStringWhilein(0.1);
    sawReply(reply);
    return reply && !reply->isEmpty();
}

bool BoardExchange::sendString(const QString &text)
{
    const auto turn = takeTurn();
    const auto port = serial();
    // A line that has not taken one command keeps nobody waiting for each of the others.
    if (!port || isRefused_)
        return false;
    dropArrivals(*port);
    unread_.commandSent();
    isRefused_ = !port->sendEffectiveString(text);
    return !isRefused_;
}

// Answers that nobody read are dropped, but not unseen: they are no longer on their way.
void BoardExchange::dropArrivals(CocoaSerialPort &port)
{
    const QByteArray arrived = port.takeArrivals(clock_.steadyNow());
    unread_.saw(arrived);
    // Behind a full queue there is more, which is noise: no answer is so long. It must not come out
    // after the question.
    if (arrived.size() >= CharacterQue::capacity)
        port.discardUnread();
}

std::optional<QString> BoardExchange::receiveStringUntilOk(int skip)
{
    const auto turn = takeTurn();
    const auto port = serial();
    if (!port)
        return std::nullopt;
    auto reply = port->receiveStringUntilEOSWithSkip(skip);
    sawReply(reply);
    return reply;
}

std::optional<QString> BoardExchange::receiveStringMorethan(int count)
{
    const auto turn = takeTurn();
    const auto port = serial();
    if (!port)
        return std::nullopt;
    auto reply = port->receiveStringMorethan(count);
    sawReply(reply);
    return reply;
}

void BoardExchange::sawReply(const std::optional<QString> &reply)
{
    if (reply)
        unread_.saw(reply->toLatin1()); // only the marks count, and they are ASCII
}

void BoardExchange::settle()
{
    const auto turn = takeTurn();
    const auto port = serial();
    if (!port || !port->isOpen() || !unread_.isMissing())
        return;
    const SettleLimits &settle = limits_.settle;
    auto lastByte = port->lineFreeAt();
    const auto latest = std::max(clock_.steadyNow(), lastByte) + settle.most;
    auto until = clock_.steadyNow();
    for (;;) {
        const QByteArray bytes = port->takeArrivals(until);
        const auto now = clock_.steadyNow();
        if (!bytes.isEmpty()) {
            lastByte = now;
            unread_.saw(bytes);
        }
        auto patience = settle.quiet;
        if (unread_.isMissing())
            patience = unread_.boardTalks() ? settle.most : settle.silence;
        until = std::min(lastByte + patience, latest);
        if (now >= until)
            break;
    }
    unread_.settled();
}

} // namespace qovelmor
