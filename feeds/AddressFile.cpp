// SPDX-License-Identifier: MIT
#include "feeds/AddressFile.h"

#include "platform/PropertyListFile.h"

#include <QFileInfo>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

/// Room for some ten thousand addresses; a list that long would take hours to read. It holds for
/// what is written too: an export that no import takes would be found out when it is needed.
constexpr PropertyListLimits limits{.bytes = 1024 * 1024, .depth = 8, .elements = 20'000};

PropertyArray listOf(const QStringList &addresses)
{
    return PropertyArray(addresses.begin(), addresses.end());
}

/// Systems that do not tell letter cases apart leave the extension in capitals, and the file is
/// there under no other name.
QString existingPath(const QString &chosenPath)
{
    const QFileInfo chosen(chosenPath);
    const bool isOfType = chosen.suffix().compare(addressFileType(), Qt::CaseInsensitive) == 0;
    return isOfType && chosen.exists() ? chosenPath : addressFilePath(chosenPath);
}

} // namespace

QString addressFileType()
{
    return u"rssurl"_s;
}

QString addressFilePath(const QString &chosenPath)
{
    const QFileInfo chosen(chosenPath);
    // The name of a hidden file (".list") is no extension.
    const bool hasExtension = !chosen.suffix().isEmpty() && !chosen.completeBaseName().isEmpty();
    const QString base = hasExtension ? chosenPath.chopped(chosen.suffix().size() + 1) : chosenPath;
    return base + u'.' + addressFileType();
}

std::optional<QStringList> readAddressFile(const QString &chosenPath)
{
    const PropertyListContent content = readPropertyListFile(existingPath(chosenPath), limits);
    const auto *entries = content.root ? content.root->get<PropertyArray>() : nullptr;
    if (!entries)
        return std::nullopt;
    QStringList addresses;
    for (const PropertyValue &entry : *entries) {
        if (const auto *address = entry.get<QString>())
            addresses << *address;
    }
    return addresses;
}

bool writeAddressFile(const QString &chosenPath, const QStringList &addresses)
{
    return writePropertyListFile(addressFilePath(chosenPath), listOf(addresses), limits) == 0;
}

bool isTooLongForAddressFile(const QStringList &addresses)
{
    return !writePropertyList(listOf(addresses), limits);
}

} // namespace qovelmor
