// SPDX-License-Identifier: MIT
#pragma once

#include "board/BoardLimits.h"
#include "board/CocoaSerialPort.h"
#include "board/HeldReports.h"
#include "board/UnreadAnswers.h"

#include <QString>

#include <memory>
#include <mutex>
#include <optional>
#include <utility>

namespace qovelmor {

/// The link's one conversation with the board: who holds the turn sends a command and reads its
/// reply, and nobody else speaks in between.
///
/// Every operation takes the turn for itself; an operation that consists of several takes it once
/// around them (takeTurn). What is to be reported is delivered when the turn is given back. All
/// operations may be called from any thread.
class BoardExchange
{
public:
    BoardExchange(Clock &clock, BoardLimits limits, CocoaSerialPort::DeviceLookup lookup);
    ~BoardExchange();
    BoardExchange(const BoardExchange &) = delete;
    BoardExchange &operator=(const BoardExchange &) = delete;

    /// Who hears of it; before the first exchange, or never.
    void setMessageList(BoardLog *log);
    void setPortLoss(PortLoss *loss);

    /// Other wires than the devices of the system; before the first opening.
    void setWire(SerialWireMaker makeWire) { makeWire_ = std::move(makeWire); }

    /// Closes the port that is held, opens the one with this index and greets the board. False when
    /// it does not open (the unopened port is held then) or the link is lost.
    bool openSerialPortWithNumber(int number);
    /// The port; null before the first opening.
    std::shared_ptr<CocoaSerialPort> serial() const;
    int comPort() const;    ///< the index of the port opened last
    int proveCount() const; ///< strings sent completely
    bool isPortOpen() const;
    bool isPortLost() const;
    /// Which opening of a line this is (CocoaSerialPort::openingNumber()); 0 before the first.
    int openingNumber() const;
    /// Why the port did not open and what helps, as a sentence for the window; empty when it is
    /// open.
    QString openProblem() const;

    /// Whether the board answers "ver" with anything at all within 0.1 s.
    bool comTest();

    /// Empties the receive queue and sends. NO when the line did not take it, or an earlier one of
    /// the same turn.
    bool sendString(const QString &text);
    /// Text up to the (skip + 1)-th mark "Ok."; nothing when it does not come in time.
    std::optional<QString> receiveStringUntilOk(int skip);
    /// The text that has come as soon as it has this many bytes.
    std::optional<QString> receiveStringMorethan(int count);

    /// The turn, held as long as the object lives; the holder may take it again.
    class Turn
    {
    public:
        explicit Turn(BoardExchange &exchange);
        ~Turn();
        Turn(const Turn &) = delete;
        Turn &operator=(const Turn &) = delete;

    private:
        BoardExchange &exchange_;
    };
    [[nodiscard]] Turn takeTurn() { return Turn(*this); }

    /// Before a question: an answer that nobody has read may still be on its way, and its "Ok."
    /// must not be taken for the one of the question. Lets the line fall quiet, for some 20 ms at
    /// most when the board is one that says nothing to orders.
    void settle();

protected:
    Clock &clock() const { return clock_; }
    const BoardLimits &limits() const { return limits_; }
    /// Where an exchange reports to; only with the turn.
    BoardLog &reports() { return reports_; }

private:
    void setSerial(std::shared_ptr<CocoaSerialPort> port);
    void dropArrivals(CocoaSerialPort &port);
    void sawReply(const std::optional<QString> &reply);

    Clock &clock_;
    const BoardLimits limits_;
    const CocoaSerialPort::DeviceLookup lookup_;
    SerialWireMaker makeWire_ = DeviceWire::make;

    std::recursive_mutex turnMutex_; // an operation made of others holds it around them
    int turnDepth_ = 0;
    bool isRefused_ = false; // the line has not taken a command of this turn
    HeldReports reports_;
    UnreadAnswers unread_;

    mutable std::mutex serialMutex_; // for the pointer only
    std::shared_ptr<CocoaSerialPort> serial_;
};

} // namespace qovelmor
