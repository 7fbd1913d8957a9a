#pragma once

#include <windows.h>

#include <unknwn.h>

#include <string>
#include <vector>

#include "CKitItems.h"
#include "CLeanHost.h"

/// One item that is sent again and again.
struct Workload {
    std::string name;
    std::string content;  ///< what there is in it
    unsigned char type;
    IUnknown* data;           ///< the host's
    int metrics;              ///< in it
    bool isLean = false;      ///< its objects, the machine's sessions among them, are the lean host's own
    bool isHostSlow = false;  ///< the host's service object leads to the other objects, and has none of them itself
};

// The samples whose ratios have goals.
inline constexpr char kEmpty[] = "empty";
inline constexpr char kSmall[] = "small";
inline constexpr char kServer[] = "server";
inline constexpr char kLarge[] = "large";
inline constexpr char kManySessions[] = "800 sessions";

/// All of them, of `items`, and for comparison some with objects of `host`, which costs less than real ones can.
[[nodiscard]] std::vector<Workload> MakeWorkloads(CKitItems& items, CLeanHost& host);
