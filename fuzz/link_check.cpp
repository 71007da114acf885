// SPDX-License-Identifier: MIT
// Any text as a link: what passes is fit to be handed to a browser as one argument.
#include "FuzzTarget.h"
#include "platform/LinkCheck.h"

#include <algorithm>

using namespace qovelmor;
using namespace qovelmor::fuzz;
using namespace Qt::Literals::StringLiterals;

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const auto url = checkedLink(QString::fromUtf8(bytesOf(data, size)));
    if (!url)
        return 0;
    const QByteArray text = url->toEncoded();
    promise(text.startsWith("http://") || text.startsWith("https://"), "http or https, no option");
    promise(!url->host().isEmpty(), "there is a host");
    promise(url->userInfo().isEmpty() && !url->authority().contains(u'@'), "no user part");
    promise(std::all_of(text.begin(), text.end(), [](char c) { return c > ' ' && c < 0x7f; }),
            "printable ASCII only");
    promise(checkedLink(QString::fromLatin1(text)).has_value(), "what passed passes again");
    return 0;
}
