#pragma once

#include <optional>
#include <string>

namespace tarvex {

/// Port: what the program was packed with. Nothing throws.
class BundleInformation {
public:
    BundleInformation() = default;
    BundleInformation(const BundleInformation&) = delete;
    BundleInformation& operator=(const BundleInformation&) = delete;
    BundleInformation(BundleInformation&&) = delete;
    BundleInformation& operator=(BundleInformation&&) = delete;
    virtual ~BundleInformation() = default;

    /// The version that the package states; none when it states none.
    [[nodiscard]] virtual std::optional<std::string> shortVersionString() = 0;

    /// The text of the packed file "VERSION" (UTF-8); none when it cannot be read.
    [[nodiscard]] virtual std::optional<std::string> versionFileText() = 0;
};

} // namespace tarvex
