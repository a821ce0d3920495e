#include "Platform/Linux/Qt/FormSlider.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QProxyStyle>

namespace tarvex {

namespace {

/// The application's style, but for what a press beside the handle does.
class SliderStyle final : public QProxyStyle {
public:
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* data) const override {
        if (hint == SH_Slider_AbsoluteSetButtons) {
            return Qt::LeftButton | Qt::MiddleButton;
        }
        return hint == SH_Slider_PageSetButtons ? int{Qt::NoButton}
                                                : QProxyStyle::styleHint(hint, option, widget, data);
    }
};

class AccessibleSlider final : public QAccessibleWidget, public QAccessibleValueInterface {
public:
    explicit AccessibleSlider(FormSlider& slider)
        : QAccessibleWidget(&slider, QAccessible::Slider), slider_(&slider) {}

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ValueInterface ? static_cast<QAccessibleValueInterface*>(this)
                                                   : QAccessibleWidget::interface_cast(type);
    }

    QString text(QAccessible::Text text) const override {
        return text == QAccessible::Value ? QString::number(slider_->controlValue())
                                          : QAccessibleWidget::text(text);
    }

    QVariant currentValue() const override { return slider_->controlValue(); }

    void setCurrentValue(const QVariant& value) override {
        slider_->setValue(slider_->scale().stepOf(value.toDouble()));
    }

    QVariant maximumValue() const override { return slider_->scale().maximum(); }

    QVariant minimumValue() const override { return slider_->scale().minimum(); }

    QVariant minimumStepSize() const override {
        const SliderScale& scale = slider_->scale();
        return scale.valueOf(scale.keyStep()) - scale.minimum();
    }

private:
    FormSlider* slider_;
};

QAccessibleInterface* makeInterface(const QString& /*className*/, QObject* object) {
    auto* const slider = dynamic_cast<FormSlider*>(object);
    return slider != nullptr ? new AccessibleSlider(*slider) : nullptr;
}

} // namespace

FormSlider::FormSlider(QWidget& parent) : QSlider(Qt::Horizontal, &parent) {
    setTracking(true);
    setTickPosition(NoTicks);
    setFocusPolicy(Qt::StrongFocus);
    auto* const style = new SliderStyle;
    style->setParent(this);
    setStyle(style);
}

void FormSlider::setControl(const Control& control) {
    scale_ = SliderScale(control.minimumValue, control.maximumValue);
    setRange(0, scale_.last());
    setSingleStep(scale_.keyStep());
    setPageStep(scale_.pageStep());
    setValue(scale_.stepOf(control.value));
}

FormSliderAccessibility::FormSliderAccessibility() {
    QAccessible::installFactory(&makeInterface);
}

FormSliderAccessibility::~FormSliderAccessibility() {
    QAccessible::removeFactory(&makeInterface);
}

} // namespace tarvex
