#include "Benchmarks/Support/Options.h"

#include <algorithm>
#include <stdexcept>

namespace tarvex::benchmark {

namespace {

bool contains(const std::vector<std::string>& names, const std::string& name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

} // namespace

bool Options::wants(const std::string& name) const {
    return only.empty() || contains(only, name);
}

Options parseOptions(int argc, char** argv, const std::vector<std::string>& names) {
    Options options;
    for (int index = 1; index < argc; ++index) {
        const std::string argument = argv[index];
        if (argument == "--quick") {
            options.isQuick = true;
        } else if (contains(names, argument)) {
            options.only.push_back(argument);
        } else {
            std::string usage = "usage: " + std::string(argv[0]) + " [--quick]";
            for (const std::string& name : names) {
                usage += " [" + name + "]";
            }
            throw std::invalid_argument(usage);
        }
    }
    return options;
}

} // namespace tarvex::benchmark
