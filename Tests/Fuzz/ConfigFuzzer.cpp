#include "Tests/Support/ConfigProperties.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>

// The name is that of libFuzzer's interface.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    if (const std::optional<std::string> broken = tarvex::findBrokenConfigRule(text)) {
        std::fprintf(stderr, "Broken rule: %s\n", broken->c_str());
        std::abort();
    }
    return 0;
}
