#include "App/Shell/AboutViewController.h"

#include <string_view>
#include <utility>

namespace tarvex {

namespace {

constexpr const char* noVersion = "0.0.0";
constexpr Font nameFont{22, 700, false};
constexpr Font textFont{13, 400, false};

/// How far a label keeps from the view's sides, and from what is above it, in points.
struct Placement {
    double side;
    double above;
};

constexpr Placement namePlacement{20, 32};
constexpr Placement versionPlacement{20, 8};
constexpr Placement descriptionPlacement{24, 16};

std::string trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\n\v\f\r";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) {
        return "";
    }
    return std::string(text.substr(first, text.find_last_not_of(blanks) - first + 1));
}

} // namespace

AboutViewController::AboutViewController(const VersionProvider& appVersionProvider,
                                         TextMeasurer& textMeasurer)
    : textMeasurer_(&textMeasurer) {
    const std::string version = appVersionProvider();
    appNameLabel_ = makeLabel("appNameLabel", "Tarvex", nameFont);
    versionLabel_ = makeLabel("versionLabel", "Version " + (version.empty() ? noVersion : version), textFont);
    descriptionLabel_ =
        makeLabel("descriptionLabel", "A fast grid-based window tiling helper for macOS.", textFont);
    configureLabels();
}

std::string AboutViewController::defaultVersionProvider(BundleInformation& bundle) {
    if (const auto stated = bundle.shortVersionString(); stated && !stated->empty()) {
        return *stated;
    }
    const std::string packed = trimmed(bundle.versionFileText().value_or(""));
    return packed.empty() ? noVersion : packed;
}

Control AboutViewController::makeLabel(const char* id, std::string text, const Font& font) {
    Control label;
    label.kind = ControlKind::label;
    label.id = id;
    label.text = std::move(text);
    label.font = font;
    return label;
}

void AboutViewController::configureLabels() {
    for (Control* label : {&appNameLabel_, &versionLabel_, &descriptionLabel_}) {
        label->alignment = TextAlignment::center;
    }
    versionLabel_.textColor = TextColor::secondaryLabel;
    descriptionLabel_.textColor = TextColor::label;
}

Form AboutViewController::form(const Size& contentSize) {
    double top = contentSize.height;
    const auto place = [&](Control& label, const Placement& placement) {
        const double height = textMeasurer_->sizeOfText(label.text, label.font).height;
        top -= placement.above + height;
        label.frame = {placement.side, top, contentSize.width - 2 * placement.side, height};
    };
    place(appNameLabel_, namePlacement);
    place(versionLabel_, versionPlacement);
    place(descriptionLabel_, descriptionPlacement);
    return {{appNameLabel_, versionLabel_, descriptionLabel_}};
}

void AboutViewController::controlChanged(const std::string& /*id*/, double /*value*/) {}

} // namespace tarvex
