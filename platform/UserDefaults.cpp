// SPDX-License-Identifier: MIT
#include "platform/UserDefaults.h"

#include "platform/StoreFile.h"
#include "platform/WholeFile.h"

#include <QDir>
#include <QFileInfo>

#include <mutex>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

struct UserDefaults::Impl
{
    Impl(const QString &path, FileCalls &calls) : file(path, calls) {}

    const PropertyValue *find(const QString &key) const
    {
        const PropertyValue *value = written.find(key);
        return value != nullptr ? value : registered.find(key);
    }

    void write(const PropertyValue *present, PropertyValue value, const QString &key)
    {
        if (present != nullptr && *present == value)
            return;
        written.set(key, std::move(value));
        ++changes;
    }

    // The written value where it can answer for a scalar, else the registered one.
    template <typename Result, typename Question>
    Result scalar(const QString &key, Question question) const
    {
        const std::lock_guard lock(mutex);
        const PropertyValue *value = written.find(key);
        if (value == nullptr || !value->toText())
            value = registered.find(key);
        return value == nullptr ? Result() : question(*value);
    }

    mutable std::mutex mutex; ///< leaf: guards everything up to lastError
    PropertyDictionary written;
    PropertyDictionary registered;
    quint64 changes = 0;
    quint64 savedChanges = 0;
    QString lastError;

    std::mutex saving; ///< one save at a time; guards file
    StoreFile file;
};

namespace {

QString nameOf(const QString &path)
{
    return QFileInfo(path).fileName();
}

QString brokenText(const StoreFile::Loaded &loaded)
{
    const QString kept = loaded.setAsidePath.isEmpty()
                             ? u"設定ファイルが壊れています。"_s
                             : u"設定ファイルが壊れていたため「%1」として残しました。"_s.arg(
                                   nameOf(loaded.setAsidePath));
    return kept +
           (loaded.isCopy ? u"ひとつ前に保存した設定を使います。"_s : u"初期設定で始めます。"_s);
}

UserDefaults::OpenReport reportOf(const StoreFile::Loaded &loaded, const QString &path)
{
    UserDefaults::OpenReport report;
    report.wasRestored = loaded.isCopy;
    report.setAsidePath = loaded.setAsidePath;
    report.wasBroken = loaded.state == StoreFile::State::broken;
    if (report.wasBroken)
        report.message = brokenText(loaded);
    if (loaded.state == StoreFile::State::unreadable)
        report.message = u"設定ファイル「%1」を読み込めません(%2)。変更は保存されません。"_s.arg(
            path, fileErrorText(loaded.error));
    return report;
}

} // namespace

UserDefaults::UserDefaults(QString path, FileCalls &calls)
    : path_(std::move(path)), impl_(std::make_unique<Impl>(path_, calls))
{
    StoreFile::Loaded loaded = impl_->file.load();
    openReport_ = reportOf(loaded, path_);
    impl_->written = std::move(loaded.values);
}

UserDefaults::~UserDefaults() = default;

QString UserDefaults::defaultPath()
{
    // A relative path in the variable is invalid and ignored, as the base directory rules say.
    QString folder = qEnvironmentVariable("XDG_CONFIG_HOME");
    if (!QDir::isAbsolutePath(folder))
        folder = QDir::homePath() + u"/.config"_s;
    return QDir::cleanPath(folder + u"/QoVelmorRSS/QoVelmorRSS.plist"_s);
}

void UserDefaults::registerDefaults(const PropertyDictionary &defaults)
{
    const std::lock_guard lock(impl_->mutex);
    for (const PropertyEntry &entry : defaults.entries())
        impl_->registered.set(entry.key, entry.value);
}

bool UserDefaults::hasKey(const QString &key) const
{
    const std::lock_guard lock(impl_->mutex);
    return impl_->find(key) != nullptr;
}

bool UserDefaults::boolForKey(const QString &key) const
{
    return impl_->scalar<bool>(key, [](const PropertyValue &value) { return value.toBool(); });
}

qint64 UserDefaults::integerForKey(const QString &key) const
{
    return impl_->scalar<qint64>(key, [](const PropertyValue &value) { return value.toInteger(); });
}

double UserDefaults::floatForKey(const QString &key) const
{
    return impl_->scalar<double>(key, [](const PropertyValue &value) { return value.toDouble(); });
}

QString UserDefaults::stringForKey(const QString &key) const
{
    return impl_->scalar<QString>(
        key, [](const PropertyValue &value) { return value.toText().value_or(QString()); });
}

QByteArray UserDefaults::dataForKey(const QString &key) const
{
    const std::lock_guard lock(impl_->mutex);
    for (const PropertyDictionary *values : {&impl_->written, &impl_->registered}) {
        const PropertyValue *value = values->find(key);
        const QByteArray *bytes = value == nullptr ? nullptr : value->get<QByteArray>();
        if (bytes != nullptr)
            return *bytes;
    }
    return {};
}

std::optional<PropertyArray> UserDefaults::arrayForKey(const QString &key) const
{
    const auto value = valueForKey(key);
    const PropertyArray *items = value ? value->get<PropertyArray>() : nullptr;
    return items == nullptr ? std::nullopt : std::optional(*items);
}

std::optional<PropertyDictionary> UserDefaults::dictionaryForKey(const QString &key) const
{
    const auto value = valueForKey(key);
    const PropertyDictionary *entries = value ? value->get<PropertyDictionary>() : nullptr;
    return entries == nullptr ? std::nullopt : std::optional(*entries);
}

std::optional<PropertyValue> UserDefaults::valueForKey(const QString &key) const
{
    const std::lock_guard lock(impl_->mutex);
    const PropertyValue *value = impl_->find(key);
    return value == nullptr ? std::nullopt : std::optional(*value);
}

void UserDefaults::setBool(bool value, const QString &key)
{
    setValue(value, key);
}

void UserDefaults::setInteger(qint64 value, const QString &key)
{
    setValue(value, key);
}

void UserDefaults::setFloat(double value, const QString &key)
{
    setValue(value, key);
}

void UserDefaults::setString(const QString &value, const QString &key)
{
    setValue(value, key);
}

void UserDefaults::setData(const QByteArray &value, const QString &key)
{
    setValue(value, key);
}

void UserDefaults::setArray(PropertyArray value, const QString &key)
{
    setValue(std::move(value), key);
}

void UserDefaults::setDictionary(PropertyDictionary value, const QString &key)
{
    setValue(std::move(value), key);
}

void UserDefaults::setValue(PropertyValue value, const QString &key)
{
    const std::lock_guard lock(impl_->mutex);
    impl_->write(impl_->written.find(key), std::move(value), key);
}

void UserDefaults::setValueIfChanged(PropertyValue value, const QString &key)
{
    const std::lock_guard lock(impl_->mutex);
    impl_->write(impl_->find(key), std::move(value), key);
}

void UserDefaults::removeKey(const QString &key)
{
    const std::lock_guard lock(impl_->mutex);
    if (impl_->written.remove(key))
        ++impl_->changes;
}

bool UserDefaults::synchronize()
{
    const std::lock_guard savingLock(impl_->saving);
    PropertyDictionary values;
    quint64 changes = 0;
    {
        const std::lock_guard lock(impl_->mutex);
        if (impl_->changes == impl_->savedChanges)
            return true;
        values = impl_->written;
        changes = impl_->changes;
    }
    const int error = impl_->file.save(values);
    const std::lock_guard lock(impl_->mutex);
    if (error != 0) {
        impl_->lastError = u"設定を「%1」に保存できません(%2)。"_s.arg(path_, fileErrorText(error));
        return false;
    }
    impl_->savedChanges = changes;
    impl_->lastError.clear();
    return true;
}

QString UserDefaults::lastError() const
{
    const std::lock_guard lock(impl_->mutex);
    return impl_->lastError;
}

} // namespace qovelmor
