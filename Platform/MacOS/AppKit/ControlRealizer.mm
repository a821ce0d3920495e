#include "Platform/MacOS/AppKit/ControlRealizer.h"

#include "Platform/MacOS/AppKit/NativeButton.h"
#include "Platform/MacOS/AppKit/NativeColors.h"
#include "Platform/MacOS/AppKit/NativeFonts.h"
#include "Platform/MacOS/AppKit/NativeGeometry.h"
#include "Platform/MacOS/AppKit/NativeLabel.h"
#include "Platform/MacOS/AppKit/NativeText.h"

#include <utility>

namespace tarvex {

namespace {

bool hasWords(const std::string& text) {
    const auto string = makeString(text);
    const NSRange found = [string.get() rangeOfCharacterFromSet:[NSCharacterSet alphanumericCharacterSet]];
    return found.location != NSNotFound;
}

/// What assistive technology is to call a control that does not say it itself. Labels, buttons and boxes
/// speak their text; a slider shows none, and a symbol alone says nothing to who hears it. Empty for the
/// control's own.
std::string spokenName(const Control& control) {
    if (!control.accessibleName.empty()) {
        return control.accessibleName;
    }
    if (!control.toolTip.empty() && !hasWords(control.text)) {
        return control.toolTip;
    }
    return control.kind == ControlKind::slider ? control.text : std::string();
}

class LabelRealizer final : public ControlRealizer {
public:
    LabelRealizer() : LabelRealizer([[TarvexLabel alloc] initWithFrame:NSZeroRect]) {}

    LabelRealizer(const LabelRealizer&) = delete;
    LabelRealizer& operator=(const LabelRealizer&) = delete;
    LabelRealizer(LabelRealizer&&) = delete;
    LabelRealizer& operator=(LabelRealizer&&) = delete;

    ~LabelRealizer() override { [field_ tarvexSetWords:nullptr]; }

protected:
    void show(const Control& control) override {
        [field_ setStringValue:makeString(control.text).get()];
        [field_ setTextColor:nativeColor(control.textColor)];
        [field_ setAlignment:control.alignment == TextAlignment::center ? NSTextAlignmentCenter
                                                                        : NSTextAlignmentNatural];
        [[field_ cell] setWraps:control.wrapsText ? YES : NO];
        [[field_ cell]
            setLineBreakMode:control.wrapsText ? NSLineBreakByWordWrapping : NSLineBreakByClipping];
        const std::string name = spokenName(control);
        words_ = name.empty() ? ObjCHandle<NSString*>() : makeString(name);
    }

private:
    explicit LabelRealizer(TarvexLabel* field)
        : ControlRealizer(ObjCHandle<NSControl*>::adopt(field)), field_(field) {
        [field setEditable:NO];
        [field setSelectable:NO];
        [field setBordered:NO];
        [field setBezeled:NO];
        [field setDrawsBackground:NO];
        [field tarvexSetWords:&words_];
    }

    TarvexLabel* field_;
    ObjCHandle<NSString*> words_;
};

class SliderRealizer final : public ControlRealizer {
public:
    explicit SliderRealizer(Used used)
        : SliderRealizer([[NSSlider alloc] initWithFrame:NSZeroRect], std::move(used)) {}

protected:
    void show(const Control& control) override {
        [slider_ setMinValue:control.minimumValue];
        [slider_ setMaxValue:control.maximumValue];
        // A drag of the knob that is going on is not to be disturbed.
        if ([slider_ doubleValue] != control.value) {
            [slider_ setDoubleValue:control.value];
        }
    }

private:
    SliderRealizer(NSSlider* slider, Used used)
        : ControlRealizer(ObjCHandle<NSControl*>::adopt(slider)), slider_(slider) {
        [slider setContinuous:YES];
        [slider setNumberOfTickMarks:0];
        [slider setAllowsTickMarkValuesOnly:NO];
        listen([slider, used = std::move(used)] { used([slider doubleValue]); });
    }

    NSSlider* slider_;
};

class ButtonRealizer final : public ControlRealizer {
public:
    ButtonRealizer(NSButtonType type, FirstClick firstClick, Used used)
        : ButtonRealizer([[TarvexButton alloc] initWithFrame:NSZeroRect], type, std::move(used)) {
        [button_ tarvexSetTakesFirstClick:firstClick == FirstClick::counts ? YES : NO];
    }

    ButtonRealizer(const ButtonRealizer&) = delete;
    ButtonRealizer& operator=(const ButtonRealizer&) = delete;
    ButtonRealizer(ButtonRealizer&&) = delete;
    ButtonRealizer& operator=(ButtonRealizer&&) = delete;

    ~ButtonRealizer() override { [button_ tarvexSetAppearanceChanged:nullptr]; }

protected:
    void show(const Control& control) override {
        [button_ setTitle:makeString(control.text).get()];
        if (isCheckbox_) {
            [button_ setState:control.value != 0 ? NSControlStateValueOn : NSControlStateValueOff];
        } else {
            style_ = control.buttonStyle.value_or(ButtonStyle{});
            applyButtonStyle(button_, control, style_);
        }
    }

private:
    ButtonRealizer(TarvexButton* button, NSButtonType type, Used used)
        : ControlRealizer(ObjCHandle<NSControl*>::adopt(button)),
          button_(button),
          isCheckbox_(type == NSButtonTypeSwitch) {
        [button setButtonType:type];
        [button tarvexSetAppearanceChanged:&appearanceChanged_];
        listen([button, isCheckbox = isCheckbox_, used = std::move(used)] {
            used(isCheckbox && [button state] == NSControlStateValueOn ? 1 : 0);
        });
    }

    TarvexButton* button_;
    bool isCheckbox_;
    ButtonStyle style_;
    std::function<void()> appearanceChanged_ = [this] { applyLayerColors(button_, style_); };
};

} // namespace

std::unique_ptr<ControlRealizer> ControlRealizer::make(ControlKind kind, FirstClick firstClick, Used used) {
    switch (kind) {
    case ControlKind::slider:
        return std::make_unique<SliderRealizer>(std::move(used));
    case ControlKind::pushButton:
        return std::make_unique<ButtonRealizer>(NSButtonTypeMomentaryPushIn, firstClick, std::move(used));
    case ControlKind::checkbox:
        return std::make_unique<ButtonRealizer>(NSButtonTypeSwitch, firstClick, std::move(used));
    case ControlKind::label:
        break;
    }
    return std::make_unique<LabelRealizer>();
}

ControlRealizer::~ControlRealizer() {
    [view_.get() setTarget:nil];
    keepForThisTurn(view_.get());
    [view_.get() removeFromSuperview];
}

void ControlRealizer::listen(std::function<void()> used) {
    target_ = std::make_unique<ActionTarget>([used = std::move(used)](id /*sender*/) { used(); });
    [view_.get() setTarget:target_->object()];
    [view_.get() setAction:ActionTarget::selector()];
}

void ControlRealizer::realize(const Control& control) {
    if (shown_ == control) {
        return;
    }
    NSControl* const view = view_.get();
    [view setFont:nativeFont(control.font)];
    show(control);
    [view setFrame:nativeRect(control.frame)];
    [view setEnabled:control.isEnabled ? YES : NO];
    [view setHidden:control.isHidden ? YES : NO];
    const auto toolTip = makeString(control.toolTip);
    [view setToolTip:control.toolTip.empty() ? nil : toolTip.get()];
    setName(spokenName(control));
    shown_ = control;
}

// An empty name would silence the control's own. Assistive technology finds the cell of a control that has
// one, and else the control.
void ControlRealizer::setName(const std::string& name) {
    if (name != name_) {
        name_ = name;
        const auto label = name.empty() ? ObjCHandle<NSString*>() : makeString(name);
        [view_.get() setAccessibilityLabel:label.get()];
        [[view_.get() cell] setAccessibilityLabel:label.get()];
    }
}

} // namespace tarvex
