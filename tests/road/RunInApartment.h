#pragma once

#include <windows.h>

#include <gtest/gtest.h>
#include <objbase.h>

/// Runs `work` on the calling thread: every third one has an apartment of its own, every third one is in the common
/// one, and the others in none, which is the common one for them.
template <typename Work>
void RunInApartment(std::size_t index, const Work& work) {
    constexpr DWORD kApartments[] = {COINIT_APARTMENTTHREADED, COINIT_MULTITHREADED};
    const bool hasApartment = index % 3 < 2;
    if (hasApartment) {
        EXPECT_EQ(CoInitializeEx(nullptr, kApartments[index % 3]), S_OK);
    }
    work();
    if (hasApartment) {
        CoUninitialize();
    }
}
