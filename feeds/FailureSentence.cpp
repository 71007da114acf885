// SPDX-License-Identifier: MIT
#include "feeds/FailureSentence.h"

#include "feeds/RSSReader.h"
#include "platform/Localization.h"
#include "platform/PlainText.h"

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

QString failureSentence(const RSSReader &reader)
{
    const QString cause = reader.lastErrorCause();
    if (cause.isEmpty())
        return {};
    // In one step: an address may hold "%2".
    return localized(u"FeedCannotBeRead"_s)
        .arg(lineForWindow(reader.address()), lineForWindow(cause));
}

} // namespace qovelmor
