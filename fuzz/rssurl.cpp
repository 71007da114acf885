// SPDX-License-Identifier: MIT
// Any bytes as an import file, and as each of the link files that can be dropped.
#include "FuzzTarget.h"
#include "feeds/AddressFile.h"
#include "feeds/WebLocation.h"

using namespace qovelmor;
using namespace qovelmor::fuzz;

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes = bytesOf(data, size);
    const QString path = fileWith(bytes, "list.rssurl");
    if (const auto addresses = readAddressFile(path)) {
        promise(writeAddressFile(path, *addresses), "what was imported can be exported");
        promise(readAddressFile(path) == addresses, "and imported again");
    }
    for (const char *name : {"link.webloc", "link.url", "link.desktop"})
        urlInLinkFile(fileWith(bytes, name));
    return 0;
}
