#pragma once

#include <string>
#include <vector>

/// What the contract's stand-ins were asked so far, in order, told by the Java machine of this process itself, reached
/// without anything of the product's. Any thread; one that Java does not know is attached for as long as it asks.
/// Throws std::runtime_error where there is no machine.
[[nodiscard]] std::vector<std::string> TellJavaCalls();

/// How often a call was noted that begins like this.
[[nodiscard]] long CountJavaCalls(const std::string& beginning);

/// Live threads that the machine knows, attached native ones included.
[[nodiscard]] int CountJavaThreads();

/// Bytes of the machine's heap that are in use when what nobody refers to has been collected.
[[nodiscard]] long long CountJavaHeap();

/// Global JNI references that anyone holds, the machine itself included, as its diagnostic command tells them.
[[nodiscard]] int CountJavaGlobalReferences();
