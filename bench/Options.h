#pragma once

#include <optional>
#include <string>

/// What the command line asks for.
struct Options {
    std::string resultPath;   ///< of the JSON; empty: none is written
    std::string filter;       ///< workloads whose names contain it; empty: all
    std::string loop;         ///< "floor", "bridge" or "walk": sends one way alone; empty: measures
    std::string phase;        ///< what a process of its own measures (see Phases.h); empty: this is the whole program
    bool isQuick = false;     ///< one slice of each, to see that everything runs
    bool isMarkdown = false;  ///< prints the document's tables as well
    bool isStrict = false;    ///< a passed limit is a failure
};

/// Reads this process's command line. Nothing when there is nothing to do: after a help text (`exitCode` is 0 then) or
/// a mistake, which has been reported.
[[nodiscard]] std::optional<Options> ReadOptions(int argumentCount, char** arguments, int& exitCode);
