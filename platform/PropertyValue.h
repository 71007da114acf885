// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>

#include <memory>
#include <optional>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

namespace qovelmor {

class PropertyValue;
struct PropertyEntry;

using PropertyArray = std::vector<PropertyValue>;

/// A property list dictionary: string keys, unique, in the order in which they were first set.
class PropertyDictionary
{
public:
    PropertyDictionary();
    PropertyDictionary(std::initializer_list<PropertyEntry> entries);
    ~PropertyDictionary();
    PropertyDictionary(const PropertyDictionary &);
    PropertyDictionary(PropertyDictionary &&) noexcept;
    PropertyDictionary &operator=(const PropertyDictionary &);
    PropertyDictionary &operator=(PropertyDictionary &&) noexcept;

    /// For readers that know the keys to be unique: no search for each key.
    static PropertyDictionary fromUniqueEntries(std::vector<PropertyEntry> entries);

    /// Null when the key is absent. The pointer holds until the dictionary changes.
    const PropertyValue *find(const QString &key) const;
    void set(const QString &key, PropertyValue value);
    bool remove(const QString &key);

    const std::vector<PropertyEntry> &entries() const { return entries_; }
    std::size_t size() const;
    bool isEmpty() const { return size() == 0; }

    /// The string under `key`; nothing when the key is absent or holds another type.
    std::optional<QString> string(const QString &key) const;
    /// The value under `key` read as PropertyValue::toBool() and its kin read it; the default of
    /// the type when the key is absent.
    bool boolean(const QString &key) const;
    qint64 integer(const QString &key) const;

    friend bool operator==(const PropertyDictionary &, const PropertyDictionary &);

private:
    std::vector<PropertyEntry> entries_;
};

/// One value of a property list: the eight types that the format knows. A value never changes, so
/// copies share what is large: the store is copied for each save, with ten thousand messages in it.
class PropertyValue
{
public:
    template <typename T>
    using Shared = std::shared_ptr<const T>; ///< never null
    using Variant = std::variant<bool, qint64, double, QString, QByteArray, QDateTime,
                                 Shared<PropertyArray>, Shared<PropertyDictionary>>;

    PropertyValue(bool value);
    PropertyValue(int value);
    PropertyValue(qint64 value);
    PropertyValue(double value);
    PropertyValue(QString value);
    PropertyValue(QByteArray value);
    PropertyValue(QDateTime value);
    PropertyValue(PropertyArray value);
    PropertyValue(PropertyDictionary value);
    PropertyValue(const char *) = delete; // would become a boolean

    const Variant &variant() const { return value_; }
    template <typename T>
    const T *get() const
    {
        if constexpr (std::is_same_v<T, PropertyArray> || std::is_same_v<T, PropertyDictionary>) {
            const auto *shared = std::get_if<Shared<T>>(&value_);
            return shared ? shared->get() : nullptr;
        } else {
            return std::get_if<T>(&value_);
        }
    }

    /// Conversions between the scalar types: a boolean counts 0 or 1, a string gives its leading
    /// number ("YES", "true" and a non-zero number are true); a container gives the type's zero.
    bool toBool() const;
    qint64 toInteger() const;
    double toDouble() const;
    /// A number becomes its text; nothing for data, dates and containers.
    std::optional<QString> toText() const;

    friend bool operator==(const PropertyValue &, const PropertyValue &);

private:
    Variant value_;
};

struct PropertyEntry
{
    QString key;
    PropertyValue value;
    friend bool operator==(const PropertyEntry &, const PropertyEntry &) = default;
};

} // namespace qovelmor
