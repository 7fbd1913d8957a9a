#include <gtest/gtest.h>

#include <cstdio>

#include "CResourceLedger.h"
#include "CWatchdogListener.h"

int main(int argumentCount, char** arguments) {
    // Unbuffered: what a test wrote before it crashed or was ended is the part that matters.
    std::setvbuf(stdout, nullptr, _IONBF, 0);
    CResourceLedger::Get();  // counts from here on
    testing::InitGoogleTest(&argumentCount, arguments);
    testing::UnitTest::GetInstance()->listeners().Append(new CWatchdogListener);  // which owns it
    return RUN_ALL_TESTS();
}
