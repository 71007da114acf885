// SPDX-License-Identifier: MIT
#include "platform/StoreFile.h"

#include "platform/PropertyListFile.h"
#include "platform/WholeFile.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr auto copySuffix = ".bak"_L1;

std::optional<PropertyDictionary> dictionaryIn(const PropertyListContent &content)
{
    const auto *values = content.root ? content.root->get<PropertyDictionary>() : nullptr;
    return values == nullptr ? std::nullopt : std::optional(*values);
}

} // namespace

StoreFile::StoreFile(const QString &path, FileCalls &calls) : path_(linkTarget(path)), calls_(calls)
{
    if (path_.isEmpty()) {
        path_ = path;
        refusal_ = ELOOP;
        return;
    }
    removeStrayTemporaries(path_);
}

StoreFile::Loaded StoreFile::load()
{
    Loaded loaded;
    const PropertyListContent content = readPropertyListFile(path_);
    if (content.error == ENOENT)
        return loaded;
    if (content.error != 0) {
        refusal_ = content.error;
        loaded.state = State::unreadable;
        loaded.error = content.error;
    } else if (auto values = dictionaryIn(content)) {
        loaded.state = State::good;
        loaded.values = std::move(*values);
        return loaded;
    } else {
        loaded.state = State::broken;
        isPresentBad_ = true;
        setAside();
        loaded.setAsidePath = asidePath_;
    }
    loadCopy(loaded);
    return loaded;
}

void StoreFile::loadCopy(Loaded &loaded)
{
    const FileContent copy = readWholeFile(path_ + copySuffix, PropertyListLimits{}.bytes);
    const auto root = copy.error == 0 ? parsePropertyList(copy.bytes) : std::nullopt;
    auto values = dictionaryIn({root, 0});
    if (values) {
        loaded.isCopy = true;
        loaded.values = std::move(*values);
    }
    if (asidePath_.isEmpty())
        return;
    // Where the copy cannot take the broken file's place, that stays until a save replaces it: a
    // missing file would read as an empty store at the next start.
    if (!values)
        isPresentBad_ = calls_.unlink(QFile::encodeName(path_).constData()) != 0;
    else if (replaceFileDurably(path_, copy.bytes, {}, calls_) == 0)
        isPresentBad_ = false;
}

int StoreFile::save(const PropertyDictionary &values)
{
    if (refusal_ != 0)
        return refusal_;
    if (isPresentBad_ && asidePath_.isEmpty()) {
        if (const int error = setAside(); error != 0 && error != ENOENT)
            return error;
    }
    const auto bytes = writePropertyList(values);
    if (!bytes)
        return EFBIG;
    QDir().mkpath(QFileInfo(path_).absolutePath());
    // A broken file must not take the last good copy's name.
    const QString copyPath = isPresentBad_ ? QString() : path_ + copySuffix;
    const int error = replaceFileDurably(path_, *bytes, copyPath, calls_);
    if (error == 0)
        isPresentBad_ = false;
    return error;
}

QString StoreFile::freeBrokenPath() const
{
    const QString dated =
        path_ + u".broken-"_s + QDateTime::currentDateTime().toString(u"yyyyMMdd-HHmmss"_s);
    QString name = dated;
    for (int i = 2; QFileInfo::exists(name); ++i)
        name = dated + u'-' + QString::number(i);
    return name;
}

// The broken file gets a second name; the first is replaced in one step later, so that there is no
// moment at which the store looks as if the user had deleted it.
int StoreFile::setAside()
{
    const QString aside = freeBrokenPath();
    const QByteArray from = QFile::encodeName(path_);
    const QByteArray to = QFile::encodeName(aside);
    if (calls_.link(from.constData(), to.constData()) != 0 &&
        calls_.rename(from.constData(), to.constData()) != 0)
        return errno;
    asidePath_ = aside;
    return syncFolderOf(path_, calls_);
}

} // namespace qovelmor
