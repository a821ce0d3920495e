#pragma once

#include "Tests/EndToEnd/Desktop.h"
#include "Tests/EndToEnd/Drag.h"
#include "Tests/EndToEnd/Zones.h"
#include "Tests/Support/X11/TestWindow.h"

#include <gtest/gtest.h>

#include <iostream>
#include <memory>
#include <string>

namespace tarvex::test {

/// Starts a desktop of the kind under test, and ends by seeing tarvex off cleanly.
class DesktopTest : public ::testing::TestWithParam<SessionKind> {
protected:
    Desktop& start(const DesktopOptions& options = {}) {
        desktop_ = std::make_unique<Desktop>(GetParam(), options);
        return *desktop_;
    }

    void TearDown() override {
        if (desktop_ && !hasEnded_) {
            desktop_->tarvex.expectCleanExit();
        }
        if (desktop_ && HasFailure()) {
            std::cout << "the log of tarvex:\n" << desktop_->tarvex.log();
        }
    }

    /// For a test that sees to the end of tarvex in a way of its own.
    void expectEndedAlready() {
        hasEnded_ = true;
        EXPECT_FALSE(desktop_->tarvex.process().isRunning());
    }

    /// For a test that ends tarvex itself.
    void expectCleanExitNow() {
        hasEnded_ = true;
        desktop_->tarvex.expectCleanExit();
    }

private:
    std::unique_ptr<Desktop> desktop_;
    bool hasEnded_ = false;
};

} // namespace tarvex::test
