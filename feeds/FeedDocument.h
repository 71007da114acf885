// SPDX-License-Identifier: MIT
#pragma once

#include "platform/XmlDocument.h"

#include <memory>
#include <string_view>
#include <utility>

namespace qovelmor {

/// A feed's document as the reader asks it. A query of ours never fails on a real document; tests
/// answer with a document of theirs that does.
class FeedDocument
{
public:
    virtual ~FeedDocument() = default;

    virtual XmlQueryResult nodesForXPath(std::string_view query) const = 0;
};

/// The real one.
class XmlFeedDocument final : public FeedDocument
{
public:
    explicit XmlFeedDocument(std::unique_ptr<const XmlDocument> document)
        : document_(std::move(document))
    {}

    XmlQueryResult nodesForXPath(std::string_view query) const override
    {
        return document_->nodesForXPath(query);
    }

private:
    std::unique_ptr<const XmlDocument> document_;
};

} // namespace qovelmor
