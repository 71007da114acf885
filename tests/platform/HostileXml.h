// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <vector>

namespace qovelmor {

/// What must come of a document.
enum class XmlOutcome { Either, Error, Result };

struct HostileXml
{
    QByteArray name;
    QByteArray xml;
    XmlOutcome outcome = XmlOutcome::Either;
};

/// Documents that ask for more than they should get: depth, width, names, entities, namespaces.
/// `full` is how many bytes the large ones have.
std::vector<HostileXml> greedyDocuments(qsizetype full);

/// Documents with one zero byte, one byte that XML forbids, or one broken nesting in each place.
std::vector<HostileXml> damagedDocuments();

/// Texts in each encoding declared as each other one.
std::vector<HostileXml> lyingDocuments();

/// Documents that try to have `file` and `web` read (both are addresses) in every way there is.
std::vector<HostileXml> reachingDocuments(const QByteArray &file, const QByteArray &web);

} // namespace qovelmor
