#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "RoadItems.h"
#include "Soak.h"

/// The calls of one of the soak's threads. What comes of each is checked at once, as far as it can be told.
class CSoakCaller {
public:
    /// @param seed       of this thread's mixture of calls
    /// @param configPath of the registry, where this thread's own server is to be found
    CSoakCaller(Soak& soak, unsigned seed, std::wstring configPath);

    static constexpr std::size_t kAllKinds = SIZE_MAX;

    /// An item of each of so many kinds, a callback that comes and goes, and a look at the configuration.
    void RunRound(std::size_t kinds = kAllKinds);

    /// An item of each kind but the start-up, to `server`, on the one thread that there is.
    void SendEachTo(SoakedServer& server);
    long Poll();
    /// To the first server, by whoever holds the lock of the calls alone.
    long PollFirstAlone();

    /// Looks its server up in the configuration.
    void FindServer() const;

private:
    void SendStartup();
    void ListenForALogon();

    /// The first server, or, in a storm, now and then the second.
    [[nodiscard]] SoakedServer& PickServer();
    [[nodiscard]] std::vector<RoadItem> MakeItems();
    [[nodiscard]] RoadItem MakeItem(unsigned char type);
    long Send(const RoadItem& item);
    long SendNow(SoakedServer& server, const std::wstring& token, const RoadItem& item);
    void NoteAction(const SoakedServer& server, const RoadItem& item);

    Soak& m_soak;
    const std::wstring m_configPath;
    std::minstd_rand m_random;
};
