// SPDX-License-Identifier: MIT
#include "platform/PropertyListFile.h"

#include "platform/PropertyListGuard.h"
#include "platform/PropertyListWriter.h"
#include "platform/WholeFile.h"

#include <locale.h>
#include <plist/plist.h>

#include <cerrno>
#include <cstdlib>
#include <memory>

namespace qovelmor {

namespace {

// The library reads reals as the locale of the thread writes them.
class NumbersWithPoint
{
public:
    NumbersWithPoint() : before_(::uselocale(plainLocale())) {}
    ~NumbersWithPoint() { ::uselocale(before_); }
    NumbersWithPoint(const NumbersWithPoint &) = delete;
    NumbersWithPoint &operator=(const NumbersWithPoint &) = delete;

private:
    static locale_t plainLocale()
    {
        static const locale_t locale = ::newlocale(LC_ALL_MASK, "C", nullptr);
        return locale;
    }

    locale_t before_;
};

struct FreeList
{
    void operator()(void *node) const { plist_free(node); }
};
struct FreeMemory
{
    void operator()(char *bytes) const { std::free(bytes); }
};
using ListNode = std::unique_ptr<void, FreeList>;
using ListMemory = std::unique_ptr<char, FreeMemory>;

PropertyValue valueOf(plist_t node);

PropertyValue integerOf(plist_t node)
{
    uint64_t number = 0;
    plist_get_uint_val(node, &number);
    return static_cast<qint64>(number);
}

PropertyValue dateOf(plist_t node)
{
    int32_t seconds = 0;
    int32_t microseconds = 0;
    plist_get_date_val(node, &seconds, &microseconds);
    return QDateTime::fromSecsSinceEpoch(propertyListEpoch + seconds, Qt::UTC);
}

PropertyValue stringOf(plist_t node)
{
    uint64_t size = 0;
    const char *bytes = plist_get_string_ptr(node, &size);
    return QString::fromUtf8(bytes, static_cast<qsizetype>(size));
}

PropertyValue dataOf(plist_t node)
{
    uint64_t size = 0;
    const char *bytes = plist_get_data_ptr(node, &size);
    return QByteArray(bytes, static_cast<qsizetype>(size));
}

PropertyValue arrayOf(plist_t node)
{
    PropertyArray items;
    items.reserve(plist_array_get_size(node));
    plist_array_iter state = nullptr;
    plist_array_new_iter(node, &state);
    const std::unique_ptr<void, decltype(&std::free)> owner(state, &std::free);
    for (;;) {
        plist_t item = nullptr;
        plist_array_next_item(node, state, &item);
        if (item == nullptr)
            return items;
        items.push_back(valueOf(item));
    }
}

PropertyValue dictionaryOf(plist_t node)
{
    std::vector<PropertyEntry> entries;
    entries.reserve(plist_dict_get_size(node));
    plist_dict_iter state = nullptr;
    plist_dict_new_iter(node, &state);
    const std::unique_ptr<void, decltype(&std::free)> owner(state, &std::free);
    for (;;) {
        char *key = nullptr;
        plist_t item = nullptr;
        plist_dict_next_item(node, state, &key, &item);
        const ListMemory keyOwner(key);
        if (item == nullptr)
            return PropertyDictionary::fromUniqueEntries(std::move(entries));
        entries.push_back({QString::fromUtf8(key), valueOf(item)});
    }
}

PropertyValue valueOf(plist_t node)
{
    switch (plist_get_node_type(node)) {
    case PLIST_BOOLEAN: {
        uint8_t flag = 0;
        plist_get_bool_val(node, &flag);
        return flag != 0;
    }
    case PLIST_UINT:
        return integerOf(node);
    case PLIST_REAL: {
        double number = 0.0;
        plist_get_real_val(node, &number);
        return number;
    }
    case PLIST_DATA:
        return dataOf(node);
    case PLIST_DATE:
        return dateOf(node);
    case PLIST_ARRAY:
        return arrayOf(node);
    case PLIST_DICT:
        return dictionaryOf(node);
    default:
        return stringOf(node);
    }
}

} // namespace

std::optional<PropertyValue> parsePropertyList(const QByteArray &document,
                                               const PropertyListLimits &limits)
{
    constexpr QByteArrayView byteOrderMark("\xEF\xBB\xBF");
    const QByteArray bytes =
        document.startsWith(byteOrderMark) ? document.sliced(byteOrderMark.size()) : document;
    if (!isSafePropertyList(bytes, limits))
        return std::nullopt;
    const NumbersWithPoint numbers;
    plist_t node = nullptr;
    plist_from_xml(bytes.constData(), static_cast<uint32_t>(bytes.size()), &node);
    const ListNode owner(node);
    if (!owner)
        return std::nullopt;
    return valueOf(owner.get());
}

std::optional<QByteArray> writePropertyList(const PropertyValue &root,
                                            const PropertyListLimits &limits)
{
    PropertyListWriter writer(limits);
    return writer.write(root) ? std::optional(writer.document()) : std::nullopt;
}

PropertyListContent readPropertyListFile(const QString &path, const PropertyListLimits &limits)
{
    const FileContent content = readWholeFile(path, limits.bytes);
    if (content.error != 0)
        return {std::nullopt, content.error};
    return {parsePropertyList(content.bytes, limits), 0};
}

int writePropertyListFile(const QString &path, const PropertyValue &root,
                          const PropertyListLimits &limits)
{
    const auto bytes = writePropertyList(root, limits);
    return bytes ? writeWholeFile(path, *bytes) : EFBIG;
}

} // namespace qovelmor
