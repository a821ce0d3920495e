// Prints the names of the methods that a 64-bit Mach-O file mentions, sorted, one to a line.
// usage: TarvexListSelectors FILE

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <iostream>
#include <iterator>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>

namespace {

// The layout is that of <mach-o/loader.h>, as Apple documents it.
constexpr std::uint32_t magic64 = 0xFEEDFACF;
constexpr std::uint32_t segment64 = 0x19;
constexpr std::size_t headerSize = 32;
constexpr std::size_t segmentSize = 72;
constexpr std::size_t sectionSize = 80;

template <typename Number>
Number numberAt(std::string_view file, std::size_t offset) {
    Number number{};
    if (offset > file.size() || file.size() - offset < sizeof number) {
        throw std::runtime_error("the file ends too early");
    }
    std::memcpy(&number, file.data() + offset, sizeof number);
    return number;
}

void addNames(std::string_view texts, std::set<std::string>& names) {
    while (!texts.empty()) {
        const std::size_t length = std::min(texts.find('\0'), texts.size());
        if (length != 0) {
            names.emplace(texts.substr(0, length));
        }
        texts.remove_prefix(std::min(length + 1, texts.size()));
    }
}

void addSegment(std::string_view file, std::size_t segment, std::set<std::string>& names) {
    const auto count = numberAt<std::uint32_t>(file, segment + 64);
    for (std::size_t index = 0; index < count; ++index) {
        const std::size_t section = segment + segmentSize + index * sectionSize;
        const std::string_view name(file.substr(section, 16));
        if (name == std::string_view("__objc_methname\0", 16)) {
            addNames(file.substr(numberAt<std::uint32_t>(file, section + 48),
                                 numberAt<std::uint64_t>(file, section + 40)),
                     names);
        }
    }
}

std::set<std::string> selectorsOf(std::string_view file) {
    if (numberAt<std::uint32_t>(file, 0) != magic64) {
        throw std::runtime_error("not a 64-bit Mach-O file");
    }
    std::set<std::string> names;
    const auto commands = numberAt<std::uint32_t>(file, 16);
    std::size_t command = headerSize;
    for (std::uint32_t index = 0; index < commands; ++index) {
        if (numberAt<std::uint32_t>(file, command) == segment64) {
            addSegment(file, command, names);
        }
        command += numberAt<std::uint32_t>(file, command + 4);
    }
    return names;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: TarvexListSelectors FILE\n";
        return 2;
    }
    try {
        std::ifstream stream(argv[1], std::ios::binary);
        const std::string file{std::istreambuf_iterator<char>(stream), {}};
        for (const std::string& name : selectorsOf(file)) {
            std::cout << name << '\n';
        }
    } catch (const std::exception& error) {
        std::cerr << argv[1] << ": " << error.what() << '\n';
        return 1;
    }
    return 0;
}
