// SPDX-License-Identifier: MIT
#include "platform/PropertyValue.h"

#include <QLocale>

#include <algorithm>
#include <cmath>
#include <limits>

namespace qovelmor {

PropertyDictionary::PropertyDictionary() = default;
PropertyDictionary::~PropertyDictionary() = default;
PropertyDictionary::PropertyDictionary(const PropertyDictionary &) = default;
PropertyDictionary::PropertyDictionary(PropertyDictionary &&) noexcept = default;
PropertyDictionary &PropertyDictionary::operator=(const PropertyDictionary &) = default;
PropertyDictionary &PropertyDictionary::operator=(PropertyDictionary &&) noexcept = default;

PropertyDictionary::PropertyDictionary(std::initializer_list<PropertyEntry> entries)
{
    for (const PropertyEntry &entry : entries)
        set(entry.key, entry.value);
}

PropertyDictionary PropertyDictionary::fromUniqueEntries(std::vector<PropertyEntry> entries)
{
    PropertyDictionary dictionary;
    dictionary.entries_ = std::move(entries);
    return dictionary;
}

const PropertyValue *PropertyDictionary::find(const QString &key) const
{
    const auto found = std::find_if(entries_.begin(), entries_.end(),
                                    [&](const PropertyEntry &entry) { return entry.key == key; });
    return found == entries_.end() ? nullptr : &found->value;
}

void PropertyDictionary::set(const QString &key, PropertyValue value)
{
    for (PropertyEntry &entry : entries_) {
        if (entry.key == key) {
            entry.value = std::move(value);
            return;
        }
    }
    entries_.push_back({key, std::move(value)});
}

bool PropertyDictionary::remove(const QString &key)
{
    return std::erase_if(entries_, [&](const PropertyEntry &entry) { return entry.key == key; }) >
           0;
}

std::size_t PropertyDictionary::size() const
{
    return entries_.size();
}

std::optional<QString> PropertyDictionary::string(const QString &key) const
{
    const PropertyValue *value = find(key);
    const QString *text = value == nullptr ? nullptr : value->get<QString>();
    return text == nullptr ? std::nullopt : std::optional(*text);
}

bool PropertyDictionary::boolean(const QString &key) const
{
    const PropertyValue *value = find(key);
    return value != nullptr && value->toBool();
}

qint64 PropertyDictionary::integer(const QString &key) const
{
    const PropertyValue *value = find(key);
    return value == nullptr ? 0 : value->toInteger();
}

bool operator==(const PropertyDictionary &a, const PropertyDictionary &b)
{
    return a.entries_ == b.entries_;
}

PropertyValue::PropertyValue(bool value) : value_(value) {}
PropertyValue::PropertyValue(int value) : value_(qint64{value}) {}
PropertyValue::PropertyValue(qint64 value) : value_(value) {}
PropertyValue::PropertyValue(double value) : value_(value) {}
PropertyValue::PropertyValue(QString value) : value_(std::move(value)) {}
PropertyValue::PropertyValue(QByteArray value) : value_(std::move(value)) {}
PropertyValue::PropertyValue(QDateTime value) : value_(std::move(value)) {}
PropertyValue::PropertyValue(PropertyArray value)
    : value_(std::make_shared<const PropertyArray>(std::move(value)))
{}
PropertyValue::PropertyValue(PropertyDictionary value)
    : value_(std::make_shared<const PropertyDictionary>(std::move(value)))
{}

namespace {

bool isDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

// How many characters at the front of `text` form a decimal number.
qsizetype numberLength(QStringView text)
{
    qsizetype end = 0;
    const auto digits = [&] {
        const qsizetype begin = end;
        while (end < text.size() && isDigit(text[end]))
            ++end;
        return end - begin;
    };
    if (end < text.size() && (text[end] == u'-' || text[end] == u'+'))
        ++end;
    qsizetype count = digits();
    if (end < text.size() && text[end] == u'.') {
        ++end;
        count += digits();
    }
    if (count == 0)
        return 0;
    const qsizetype mantissaEnd = end;
    if (end < text.size() && (text[end] == u'e' || text[end] == u'E')) {
        ++end;
        if (end < text.size() && (text[end] == u'-' || text[end] == u'+'))
            ++end;
        if (digits() == 0)
            end = mantissaEnd;
    }
    return end;
}

double leadingNumber(const QString &text)
{
    const QStringView trimmed = QStringView(text).trimmed();
    return trimmed.first(numberLength(trimmed)).toDouble();
}

// Beyond what 64 bits hold the nearest limit stands in; "not a number" counts 0.
qint64 integerOf(double value)
{
    constexpr double limit = 9223372036854775808.0; // 2^63
    if (std::isnan(value))
        return 0;
    if (value >= limit)
        return std::numeric_limits<qint64>::max();
    if (value < -limit)
        return std::numeric_limits<qint64>::min();
    return static_cast<qint64>(value);
}

qint64 leadingInteger(const QString &text)
{
    const QStringView trimmed = QStringView(text).trimmed();
    const QStringView number = trimmed.first(numberLength(trimmed));
    bool isWhole = false;
    const qint64 value = number.toLongLong(&isWhole);
    return isWhole ? value : integerOf(number.toDouble());
}

bool saysYes(const QString &text)
{
    const QString word = text.trimmed();
    return word.compare(u"yes", Qt::CaseInsensitive) == 0 ||
           word.compare(u"true", Qt::CaseInsensitive) == 0 || leadingNumber(word) != 0.0;
}

} // namespace

bool PropertyValue::toBool() const
{
    if (const auto *flag = get<bool>())
        return *flag;
    if (const auto *text = get<QString>())
        return saysYes(*text);
    return toDouble() != 0.0;
}

qint64 PropertyValue::toInteger() const
{
    if (const auto *flag = get<bool>())
        return *flag ? 1 : 0;
    if (const auto *number = get<qint64>())
        return *number;
    if (const auto *real = get<double>())
        return integerOf(*real);
    if (const auto *text = get<QString>())
        return leadingInteger(*text);
    return 0;
}

double PropertyValue::toDouble() const
{
    if (const auto *flag = get<bool>())
        return *flag ? 1.0 : 0.0;
    if (const auto *number = get<qint64>())
        return static_cast<double>(*number);
    if (const auto *real = get<double>())
        return *real;
    if (const auto *text = get<QString>())
        return leadingNumber(*text);
    return 0.0;
}

std::optional<QString> PropertyValue::toText() const
{
    if (const auto *flag = get<bool>())
        return QString::number(*flag ? 1 : 0);
    if (const auto *number = get<qint64>())
        return QString::number(*number);
    if (const auto *real = get<double>())
        return QString::number(*real, 'g', QLocale::FloatingPointShortest);
    if (const auto *text = get<QString>())
        return *text;
    return std::nullopt;
}

bool operator==(const PropertyValue &a, const PropertyValue &b)
{
    return std::visit(
        [](const auto &left, const auto &right) {
            using Left = std::decay_t<decltype(left)>;
            if constexpr (!std::is_same_v<Left, std::decay_t<decltype(right)>>)
                return false;
            else if constexpr (requires { left.get(); })
                return left == right || *left == *right;
            else
                return left == right;
        },
        a.value_, b.value_);
}

} // namespace qovelmor
