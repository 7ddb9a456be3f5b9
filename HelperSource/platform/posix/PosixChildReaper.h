#pragma once

#include <sys/types.h>

namespace orvane {

/// Takes a child process over that nobody waits for any more, so that it leaves no zombie when it ends: a small thread
/// sleeps until then. Where no thread can be had, the child is looked after at the next calls. Sends no signal. Any thread.
void PosixReapWhenEnded(pid_t child);

/// Reaps what has ended of the children that have no thread. Never blocks.
void PosixReapEnded();

} // namespace orvane
