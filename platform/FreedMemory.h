// SPDX-License-Identifier: MIT
#pragma once

namespace qovelmor {

/// For the start of main(): large blocks go back to the system as soon as they are freed, and
/// little stays at the end of a thread's pool. Left alone, the C library learns from each large
/// block that it may keep twice as much, up to 64 MiB for each thread.
void keepLittleFreedMemory();

/// Gives memory that the program has freed back to the system. The C library keeps what small
/// pieces were made of, in every thread's own pool: after a large document that is hundreds of
/// MiB. Takes some milliseconds: for the end of a job, not for each step.
void returnFreedMemory();

} // namespace qovelmor
