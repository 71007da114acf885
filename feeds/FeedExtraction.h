// SPDX-License-Identifier: MIT
#pragma once

#include "feeds/FeedDocument.h"

#include <QString>

#include <functional>
#include <vector>

namespace qovelmor {

struct FeedFormat;

/// What a document holds, as four lists that are matched by position only.
struct FeedItems
{
    std::vector<QString> titles;
    std::vector<QString> dates;        ///< one for each title, converted
    std::vector<QString> descriptions; ///< one for each item, without mark-up
    std::vector<QString> links;        ///< one for each link: an Atom entry may have several
};

/// The document's queries with the error slot that they share: an error of one query counts for all
/// that come after it.
class FeedQueries
{
public:
    explicit FeedQueries(const FeedDocument &document) : document_(document) {}

    /// No nodes after an error.
    std::vector<XmlNode> nodes(std::string_view path);

    bool hasFailed() const { return errorCode_ != 0; }
    int errorCode() const { return errorCode_; }
    int lastCount() const { return lastCount_; }

private:
    const FeedDocument &document_;
    int errorCode_ = 0;
    int lastCount_ = 0;
};

/// Cleans one description; empty when that could not be done.
using DescriptionCleaner = std::function<QString(const QString &)>;

/// The results of readHeadlines() that come from a document's contents.
enum class Extraction { Success, NoTitles, DateError, DescriptionError, LinkError };

/// Pulls the items out of a document of the kind given (null: unknown). What goes wrong is written
/// to the system log; `items` is only whole after Success.
Extraction extractItems(const FeedDocument &document, const FeedFormat *format,
                        const DescriptionCleaner &clean, FeedItems &items);

/// Whether an item has something that its description can come from.
bool hasSummary(const XmlNode &item);

} // namespace qovelmor
