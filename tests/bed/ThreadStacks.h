#pragma once

#include <windows.h>

/// Writes the call stack of every thread of this process to `output` (borrowed; console, file or pipe), this thread's
/// included: a line for the thread and one per frame, innermost first, with module, function, file and line as far as
/// they can be told.
///
/// Threads are stopped one at a time, only while their return addresses are copied, and run on before anything is
/// looked up or written. Calls from several threads follow one another. A thread that cannot be read (it has just
/// ended) gets a line without frames; a walk that leads nowhere ends there. The look-up allocates from the process
/// heap: a caller who suspects that somebody holds the heap's lock for ever needs a way out of its own.
void PrintAllThreadStacks(HANDLE output);

/// Writes the addresses that a PrintAllThreadStacks in another thread has collected, as offsets into their modules, for
/// when that call does not come back: its look-up waits for whoever holds the loader's lock. Allocates nothing and
/// takes no lock, so it must not meet the start of a further PrintAllThreadStacks. False when nothing is collected yet.
bool PrintCollectedStacksPlainly(HANDLE output);
