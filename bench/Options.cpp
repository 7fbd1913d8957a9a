#include "Options.h"

#include <CLI/CLI.hpp>

#include <cstdio>

namespace {

constexpr int kBadOptions = 2;

}  // namespace

std::optional<Options> ReadOptions(int argumentCount, char** arguments, int& exitCode) {
    Options options;
    std::string product;
    CLI::App app("Measures how much longer the bridge takes than code that makes the same Java objects by hand.",
                 "telvar-bench");
    // The library itself looks for it in the command line.
    app.add_option("--product", product, "A name for the registry's keys of this run, which are removed at its end")
        ->required();
    app.add_option("--results", options.resultPath, "Writes what was measured to this file, as JSON")->take_last();
    app.add_option("--filter", options.filter, "Measures only workloads whose names contain this, and no start");
    app.add_flag("--quick", options.isQuick, "Measures one slice of each: shows that everything runs, no more");
    app.add_flag("--markdown", options.isMarkdown, "Prints the tables of docs/performance.md as well");
    app.add_flag("--strict", options.isStrict, "Fails where a ratio has passed its limit");
    app.add_option("--loop", options.loop, "Sends the first workload one way for ten seconds, for a profiler")
        ->check(CLI::IsMember({"floor", "bridge", "walk"}));
    app.add_option("--phase", options.phase, "For processes that the program starts itself")->group("");
    try {
        app.parse(argumentCount, arguments);
    } catch (const CLI::CallForHelp&) {
        std::fputs(app.help().c_str(), stdout);
        exitCode = 0;
        return std::nullopt;
    } catch (const CLI::ParseError& error) {
        std::fprintf(stderr, "telvar-bench: %s; --help tells the options\n", error.what());
        exitCode = kBadOptions;
        return std::nullopt;
    }
    return options;
}
