#include "Tests/Support/X11/ScratchDirectory.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <stdexcept>
#include <sys/stat.h>
#include <system_error>

namespace tarvex::test {

ScratchDirectory::ScratchDirectory() {
    std::string name = (std::filesystem::temp_directory_path() / "tarvex-test-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) {
        throw std::runtime_error(std::string("mkdtemp: ") + std::strerror(errno));
    }
    path_ = name;
}

ScratchDirectory::~ScratchDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::filesystem::path ScratchDirectory::folder(const std::string& name) const {
    std::filesystem::path result = path_ / name;
    std::filesystem::create_directories(result);
    ::chmod(result.c_str(), S_IRWXU);
    return result;
}

std::filesystem::path ScratchDirectory::write(const std::filesystem::path& relativePath,
                                              const std::string& text) const {
    std::filesystem::path target = path_ / relativePath;
    std::filesystem::create_directories(target.parent_path());
    std::ofstream file(target, std::ios::binary);
    file << text;
    file.close();
    if (!file) {
        throw std::runtime_error("cannot write " + target.string());
    }
    return target;
}

} // namespace tarvex::test
