#pragma once

#include <windows.h>

#include <cstddef>
#include <string>

/// How many interfaces the kit's objects implement; each has an index below this.
constexpr std::size_t kHostInterfaceCount = 13;

/// The index of an interface, or kHostInterfaceCount where it is none that the kit implements.
[[nodiscard]] std::size_t IndexHostInterface(REFIID interfaceId) noexcept;

/// The name of the interface with this index.
[[nodiscard]] const char* NameHostInterface(std::size_t index) noexcept;

/// The interface's name, or its ID as text where it is none that the kit implements.
[[nodiscard]] std::string DescribeInterface(REFIID interfaceId);
