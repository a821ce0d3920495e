#pragma once

#include "App/Toolkit/Scene.h"
#include "Core/Geometry.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tarvex {

/// The shadow that a control casts.
struct ControlShadow {
    Color color;
    /// Multiplies the alpha of the colour.
    double opacity = 0;
    /// How far it is blurred, in points.
    double radius = 0;
    /// In points, y up.
    Size offset;

    bool operator==(const ControlShadow&) const = default;
};

/// How a push button looks beyond what the system gives it. What is absent stays the system's.
struct ButtonStyle {
    /// The system's number for the bezel; 1 is rounded (Apple, NSBezelStyle).
    std::int32_t bezelStyle = 1;
    double alpha = 1;
    std::optional<Color> bezelColor;
    std::optional<Color> contentTintColor;
    std::optional<Color> titleColor;
    std::optional<Color> backgroundColor;
    /// In points.
    double cornerRadius = 0;
    double borderWidth = 0;
    std::optional<Color> borderColor;
    std::optional<ControlShadow> shadow;

    bool operator==(const ButtonStyle&) const = default;
};

/// What a control is to the person who uses it.
enum class ControlKind : std::uint8_t { label, slider, pushButton, checkbox };

/// Where a text stands in its frame; natural is the side at which its language begins.
enum class TextAlignment : std::uint8_t { natural, center };

/// The system's colours for text: that of labels, and a fainter one for what explains them.
enum class TextColor : std::uint8_t { label, secondaryLabel };

/// One control of a window, as a plain value.
struct Control {
    ControlKind kind = ControlKind::label;
    /// Tells the control apart from the others of its form, for as long as the form lives.
    std::string id;
    /// In view coordinates: points, origin at the bottom-left of the view, y up.
    Rect frame;
    /// The title or the text shown. UTF-8.
    std::string text;
    Font font;
    /// The position of a slider; 0 or 1 for a checkbox.
    double value = 0;
    /// The ends of a slider.
    double minimumValue = 0;
    double maximumValue = 1;
    TextAlignment alignment = TextAlignment::natural;
    TextColor textColor = TextColor::label;
    /// A label breaks its text between words, into as many lines as it takes.
    bool wrapsText = false;
    /// What a person is told who rests the pointer on it, or cannot see it. Empty for the text itself.
    std::string toolTip = {};
    /// What assistive technology calls it where the text alone would not tell it from other controls. Empty
    /// for the text, or the tool tip of a mere symbol.
    std::string accessibleName = {};
    bool isEnabled = true;
    bool isHidden = false;
    std::optional<ButtonStyle> buttonStyle = {};

    bool operator==(const Control&) const = default;
};

/// The controls on a view, each over the ones before it, and all over the view's picture.
struct Form {
    std::vector<Control> controls;

    bool operator==(const Form&) const = default;
};

} // namespace tarvex
