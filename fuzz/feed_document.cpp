// SPDX-License-Identifier: MIT
// A feed's document, from its bytes to the four lists of a read.
#include "FuzzTarget.h"
#include "feeds/FeedExtraction.h"
#include "feeds/FeedFormat.h"
#include "feeds/TextCleanup.h"

using namespace qovelmor;
using namespace qovelmor::fuzz;

namespace {

QString cleaned(const QString &text)
{
    int passes = 0;
    return withoutMarkup(text, [&passes] { return ++passes > 10'000; }).value_or(QString());
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    XmlParseResult parsed = XmlDocument::parse(bytesOf(data, size));
    if (!parsed.document) {
        promise(parsed.failure.line >= 1, "a failure has a line");
        promise(!parsed.failure.cause.isEmpty(), "a failure has a cause");
        return 0;
    }
    const XmlFeedDocument document(std::move(parsed.document));
    for (const FeedFormat &format : feedFormats()) {
        FeedItems items;
        const Extraction result = extractItems(document, &format, &cleaned, items);
        promise(result == Extraction::Success || result == Extraction::NoTitles,
                "our own queries never fail");
        promise(items.dates.size() == items.titles.size(), "each title has a date");
    }
    return 0;
}
