#pragma once

#include "App/Shell/BundleInformation.h"
#include "App/Toolkit/FormWindow.h"
#include "App/Toolkit/TextMeasurer.h"

#include <functional>
#include <string>

namespace tarvex {

/// The name, the version and a line about the program.
class AboutViewController final : public FormOwner {
public:
    using VersionProvider = std::function<std::string()>;

    /// @param appVersionProvider asked once, here; an empty answer becomes "0.0.0"
    /// @param textMeasurer must outlive the controller
    AboutViewController(const VersionProvider& appVersionProvider, TextMeasurer& textMeasurer);

    /// The version that the package states, else that of its file "VERSION", else "0.0.0".
    [[nodiscard]] static std::string defaultVersionProvider(BundleInformation& bundle);

    [[nodiscard]] Form form(const Size& contentSize) override;
    void controlChanged(const std::string& id, double value) override;

private:
    [[nodiscard]] static Control makeLabel(const char* id, std::string text, const Font& font);
    void configureLabels();

    TextMeasurer* textMeasurer_;
    Control appNameLabel_;
    Control versionLabel_;
    Control descriptionLabel_;
};

} // namespace tarvex
