// SPDX-License-Identifier: MIT
// Any bytes as a property list, and as the file of the defaults store.
#include "FuzzTarget.h"
#include "platform/PropertyListFile.h"
#include "platform/UserDefaults.h"

#include <QFile>

using namespace qovelmor;
using namespace qovelmor::fuzz;
using namespace Qt::Literals::StringLiterals;

namespace {

void readBackWhatIsWritten(const PropertyValue &value)
{
    const auto written = writePropertyList(value);
    promise(written.has_value(), "what was read can be written");
    const auto again = parsePropertyList(*written);
    promise(again.has_value(), "what was written can be read");
    promise(writePropertyList(*again) == written, "a second round changes nothing");
}

void askEverything(const UserDefaults &store, const QString &key)
{
    store.boolForKey(key);
    store.integerForKey(key);
    store.floatForKey(key);
    store.stringForKey(key);
    store.dataForKey(key);
    store.arrayForKey(key);
    store.dictionaryForKey(key);
}

/// Calls that take the time of a disk are left out: a fuzzer asks millions of times.
class UnsyncedCalls final : public FileCalls
{
public:
    int sync(int) override { return 0; }
};

void openAsStore(const QByteArray &bytes, const PropertyDictionary *values)
{
    clearFiles();
    const QString path = fileWith(bytes, "Store.plist");
    UnsyncedCalls calls;
    {
        UserDefaults store(path, calls);
        promise(store.openReport().wasBroken == (values == nullptr), "broken means no dictionary");
        promise(store.openReport().message.isEmpty() == (values != nullptr), "broken is said");
        if (values == nullptr) {
            QFile aside(store.openReport().setAsidePath);
            promise(aside.open(QIODevice::ReadOnly) && aside.readAll() == bytes, "kept aside");
            return;
        }
        for (const PropertyEntry &entry : values->entries())
            askEverything(store, entry.key);
        store.setInteger(7, u"its own"_s);
        promise(store.synchronize(), "the store can be saved");
    }
    const UserDefaults again(path, calls);
    promise(again.integerForKey(u"its own"_s) == 7, "the new value was saved");
    for (const PropertyEntry &entry : values->entries())
        promise(again.hasKey(entry.key), "unknown keys survive");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes = bytesOf(data, size);
    const auto value = parsePropertyList(bytes);
    if (value)
        readBackWhatIsWritten(*value);
    openAsStore(bytes, value ? value->get<PropertyDictionary>() : nullptr);
    return 0;
}
