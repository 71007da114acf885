// SPDX-License-Identifier: MIT
#include "board/CocoaSerialPort.h"

#include "board/needs/BoardLog.h"
#include "board/needs/PortLoss.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

void printOut(const QByteArray &text)
{
    std::fwrite(text.constData(), 1, static_cast<std::size_t>(text.size()), stdout);
    std::fflush(stdout);
}

} // namespace

CocoaSerialPort::CocoaSerialPort(Clock &clock, PortLimits limits, DeviceLookup lookup,
                                 const SerialWireMaker &makeWire)
    : clock_(clock), limits_(limits), lookup_(std::move(lookup)), wire_(makeWire(clock, que_))
{}

CocoaSerialPort::~CocoaSerialPort()
{
    closeAtOnce();
}

bool CocoaSerialPort::initWithType(SerialDeviceType type)
{
    SerialLookup iterator;
    const int result = findSerialPortWithIterator(iterator, type);
    ports_ = getDeviceFilePathWithIterator(iterator).value_or(QList<QByteArray>{});
    tries_ = 3;
    return result == 0;
}

int CocoaSerialPort::findSerialPortWithIterator(SerialLookup &iterator, SerialDeviceType type) const
{
    iterator = lookup_(type);
    if (iterator.registryAbsent)
        printOut("IOServiceMatching returned a NULL dictionary.");
    else if (iterator.result != 0)
        printOut("IOServiceGetMatchingServices returned " + QByteArray::number(iterator.result) +
                 '\n');
    return iterator.result;
}

std::optional<QList<QByteArray>>
CocoaSerialPort::getDeviceFilePathWithIterator(const SerialLookup &iterator) const
{
    const Watch watch(clock_, limits_.receiveWatch);
    QList<QByteArray> paths;
    for (const QByteArray &path : iterator.paths) {
        if (watch.isOver()) {
            logWatch(u"CocoaSerialPort:getDeviceFilePathWithIterator"_s);
            return std::nullopt;
        }
        constexpr qsizetype longestPath = 1023;
        if (path.size() <= longestPath)
            paths.append(path);
        printOut("\n");
    }
    return paths;
}

std::optional<QString> CocoaSerialPort::deviceFilePathWithPortNumber(int number) const
{
    if (number < 0 || number >= portCount())
        return std::nullopt;
    return QString::fromUtf8(ports_[number]);
}

QStringList CocoaSerialPort::portNames() const
{
    QStringList names;
    for (const QByteArray &path : ports_)
        names.append(serialPortName(path));
    return names;
}

bool CocoaSerialPort::openWithPortNumber(int number)
{
    if (isLost())
        return false;
    closeAtOnce();
    const bool known = number >= 0 && number < portCount();
    if (!openPath(known ? ports_[number] : QByteArray()))
        return false;
    portNumber_ = number;
    return true;
}

bool CocoaSerialPort::openPath(const QByteArray &path)
{
    static std::atomic<int> openings = 0;
    const auto failure = wire_->open(path, attributes_);
    if (failure) {
        printOut(openFailureText(path, *failure));
        const QString advice = openFailureAdvice(path, *failure);
        setOpenProblem(advice);
        if (!advice.isEmpty())
            printOut(advice.toUtf8() + '\n');
        return false;
    }
    setOpenProblem({});
    openedPath_ = path;
    lineFreeAt_ = clock_.steadyNow();
    openingNumber_ = ++openings;
    open_ = true;
    return true;
}

QString CocoaSerialPort::openProblem() const
{
    const std::lock_guard lock(openProblemMutex_);
    return openProblem_;
}

void CocoaSerialPort::setOpenProblem(const QString &problem)
{
    const std::lock_guard lock(openProblemMutex_);
    openProblem_ = problem;
}

void CocoaSerialPort::close()
{
    wire_->drainAndRestore(attributes_, lineFreeAt_ + limits_.sendSlack);
    closeAtOnce();
}

void CocoaSerialPort::closeAtOnce()
{
    wire_->close();
    open_ = false;
}

bool CocoaSerialPort::reopen()
{
    if (isLost())
        return false;
    const bool wasOpen = isOpen();
    closeAtOnce();
    // The path, not the index: the list may name another device there by now.
    if (openPath(openedPath_))
        return true;
    if (wasOpen)
        loseThePort();
    return false;
}

void CocoaSerialPort::loseThePort()
{
    lost_ = true;
    if (portLoss_ != nullptr)
        portLoss_->portLost({u"通信ポート再開エラー"_s,
                             u"通信ポートの再開に失敗しました。QoVelmorRSSを終了します。"_s,
                             u"了解"_s});
    if (msgList_ != nullptr)
        msgList_->setDispRSSStateStopped();
}

void CocoaSerialPort::logWatch(const QString &operation) const
{
    if (msgList_ != nullptr)
        msgList_->writeWatchTimeBreakLog(operation);
}

void CocoaSerialPort::watchBroke(const QString &operation)
{
    logWatch(operation);
    reopen();
}

} // namespace qovelmor
