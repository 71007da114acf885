// SPDX-License-Identifier: MIT
#pragma once

#include "board/BoardLimits.h"
#include "board/CharacterQue.h"
#include "board/DeviceWire.h"
#include "board/LineSettings.h"
#include "board/SerialDevices.h"
#include "board/SerialWire.h"
#include "board/Watch.h"
#include "platform/Clock.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

namespace qovelmor {

class BoardLog;
class PortLoss;

/// One serial port: finds the devices, opens one by its index as a raw 19200 baud line, sends, and
/// hands out what its receive thread has gathered in a queue.
///
/// A receive operation that waits too long writes its own name to the log, closes and opens the
/// port again and gives nil. When that opening fails the port is lost: PortLoss is told, once, and
/// from then on every send gives NO and every receive nil at once. A port that is not open behaves
/// alike, but alerts nobody.
///
/// One thread at a time may send, receive, open and close; receiveBreak() and the queries that say
/// so may come from any thread.
class CocoaSerialPort
{
public:
    using DeviceLookup = std::function<SerialLookup(SerialDeviceType)>;

    explicit CocoaSerialPort(Clock &clock, PortLimits limits = {},
                             DeviceLookup lookup = findSerialDevices,
                             const SerialWireMaker &makeWire = DeviceWire::make);
    ~CocoaSerialPort();
    CocoaSerialPort(const CocoaSerialPort &) = delete;
    CocoaSerialPort &operator=(const CocoaSerialPort &) = delete;

    void setMessageList(BoardLog *log) { msgList_ = log; }
    void setPortLoss(PortLoss *loss) { portLoss_ = loss; }

    // Discovery. ---------------------------------------------------------------------------------

    /// Look up the serial devices of one kind; false when the look-up fails. The devices that the
    /// environment names are there in any case.
    bool initForRS232() { return initWithType(SerialDeviceType::Rs232); }
    bool initForModem() { return initWithType(SerialDeviceType::Modem); }
    bool initSerialPort() { return initWithType(SerialDeviceType::Any); }

    /// The registry's result code, 0 on success; what it found goes into `iterator`.
    int findSerialPortWithIterator(SerialLookup &iterator, SerialDeviceType type) const;
    /// The paths of the look-up; nothing when reading them takes longer than the watch.
    std::optional<QList<QByteArray>>
    getDeviceFilePathWithIterator(const SerialLookup &iterator) const;

    int portCount() const { return static_cast<int>(ports_.size()); }
    /// Nothing for an index that the list does not hold.
    std::optional<QString> deviceFilePathWithPortNumber(int number) const;
    /// The names of the devices for a menu, in the order of the indices.
    QStringList portNames() const;
    /// The index opened last. Any thread.
    int portNumber() const { return portNumber_.load(); }

    // Opening and closing. -----------------------------------------------------------------------

    /// Opens the device with this index and starts the receive thread. A failure is said on
    /// standard output (and in openProblem()) and gives NO.
    bool openWithPortNumber(int number);
    /// Ends the receive thread, waits until output has drained (no longer than the line needs for
    /// it), writes the settings back, closes.
    void close();
    /// Closes without draining and opens the same device again.
    bool reopen();
    /// Any thread.
    bool isOpen() const { return open_.load(); }
    /// The port was open and could not be opened again. Any thread.
    bool isLost() const { return lost_.load(); }
    /// Which opening of a line this is: no two openings of any port have the same number; 0 before
    /// the first. Any thread.
    int openingNumber() const { return openingNumber_.load(); }
    /// Why the last opening failed and what helps, as a sentence for the window; empty when it
    /// succeeded. Any thread.
    QString openProblem() const;

    /// The settings record. Changes reach the line at the next open or close.
    LineSettings &attributes() { return attributes_; }
    const LineSettings &attributes() const { return attributes_; }

    int tries() const { return tries_; }
    void setTries(int tries) { tries_ = tries; }

    // Sending.
    // -------------------------------------------------------------------------------------

    /// NO only when the line reports an error or takes nothing within the limit.
    bool sendChar(quint8 byte);
    /// Sends the text as Shift_JIS; NO when not every byte was taken.
    bool sendString(const QString &text);
    /// Empties the queue, then sends.
    bool sendEffectiveString(const QString &text);
    /// The number of strings sent completely. Any thread.
    int proveCount() const { return proveCount_.load(); }
    /// When the last byte sent will have left, going by the line's speed; earlier when an answer
    /// has shown that the line is free.
    Clock::SteadyTime lineFreeAt() const { return lineFreeAt_; }

    // Receiving.
    // -----------------------------------------------------------------------------------

    void bufferClear();
    /// What has arrived and found no room in the queue is gone.
    void discardUnread() { wire_->discardUnread(); }
    int bufferCount() const { return que_.count(); }
    /// Asks the running wait, or else the next one, to give up. Any thread.
    void receiveBreak();

    /// The next byte, looked for in steps of 0.1 s; 0 after 1.0 s.
    quint8 receiveChar();
    /// Up to 1023 bytes that have arrived.
    std::optional<QByteArray> receiveBuffer();
    /// All that has arrived, read as Shift_JIS; an empty text when nothing has. Does not wait.
    std::optional<QString> receiveString();
    std::optional<QString> receiveStringWhilein(double seconds);
    /// Lets that much time pass, or less when a break is asked for; what arrives stays in the
    /// queue. False when the program ends. Every rest of an exchange is one of these: a sleep of
    /// the main thread would run what was posted to it, which may wait for a thread that waits for
    /// the turn this exchange holds.
    bool rest(Clock::Duration duration) const;
    /// Waits for `count` bytes, looking in steps of 0.1 s, then receiveString(). After `seconds`
    /// the log says so and what is there is given. The watch of 1.0 s is asked first on purpose:
    /// with 1.0 s or more it always ends the wait.
    std::optional<QString> receiveStringMorethan(int count, double seconds = 3.0);
    /// Gathers text until it holds `skip` + 1 marks "Ok.". Woken by each byte.
    std::optional<QString> receiveStringUntilEOSWithSkip(int skip);
    /// The marks "Ok." in a text; -1 when counting takes longer than the watch.
    int countEOSWithString(const QString &text) const;

    /// Waits until bytes arrive or `deadline` has passed, and takes them.
    QByteArray takeArrivals(Clock::SteadyTime deadline);

private:
    enum class Gathering { Done, Broken, TimedOut };

    bool initWithType(SerialDeviceType type);
    bool openPath(const QByteArray &path);
    void closeAtOnce();
    void setOpenProblem(const QString &problem);
    void loseThePort();
    bool sendBytes(const QByteArray &bytes);
    Clock::SteadyTime waitUntilSent();
    void lineIsFree();
    void waitForBytes(Clock::SteadyTime deadline, int moreThan) const;
    Gathering gatherArrived(QByteArray &bytes);
    Gathering takeBuffer(QByteArray &bytes);
    bool takeBreak() { return receiveBreak_.exchange(false); }
    void watchBroke(const QString &operation);
    void logWatch(const QString &operation) const;

    Clock &clock_;
    PortLimits limits_;
    DeviceLookup lookup_;
    BoardLog *msgList_ = nullptr;
    PortLoss *portLoss_ = nullptr;
    QList<QByteArray> ports_;
    LineSettings attributes_;
    int tries_ = 3;
    QByteArray openedPath_;
    mutable std::mutex openProblemMutex_;
    QString openProblem_;
    std::atomic<int> portNumber_ = 0;
    std::atomic<int> openingNumber_ = 0;
    std::atomic<int> proveCount_ = 0;
    std::atomic<bool> receiveBreak_ = false;
    std::atomic<bool> open_ = false;
    std::atomic<bool> lost_ = false;
    /// The program ends, and the board did not take a command or did not answer since: nothing is
    /// waited for any more.
    std::atomic<bool> silentAtEnd_ = false;
    Clock::SteadyTime lineFreeAt_{};
    CharacterQue que_; // outlives the wire, which fills it
    std::unique_ptr<SerialWire> wire_;
};

} // namespace qovelmor
