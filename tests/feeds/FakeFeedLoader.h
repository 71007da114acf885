// SPDX-License-Identifier: MIT
#pragma once

#include "feeds/FeedLoader.h"
#include "feeds/needs/ReadLog.h"

#include <deque>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace qovelmor {

/// A real document whose queries fail where the test says so.
class FailingDocument final : public FeedDocument
{
public:
    FailingDocument(std::unique_ptr<const XmlDocument> document,
                    std::map<std::string, int> failures)
        : document_(std::move(document)), failures_(std::move(failures))
    {}

    XmlQueryResult nodesForXPath(std::string_view query) const override
    {
        const auto failure = failures_.find(std::string(query));
        if (failure != failures_.end())
            return {{}, failure->second};
        return document_->nodesForXPath(query);
    }

private:
    std::unique_ptr<const XmlDocument> document_;
    std::map<std::string, int> failures_;
};

/// Answers with what the test has queued, and remembers what it was asked.
class FakeFeedLoader final : public FeedLoader
{
public:
    FeedLoad load(const FeedRequest &request) override
    {
        requests.push_back(request);
        if (answers_.empty())
            return ReadError{7, QStringLiteral("Transfer"), QStringLiteral("no answer queued")};
        FeedLoad answer = std::move(answers_.front());
        answers_.pop_front();
        return answer;
    }

    void answer(FeedLoad answer) { answers_.push_back(std::move(answer)); }

    /// The document must be well-formed.
    void answerWith(const QByteArray &xml, std::map<std::string, int> failures = {},
                    HttpValidators validators = {})
    {
        XmlParseResult parsed = XmlDocument::parse(xml);
        if (!parsed.document)
            qFatal("the test's document is not well-formed: %s", qPrintable(parsed.failure.cause));
        answer(LoadedFeed{std::make_shared<const FailingDocument>(std::move(parsed.document),
                                                                  std::move(failures)),
                          std::move(validators)});
    }

    std::vector<FeedRequest> requests;

private:
    std::deque<FeedLoad> answers_;
};

/// Keeps what readers report.
class RecordingLog final : public ReadLog
{
public:
    void writeReadRSSErrorLog(const QString &address, const ReadError &error) override
    {
        errors.emplace_back(address, error);
    }
    void writeWatchTimeBreakLog(const QString &place) override { watchBreaks.push_back(place); }

    std::vector<std::pair<QString, ReadError>> errors;
    std::vector<QString> watchBreaks;
};

} // namespace qovelmor
