#include "Benchmarks/Core/CoreBenchmarks.h"

#include <cstdio>
#include <exception>

int main(int argc, char** argv) {
    using namespace tarvex::benchmark;
    try {
        const Options options = parseOptions(argc, argv, {"decision", "scale"});
        Report report;
        if (options.wants("decision")) {
            measureDecision(options, report);
        }
        if (options.wants("scale")) {
            measureScale(options, report);
        }
        report.end();
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
