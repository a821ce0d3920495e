#pragma once

#include "App/Toolkit/Form.h"
#include "Platform/Linux/Qt/SliderScale.h"

#include <QSlider>

namespace tarvex {

/// A slider of a form. It moves without ticks, goes where it is pressed, and tells assistive technology the
/// form's values instead of its steps.
class FormSlider final : public QSlider {
public:
    explicit FormSlider(QWidget& parent);

    /// Takes over the ends and the position.
    void setControl(const Control& control);

    [[nodiscard]] double controlValue() const { return scale_.valueOf(value()); }

    [[nodiscard]] const SliderScale& scale() const { return scale_; }

private:
    SliderScale scale_;
};

/// Lets assistive technology see the values of sliders as long as it lives.
class FormSliderAccessibility {
public:
    FormSliderAccessibility();
    FormSliderAccessibility(const FormSliderAccessibility&) = delete;
    FormSliderAccessibility& operator=(const FormSliderAccessibility&) = delete;
    FormSliderAccessibility(FormSliderAccessibility&&) = delete;
    FormSliderAccessibility& operator=(FormSliderAccessibility&&) = delete;
    ~FormSliderAccessibility();
};

} // namespace tarvex
