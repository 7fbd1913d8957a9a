#pragma once

/// True once the process is terminating: every other thread is gone by then, perhaps in the middle of holding a lock,
/// so nothing may be called, waited for or given back. False while a library is merely being unloaded.
/// Any thread; source of the rule: RtlDllShutdownInProgress and DllMain, Windows documentation.
[[nodiscard]] bool IsProcessEnding() noexcept;
