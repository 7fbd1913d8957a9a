#pragma once

#include "CRandom.h"
#include "HostileSampleTree.h"

/// Trees of a few nodes, most answers of which are healthy: a first answer that fails hides the rest.
[[nodiscard]] HostileTree MakeHostileTree(CRandom& random);

/// A sample with extended metrics: one node, no sessions.
[[nodiscard]] HostileTree MakeHostileExtendedTree(CRandom& random);

/// Values under names, read as `references` says.
[[nodiscard]] HostileValues MakeHostileValues(CRandom& random, References references);

[[nodiscard]] HostileBox MakeHostileBox(CRandom& random);
