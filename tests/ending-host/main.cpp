// ending_host --product=NAME SCENARIO
// Loads the library as any host would, uses it, and ends as the scenario says; with 42 when all was as it should be.

#include <cstdio>
#include <exception>
#include <string>

#include "CEndingHost.h"
#include "Scenarios.h"

int main(int argumentCount, char** arguments) {
    std::setvbuf(stdout, nullptr, _IONBF, 0);
    const std::string option = "--product=";
    if (argumentCount != 3 || std::string(arguments[1]).compare(0, option.size(), option) != 0) {
        std::printf("usage: ending_host --product=NAME SCENARIO\n");
        return 2;
    }
    try {
        const std::string product = std::string(arguments[1]).substr(option.size());
        // Never deleted: the library keeps some of the host's objects to the process's end.
        auto* const host = new CEndingHost(std::wstring(product.begin(), product.end()));
        RunScenario(arguments[2], *host);
        return host->GetExitCode();
    } catch (const std::exception& failure) {
        std::printf("NOT SO: %s\n", failure.what());
        return 1;
    }
}
