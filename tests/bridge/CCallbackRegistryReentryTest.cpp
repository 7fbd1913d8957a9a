#include "CCallbackRegistry.h"
#include "CallbackRegistryFixture.h"

namespace {

using Reports = CRecordingCallback::Reports;

/// Callbacks that change the registry, or report in their turn, while it calls or releases them.
class CCallbackRegistryReentryTest : public CCallbackRegistryFixture {};

TEST_F(CCallbackRegistryReentryTest, OfThoseRegisteredMeanwhileTheOnesFurtherOnHearIt) {
    Register(kServer, 1);
    WhenTold(1, [&] {
        Register(kServer, 0);
        Register(kServer, 2);
    });

    EXPECT_EQ(Call(kServer), S_OK);
    EXPECT_EQ(TakeHeard(), (Heard{1, 2}));
    EXPECT_EQ(Call(kServer), S_OK);
    EXPECT_EQ(TakeHeard(), (Heard{0, 1, 2}));
}

TEST_F(CCallbackRegistryReentryTest, AServerThatComesUpMeanwhileIsNotTold) {
    Register(kServer, 0);
    Register(kServer, 2);
    WhenTold(0, [&] {
        Register(kOther, 1);
        Register(kNowhere, 3);
    });

    EXPECT_EQ(Call(kOther), S_OK) << "the first server was the only one when the report began";

    EXPECT_EQ(TakeHeard(), (Heard{0, 2}));
}

TEST_F(CCallbackRegistryReentryTest, ACallbackMayUnregisterItselfAndLivesToItsReportsEnd) {
    Register(kServer, 0);
    Register(kServer, 1);
    bool isReleased = false;
    m_callbacks[0].SetLastRelease([&] { isReleased = true; });
    WhenTold(0, [&] {
        Unregister(kServer, 0);
        EXPECT_FALSE(isReleased);
        EXPECT_EQ(References(0), 1);
    });

    EXPECT_EQ(Call(kServer), S_OK);

    EXPECT_EQ(TakeHeard(), (Heard{0, 1}));
    EXPECT_TRUE(isReleased);
    EXPECT_EQ(References(0), 0);
    EXPECT_EQ(References(1), 1);
}

TEST_F(CCallbackRegistryReentryTest, ACallbackIsReferencedOnceMoreWhileItsReportRuns) {
    Register(kServer, 0);
    Register(kServer, 1);
    WhenTold(0, [&] {
        EXPECT_EQ(References(0), 2);
        EXPECT_EQ(References(1), 1);
    });

    EXPECT_EQ(Call(kServer), S_OK);

    EXPECT_EQ(References(0), 1);
}

TEST_F(CCallbackRegistryReentryTest, AnUnregisteredNextCallbackHearsNothing) {
    for (const std::size_t index : {0U, 1U, 2U}) {
        Register(kServer, index);
    }
    WhenTold(0, [&] { Unregister(kServer, 1); });

    EXPECT_EQ(Call(kServer), S_OK);

    EXPECT_EQ(TakeHeard(), (Heard{0, 2}));
    EXPECT_EQ(References(1), 0);
}

TEST_F(CCallbackRegistryReentryTest, AReportEndsWhenItsServerIsGone) {
    for (const std::size_t index : {0U, 1U, 2U}) {
        Register(kServer, index);
    }
    Register(kOther, 3);
    WhenTold(0, [&] {
        for (const std::size_t index : {0U, 1U, 2U}) {
            Unregister(kServer, index);
        }
    });

    EXPECT_EQ(Call(kServer), S_OK);

    EXPECT_EQ(TakeHeard(), Heard{0});
    EXPECT_EQ(References(0), 0);
    EXPECT_EQ(Call(kServer), S_OK) << "the other server is the only one now";
    EXPECT_EQ(TakeHeard(), Heard{3});
}

TEST_F(CCallbackRegistryReentryTest, AReportGoesOnWhenItsServerWasGoneForAWhile) {
    Register(kServer, 0);
    Register(kServer, 1);
    WhenTold(0, [&] {
        Unregister(kServer, 0);
        Unregister(kServer, 1);
        Register(kServer, 2);
    });

    EXPECT_EQ(Call(kServer), S_OK);

    EXPECT_EQ(TakeHeard(), (Heard{0, 2}));
}

TEST_F(CCallbackRegistryReentryTest, ACallbackMayReportInItsTurn) {
    Register(kServer, 0);
    Register(kServer, 1);
    bool isNested = false;
    WhenTold(0, [&] {
        if (!std::exchange(isNested, true)) {
            EXPECT_EQ(Call(kServer, L"nested"), S_OK);
        }
    });

    EXPECT_EQ(Call(kServer), S_OK);

    EXPECT_EQ(TakeHeard(), (Heard{0, 0, 1, 1}));
    EXPECT_EQ(m_callbacks[1].Told(), (Reports{{eStartup, L"nested"}, {eStartup, L"text"}}));
}

TEST_F(CCallbackRegistryReentryTest, ALastReleaseMayUnregisterAnotherCallback) {
    Register(kServer, 0);
    Register(kServer, 1);
    m_callbacks[0].SetLastRelease([&] { Unregister(kServer, 1); });

    Unregister(kServer, 0);

    EXPECT_EQ(References(0), 0);
    EXPECT_EQ(References(1), 0);
    EXPECT_EQ(Call(kServer), E_FAIL);
}

TEST_F(CCallbackRegistryReentryTest, ALastReleaseMayRegisterTheServerAnew) {
    Register(kServer, 0);
    m_callbacks[0].SetLastRelease([&] { Register(kServer, 1); });

    Unregister(kServer, 0);

    EXPECT_EQ(References(0), 0);
    EXPECT_EQ(Call(kServer), S_OK);
    EXPECT_EQ(TakeHeard(), Heard{1});
}

TEST_F(CCallbackRegistryReentryTest, ACallbackThatALastReleaseUnregistersMeanwhileHearsNothing) {
    for (const std::size_t index : {0U, 1U, 2U}) {
        Register(kServer, index);
    }
    m_callbacks[0].SetLastRelease([&] { Unregister(kServer, 1); });
    WhenTold(0, [&] { Unregister(kServer, 0); });

    EXPECT_EQ(Call(kServer), S_OK);

    EXPECT_EQ(TakeHeard(), (Heard{0, 2}));
    EXPECT_EQ(References(1), 0);
}

TEST_F(CCallbackRegistryReentryTest, WhatLastReleasesDoAtItsEndFindsItWhole) {
    Register(kServer, 0);
    Register(kServer, 1);
    Register(kOther, 2);
    Register(kNowhere, 3);
    CCallbackRegistry& registry = Registry();
    long released = 0;
    for (CRecordingCallback& callback : m_callbacks) {
        callback.SetLastRelease([&] {
            ++released;
            for (const ServerConfig& server : {kServer, kOther, kNowhere}) {
                for (CRecordingCallback& other : m_callbacks) {
                    registry.Unregister(server, &other);
                }
            }
        });
    }

    m_registry.reset();

    EXPECT_EQ(released, 4);
}

}  // namespace
