// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/HttpServer.h"

#include <QString>

#include <vector>

namespace qovelmor {

/// One way in which a server can answer a request for a feed wrongly.
struct HttpMisbehaviour
{
    const char *name;
    HttpServer::Reply reply;
    QString cause; ///< what the sentence for the user must contain
};

/// All of them. `feed` is a document that would be read if it came as it should; each answer spoils
/// it in a way that nobody can mistake for a whole document.
std::vector<HttpMisbehaviour> httpMisbehaviours(const QByteArray &feed);

/// The routes that redirections among them lead to.
void addMisbehavingRoutes(HttpServer &server);

} // namespace qovelmor
