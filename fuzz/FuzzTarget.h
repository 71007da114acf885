// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <cstdint>

/// One input. libFuzzer's own main (preset `fuzz`) or replay.cpp (every other build) calls it.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

namespace qovelmor::fuzz {

/// Ends the process with the name of the promise that does not hold; the caller keeps the input.
void promise(bool holds, const char *what);

/// The input as bytes that the code under test may keep and change.
QByteArray bytesOf(const std::uint8_t *data, std::size_t size);

/// A file of this name with these bytes in a folder of the process's own, in memory where the
/// system has such a place. For code that only takes paths.
QString fileWith(const QByteArray &bytes, const char *name);

/// Deletes everything in that folder.
void clearFiles();

} // namespace qovelmor::fuzz
