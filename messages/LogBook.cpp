// SPDX-License-Identifier: MIT
#include "messages/LogBook.h"

#include "messages/needs/MessageSettings.h"
#include "messages/needs/RunControl.h"
#include "platform/CalendarTime.h"
#include "platform/LogFile.h"
#include "platform/PlainText.h"
#include "platform/TextEncoding.h"

#include <array>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

enum class LogBook::Line : std::size_t {
    ReadRSS,
    ReadComplete,
    ReadRSSError,
    DispStart,
    DispMessage,
    String,
    TimerStart,
    TimerStop,
    WatchTimeBreak,
};

namespace {

// In the order of LogBook::Line. The first mark takes the time stamp.
struct LineKind
{
    bool (MessageSettings::*isOn)() const;
    QStringView format;
};
constexpr std::array<LineKind, 9> lineKinds{{
    {&MessageSettings::logRSSRead, u"%@ RSS読込:%@ 結果:%@\n"},
    {&MessageSettings::logRSSRead, u"%@ RSS読込終了:%d\n"},
    {&MessageSettings::logRSSRead, u"%@ RSS読込:%@ 結果エラー:%d, 場所:%@\n"},
    {&MessageSettings::logRSSDisp, u"%@ RSS表示開始\n"},
    {&MessageSettings::logRSSDisp, u"%@ RSS表示:%@\n"},
    {&MessageSettings::logSystem, u"%@ システム:%@\n"},
    {&MessageSettings::logTimer, u"%@ タイマー:RSS開始 %@\n"},
    {&MessageSettings::logTimer, u"%@ タイマー:RSS停止\n"},
    {&MessageSettings::logSystem, u"%@ ループ強制ブレイク対応:%@\n"},
}};

QString resultText(int result)
{
    switch (result) {
    case 1:
        return u"RSS読込エラー"_s;
    case 2:
        return u"見出しデータ取得エラー"_s;
    case 3:
        return u"日付データ取得エラー"_s;
    case 4:
        return u"詳細データ取得エラー"_s;
    case 5:
        return u"リンクデータ取得エラー"_s;
    default:
        return u"OK"_s;
    }
}

// Puts the arguments in the places of the format's two-character marks (%@, %d), in order. Marks
// inside an argument are text.
QString filledIn(QStringView format, const QStringList &arguments)
{
    QString line;
    auto argument = arguments.cbegin();
    for (qsizetype place = 0; place < format.size(); ++place) {
        if (format[place] == u'%') {
            line += withoutControls(*argument++);
            ++place;
        } else {
            line += format[place];
        }
    }
    return line;
}

} // namespace

LogBook::LogBook(Clock &clock) : clock_(clock) {}

void LogBook::connect(MessageSettings &settings, RunControl &runControl)
{
    settings_ = &settings;
    runControl_ = &runControl;
}

void LogBook::write(Line line, const QStringList &arguments)
{
    MessageSettings *const settings = settings_;
    const LineKind &kind = lineKinds[static_cast<std::size_t>(line)];
    if (!settings || !(settings->*kind.isOn)())
        return;
    const auto file = settings->logFileHandle();
    if (!file)
        return;
    const QString text = filledIn(kind.format, QStringList(dateString()) + arguments);
    if (!file->writeLine(encodeShiftJisLossy(text)))
        settings->logFileFailed();
}

void LogBook::writeReadRSSLog(const QString &address, int result)
{
    write(Line::ReadRSS, {address, resultText(result)});
}

void LogBook::writeReadCompleteLog(int count)
{
    write(Line::ReadComplete, {QString::number(count)});
}

void LogBook::writeReadRSSErrorLog(const QString &address, const ReadError &error)
{
    write(Line::ReadRSSError, {address, QString::number(error.code), error.domain});
}

void LogBook::writeDispStartLog()
{
    write(Line::DispStart);
}

void LogBook::writeDispMessageLog(const QString &line)
{
    write(Line::DispMessage, {line});
}

void LogBook::writeStringLog(const QString &text)
{
    write(Line::String, {text});
}

void LogBook::writeTimerStartLog(const QString &text)
{
    write(Line::TimerStart, {text});
}

void LogBook::writeTimerStopLog()
{
    write(Line::TimerStop);
}

void LogBook::writeWatchTimeBreakLog(const QString &place)
{
    write(Line::WatchTimeBreak, {place});
}

void LogBook::setDispRSSStateStopped()
{
    if (RunControl *const runControl = runControl_)
        runControl->setDispRSSState(0);
}

QString LogBook::dateString() const
{
    const LocalTime now = localTime(clock_.calendarNow());
    return QString::asprintf("%02d/%02d/%02d %02d:%02d:%02d", now.year - 2000, now.month, now.day,
                             now.hour, now.minute, now.second);
}

} // namespace qovelmor
