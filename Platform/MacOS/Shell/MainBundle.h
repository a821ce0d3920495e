#pragma once

#include "App/Shell/BundleInformation.h"

namespace tarvex {

/// The bundle that the program was started from.
class MainBundle final : public BundleInformation {
public:
    [[nodiscard]] std::optional<std::string> shortVersionString() override;
    [[nodiscard]] std::optional<std::string> versionFileText() override;
};

} // namespace tarvex
