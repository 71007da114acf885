// SPDX-License-Identifier: MIT
// The mark-up rules on any text, and what the window makes of the result.
#include "FuzzTarget.h"
#include "feeds/TextCleanup.h"
#include "platform/PlainText.h"

#include <algorithm>

using namespace qovelmor;
using namespace qovelmor::fuzz;

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString text = QString::fromUtf8(bytesOf(data, size));
    // Each pass takes at least one mark away: more passes than characters would be a loop.
    qsizetype passes = 0;
    const CleanupWatch watch = [&] { return ++passes > text.size() + 100; };
    const auto plain = withoutMarkup(text, watch);
    promise(passes <= text.size() + 100, "the rules come to an end");
    if (!plain)
        return 0;
    promise(plain->size() <= text.size(), "clean-up never adds text");
    promise(!plain->contains(u'<'), "no opening mark is left");
    promise(std::none_of(plain->begin(), plain->end(), [](QChar c) { return c < u' '; }),
            "no control character is left");
    const auto head = withoutHeadSpace(*plain, [] { return false; });
    promise(head && !head->startsWith(u' ') && !head->startsWith(QChar(0x3000)), "no head blank");
    const auto tail = withoutTailSpace(*head, [] { return false; });
    promise(tail && !tail->endsWith(u' '), "no tail blank");
    promise(forWindow(forWindow(*tail)) == forWindow(*tail), "one pass is enough for the window");
    return 0;
}
