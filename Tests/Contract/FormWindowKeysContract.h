#pragma once

#include "Tests/Contract/FormWindowContract.h"

namespace tarvex::contract {

/// What each key does to the control that has the keyboard, where this program says so. AppKit has rules of
/// its own, which the user's settings change.
class FormWindowKeysContract : public FormWindowContract {};

TEST_P(FormWindowKeysContract, SliderIsMovedByTheKeyboard) {
    owner_.control("slider").value = 8.5;
    window_->setNeedsLayout();
    show();
    // The first control that takes keys has them from the start.
    for (const FormKey key : {FormKey::right, FormKey::right, FormKey::left, FormKey::pageUp,
                              FormKey::pageDown, FormKey::end, FormKey::right, FormKey::home}) {
        press(key);
    }
    EXPECT_EQ(owner_.uses, (Uses{{"slider", 9.5},
                                 {"slider", 10.5},
                                 {"slider", 9.5},
                                 {"slider", 14.5},
                                 {"slider", 9.5},
                                 {"slider", 40},
                                 {"slider", 0}}));
}

TEST_P(FormWindowKeysContract, EnterPressesButtonsAlone) {
    show();
    for (int control = 0; control < 3; ++control) {
        press(FormKey::tab);
        press(FormKey::enter);
    }
    EXPECT_EQ(owner_.uses, (Uses{{"button", 0}, {"last", 0}}));
}

} // namespace tarvex::contract
