// SPDX-License-Identifier: MIT
#pragma once

#include "platform/HttpClient.h"

#include <curl/curl.h>

namespace qovelmor {

/// Why HttpClient itself ended a transfer, if it did.
enum class HttpBreak { None, Aborted, Idle, BodyTooLarge, HeadersTooLarge };

/// The failed transfer as an error whose cause a person understands. `transfer` is the easy handle
/// after the transfer; `code` what libcurl made of it.
HttpError httpFailure(CURL *transfer, CURLcode code, HttpBreak ended, const HttpLimits &limits);

/// The error of an answer with a status of 400 or above.
HttpError httpStatusFailure(CURL *transfer, int status);

} // namespace qovelmor
