// SPDX-License-Identifier: MIT
// Sending and receiving of CocoaSerialPort; opening and closing stand in CocoaSerialPort.cpp.
#include "board/CocoaSerialPort.h"
#include "board/needs/BoardLog.h"
#include "platform/TextEncoding.h"

#include <algorithm>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int bitsPerByte = 10; // a start bit, eight data bits, a stop bit

Clock::Duration seconds(double value)
{
    return std::chrono::duration_cast<Clock::Duration>(std::chrono::duration<double>(value));
}

Clock::Duration lineTime(qint64 bytes, int baudRate)
{
    constexpr qint64 nanoseconds = 1'000'000'000;
    return Clock::Duration(bytes * bitsPerByte * nanoseconds / std::max(baudRate, 1));
}

} // namespace

bool CocoaSerialPort::sendChar(quint8 byte)
{
    return sendBytes(QByteArray(1, static_cast<char>(byte)));
}

bool CocoaSerialPort::sendString(const QString &text)
{
    if (!sendBytes(encodeShiftJisLossy(text)))
        return false;
    ++proveCount_;
    return true;
}

bool CocoaSerialPort::sendEffectiveString(const QString &text)
{
    bufferClear();
    return sendString(text);
}

bool CocoaSerialPort::sendBytes(const QByteArray &bytes)
{
    if (!isOpen())
        return false;
    lineFreeAt_ =
        std::max(lineFreeAt_, clock_.steadyNow()) + lineTime(bytes.size(), attributes_.baudRate());
    const bool waits = !silentAtEnd_;
    const bool sent =
        wire_->write(bytes, waits ? lineFreeAt_ + limits_.sendSlack : clock_.steadyNow());
    if (!sent) {
        lineIsFree(); // what has not been taken will not leave
        silentAtEnd_ = silentAtEnd_ || clock_.sleepsEnded();
    }
    return sent;
}

// A reply cannot come before its command has left, so the time for it starts then: when the output
// queue is empty and the bytes have had their time on the line (adapters with a buffer of their own
// say "empty" too early), but at most the slack after that.
Clock::SteadyTime CocoaSerialPort::waitUntilSent()
{
    using namespace std::chrono;
    const Clock::SteadyTime latest = lineFreeAt_ + limits_.sendSlack;
    for (;;) {
        const Clock::SteadyTime now = clock_.steadyNow();
        const int unsent = wire_->unsentBytes();
        if (unsent == 0 || now >= latest || receiveBreak_)
            return std::max(now, lineFreeAt_);
        const auto expected =
            std::max<Clock::Duration>(lineTime(unsent, attributes_.baudRate()), 1ms);
        waitForBytes(std::min(now + expected, latest), CharacterQue::capacity);
    }
}

// Known from an answer, which proves that its command has left: a line that is faster than its
// nominal speed (a pseudo-terminal is) must not put off the watches of the commands that follow.
void CocoaSerialPort::lineIsFree()
{
    lineFreeAt_ = std::min(lineFreeAt_, clock_.steadyNow());
}

void CocoaSerialPort::bufferClear()
{
    que_.clear();
    wire_->spaceMade();
}

void CocoaSerialPort::receiveBreak()
{
    receiveBreak_ = true;
    que_.wakeWaiters();
}

// Waits until the queue holds more than that, a break is asked for, or the deadline has passed.
void CocoaSerialPort::waitForBytes(Clock::SteadyTime deadline, int moreThan) const
{
    wire_->waitForBytes(deadline, [&](int count) { return count > moreThan || receiveBreak_; });
}

bool CocoaSerialPort::rest(Clock::Duration duration) const
{
    if (clock_.sleepsEnded())
        return false;
    waitForBytes(clock_.steadyNow() + duration, CharacterQue::capacity);
    return !clock_.sleepsEnded();
}

QByteArray CocoaSerialPort::takeArrivals(Clock::SteadyTime deadline)
{
    waitForBytes(deadline, 0);
    QByteArray bytes = que_.take(CharacterQue::capacity);
    wire_->spaceMade();
    return bytes;
}

quint8 CocoaSerialPort::receiveChar()
{
    const Watch watch(clock_, limits_.receiveWatch);
    while (isOpen() && que_.count() == 0) {
        if (takeBreak())
            return 0;
        if (watch.isOver()) {
            watchBroke(u"CocoaSerialPort:receiveChar"_s);
            return 0;
        }
        if (!rest(limits_.pollStep))
            return 0; // the program ends
    }
    const quint8 byte = que_.getChar();
    wire_->spaceMade();
    return byte;
}

CocoaSerialPort::Gathering CocoaSerialPort::takeBuffer(QByteArray &bytes)
{
    constexpr int most = 1023;
    const Watch watch(clock_, limits_.receiveWatch);
    for (int taken = 0; taken < most && que_.count() > 0;) {
        if (takeBreak())
            return Gathering::Broken;
        if (watch.isOver()) {
            watchBroke(u"CocoaSerialPort:receiveBuffer"_s);
            return Gathering::TimedOut;
        }
        const QByteArray piece = que_.take(most - taken);
        wire_->spaceMade();
        taken += static_cast<int>(piece.size());
        bytes += piece;
    }
    return Gathering::Done;
}

std::optional<QByteArray> CocoaSerialPort::receiveBuffer()
{
    QByteArray bytes;
    if (isLost() || takeBuffer(bytes) != Gathering::Done)
        return std::nullopt;
    return bytes;
}

CocoaSerialPort::Gathering CocoaSerialPort::gatherArrived(QByteArray &bytes)
{
    const Watch watch(clock_, limits_.receiveStringWatch);
    while (que_.count() > 0) {
        if (takeBreak())
            return Gathering::Broken;
        if (watch.isOver()) {
            watchBroke(u"CocoaSerialPort:receiveString"_s);
            return Gathering::TimedOut;
        }
        const Gathering result = takeBuffer(bytes);
        if (result != Gathering::Done)
            return result;
    }
    return Gathering::Done;
}

std::optional<QString> CocoaSerialPort::receiveString()
{
    QByteArray bytes;
    if (isLost() || gatherArrived(bytes) != Gathering::Done)
        return std::nullopt;
    return decodeShiftJis(bytes);
}

std::optional<QString> CocoaSerialPort::receiveStringWhilein(double duration)
{
    if (isLost())
        return std::nullopt;
    rest(seconds(duration));
    if (takeBreak())
        return std::nullopt;
    return receiveString();
}

std::optional<QString> CocoaSerialPort::receiveStringMorethan(int count, double duration)
{
    const Watch watch(clock_, limits_.receiveWatch);
    const Watch patience(clock_, seconds(duration));
    while (isOpen() && que_.count() < count) {
        if (takeBreak())
            return std::nullopt;
        if (watch.isOver()) {
            watchBroke(u"CocoaSerialPort:receiveStringMorethan"_s);
            return std::nullopt;
        }
        if (!rest(limits_.pollStep))
            return std::nullopt; // the program ends
        if (patience.isOver()) {
            if (msgList_ != nullptr)
                msgList_->writeStringLog(u"CocoaSerialPort: Receive string is time up."_s);
            return receiveString();
        }
    }
    if (!isOpen())
        return std::nullopt;
    lineIsFree();
    return receiveString();
}

std::optional<QString> CocoaSerialPort::receiveStringUntilEOSWithSkip(int skip)
{
    if (!isOpen() || silentAtEnd_)
        return std::nullopt;
    const Watch watch(clock_, limits_.receiveWatch, waitUntilSent());
    QByteArray bytes;
    for (;;) {
        if (takeBreak())
            return std::nullopt;
        if (watch.isOver()) {
            silentAtEnd_ = clock_.sleepsEnded();
            watchBroke(u"CocoaSerialPort:receiveStringUntilEOSWithSkip"_s);
            return std::nullopt;
        }
        const Gathering result = gatherArrived(bytes);
        if (result == Gathering::Broken)
            return std::nullopt;
        if (result == Gathering::TimedOut) {
            if (msgList_ != nullptr)
                msgList_->writeStringLog(u"CocoaSerialPort:receiveStringUntilEOSWithSkip:error2"_s);
            reopen();
            return std::nullopt;
        }
        if (bytes.count("Ok.") > skip) { // else nothing has to be decoded yet
            const QString text = decodeShiftJis(bytes);
            if (countEOSWithString(text) > skip) {
                lineIsFree();
                return text;
            }
        }
        waitForBytes(watch.end() + std::chrono::milliseconds(1), 0);
    }
}

int CocoaSerialPort::countEOSWithString(const QString &text) const
{
    const QLatin1StringView mark("Ok.");
    const Watch watch(clock_, limits_.receiveWatch);
    int count = 0;
    for (qsizetype at = text.indexOf(mark); at >= 0; at = text.indexOf(mark, at + mark.size())) {
        if (watch.isOver()) {
            logWatch(u"CocoaSerialPort:countEOSWithString"_s);
            return -1;
        }
        ++count;
    }
    return count;
}

} // namespace qovelmor
