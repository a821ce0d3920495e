#pragma once

#include "Tests/Contract/FormWindowContract.h"

namespace tarvex::contract {

/// What the owner of a window is told of its closing.
class FormWindowClosingContract : public FormWindowContract {};

TEST_P(FormWindowClosingContract, OwnerHearsOfEveryClosingOnce) {
    bool wasVisible = true;
    owner_.closed = [&] { wasVisible = window_->isVisible(); };
    window_->close();
    world_->settle();
    EXPECT_EQ(owner_.closings, 0) << "it was not open";
    show();
    world_->closeByTitleBar("Window");
    ASSERT_TRUE(world_->waitUntil([&] { return !window_->isVisible(); }));
    world_->settle();
    EXPECT_EQ(owner_.closings, 1);
    EXPECT_FALSE(wasVisible);
    show();
    window_->close();
    EXPECT_EQ(owner_.closings, 2);
    window_->close();
    EXPECT_EQ(owner_.closings, 2);
    show();
    owner_.reaction = [&](const std::string& /*id*/) { window_->close(); };
    click("button");
    EXPECT_EQ(owner_.closings, 3);
    show();
    world_->giveKeyboardToAnotherProgram();
    world_->settle();
    EXPECT_EQ(owner_.closings, 3);
    window_.reset();
    world_->settle();
    EXPECT_EQ(owner_.closings, 3) << "it was destroyed";
}

TEST_P(FormWindowClosingContract, ClosingMayChangeTheFormForTheNextShowing) {
    show();
    owner_.closed = [&] {
        owner_.control("label").text = "closed";
        window_->setNeedsLayout();
    };
    world_->closeByTitleBar("Window");
    ASSERT_TRUE(world_->waitUntil([&] { return !window_->isVisible(); }));
    show();
    EXPECT_EQ(seen("label")->text, "closed");
}

} // namespace tarvex::contract
