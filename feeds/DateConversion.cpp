// SPDX-License-Identifier: MIT
#include "feeds/DateConversion.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <optional>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int hoursOfJapan = 9;
constexpr qsizetype w3cOffsetPosition = 19;
constexpr qsizetype rfc822OffsetPosition = 26;
constexpr qsizetype offsetLength = 3;
constexpr qsizetype longestZoneName = 5;

constexpr std::array monthNames{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
constexpr std::array dayNames{"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};

bool isDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}
bool isLetter(QChar c)
{
    return (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z');
}

/// Reads a text from its beginning; once something did not match, nothing matches any more.
class Scanner
{
public:
    explicit Scanner(QStringView text) : rest_(text) {}

    bool isGood() const { return isGood_; }
    bool isAtEnd() const { return isGood_ && rest_.isEmpty(); }

    void literal(QStringView expected)
    {
        if (rest_.startsWith(expected))
            rest_ = rest_.mid(expected.size());
        else
            isGood_ = false;
    }

    /// A number of exactly `digits` digits.
    int number(qsizetype digits)
    {
        if (rest_.size() < digits || !std::all_of(rest_.begin(), rest_.begin() + digits, isDigit)) {
            isGood_ = false;
            return 0;
        }
        int value = 0;
        for (const QChar digit : rest_.first(digits))
            value = value * 10 + digit.unicode() - u'0';
        rest_ = rest_.mid(digits);
        return value;
    }

    /// The place of the name in `names`, in either case.
    template <std::size_t Count>
    int name(const std::array<const char *, Count> &names)
    {
        for (std::size_t i = 0; i < Count; ++i) {
            if (rest_.startsWith(QLatin1StringView(names[i]), Qt::CaseInsensitive)) {
                rest_ = rest_.mid(3);
                return static_cast<int>(i);
            }
        }
        isGood_ = false;
        return 0;
    }

    /// "+hh:mm", "+hhmm", "+hh", "Z" or a zone's name, up to the end.
    void zone()
    {
        if (rest_.startsWith(u'+') || rest_.startsWith(u'-')) {
            rest_ = rest_.mid(1);
            number(2);
            if (rest_.startsWith(u':'))
                rest_ = rest_.mid(1);
            if (!rest_.isEmpty())
                number(2);
        } else if (!rest_.isEmpty() && rest_.size() <= longestZoneName &&
                   std::all_of(rest_.begin(), rest_.end(), isLetter)) {
            rest_ = {};
        } else {
            isGood_ = false;
        }
    }

private:
    QStringView rest_;
    bool isGood_ = true;
};

/// The clock reading of a date, before its offset is considered.
struct Reading
{
    int year = 0;
    int month = 0;
    int day = 0;
    int hour = 0;
    int minute = 0;
    int second = 0;
};

void scanTime(Scanner &scanner, Reading &reading)
{
    reading.hour = scanner.number(2);
    scanner.literal(u":");
    reading.minute = scanner.number(2);
    scanner.literal(u":");
    reading.second = scanner.number(2);
}

Reading scanW3c(Scanner &scanner)
{
    Reading reading;
    reading.year = scanner.number(4);
    scanner.literal(u"-");
    reading.month = scanner.number(2);
    scanner.literal(u"-");
    reading.day = scanner.number(2);
    scanner.literal(u"T");
    scanTime(scanner, reading);
    return reading;
}

Reading scanRfc822(Scanner &scanner)
{
    Reading reading;
    scanner.name(dayNames);
    scanner.literal(u", ");
    reading.day = scanner.number(2);
    scanner.literal(u" ");
    reading.month = scanner.name(monthNames) + 1;
    scanner.literal(u" ");
    reading.year = scanner.number(4);
    scanner.literal(u" ");
    scanTime(scanner, reading);
    scanner.literal(u" ");
    return reading;
}

bool exists(const Reading &reading)
{
    using namespace std::chrono;
    const year_month_day date{year(reading.year), month(static_cast<unsigned>(reading.month)),
                              day(static_cast<unsigned>(reading.day))};
    return date.ok() && reading.hour < 24 && reading.minute < 60 && reading.second <= 60;
}

std::optional<Reading> parse(const QString &text, int type)
{
    Scanner scanner(text);
    Reading reading;
    switch (type) {
    case datetype::w3c:
        reading = scanW3c(scanner);
        scanner.zone();
        break;
    case datetype::rfc822:
        reading = scanRfc822(scanner);
        scanner.zone();
        break;
    case datetype::atomUtc:
        reading = scanW3c(scanner);
        scanner.literal(u"Z");
        break;
    default:
        return std::nullopt;
    }
    if (!scanner.isAtEnd() || !exists(reading))
        return std::nullopt;
    return reading;
}

/// A day of one digit gets its zero, so that everything behind it stands in its fixed place.
void padDay(QString &text, int type)
{
    if (type != datetype::rfc822) {
        constexpr qsizetype day = 8;
        if (text.size() > day + 1 && isDigit(text[day]) && text[day + 1] == u'T')
            text.insert(day, u'0');
        return;
    }
    const qsizetype comma = text.indexOf(u',');
    if (comma < 0)
        return;
    qsizetype day = comma + 1;
    while (day < text.size() && text[day] == u' ')
        ++day;
    const bool isOneDigit = day + 1 < text.size() && isDigit(text[day]) && text[day + 1] == u' ';
    text.replace(comma + 1, day - comma - 1, isOneDigit ? u" 0"_s : u" "_s);
}

void dropFraction(QString &text)
{
    const qsizetype dot = text.indexOf(u'.');
    if (dot <= 0 || !isDigit(text[dot - 1]))
        return;
    qsizetype end = dot + 1;
    while (end < text.size() && isDigit(text[end]))
        ++end;
    text.remove(dot, end - dot);
}

/// The integer at the beginning of three characters, 0 when there is none ("EST", "Z").
int offsetHours(const QString &text, int type)
{
    if (type == datetype::atomUtc)
        return 0;
    const qsizetype position = type == datetype::w3c ? w3cOffsetPosition : rfc822OffsetPosition;
    const QStringView digits = QStringView(text).mid(position, offsetLength);
    if (digits.isEmpty())
        return 0;
    const bool isNegative = digits[0] == u'-';
    int value = 0;
    for (const QChar c : digits.mid(isNegative || digits[0] == u'+' ? 1 : 0)) {
        if (!isDigit(c))
            break;
        value = value * 10 + c.unicode() - u'0';
    }
    return isNegative ? -value : value;
}

} // namespace

QString dateText(int month, int day, int hour, int minute)
{
    QString text = u"00/00 00:00"_s;
    const auto put = [&text](qsizetype at, int value) {
        text[at] = QChar(u'0' + value / 10);
        text[at + 1] = QChar(u'0' + value % 10);
    };
    put(0, month);
    put(3, day);
    put(6, hour);
    put(9, minute);
    return text;
}

QString convertFeedDate(const QString &text, int type)
{
    QString form = text.trimmed();
    padDay(form, type);
    dropFraction(form);
    const auto reading = parse(form, type);
    if (!reading)
        return dateText(0, 0, 0, 0);

    using namespace std::chrono;
    const sys_days day{year(reading->year) / month(static_cast<unsigned>(reading->month)) /
                       std::chrono::day(static_cast<unsigned>(reading->day))};
    const auto shown = day + hours(reading->hour) + minutes(reading->minute) +
                       hours(hoursOfJapan - offsetHours(form, type));
    const auto shownDay = floor<days>(shown);
    const year_month_day date(shownDay);
    const hh_mm_ss time(shown - shownDay);
    return dateText(static_cast<int>(unsigned(date.month())),
                    static_cast<int>(unsigned(date.day())), static_cast<int>(time.hours().count()),
                    static_cast<int>(time.minutes().count()));
}

} // namespace qovelmor
