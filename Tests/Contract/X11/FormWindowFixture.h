#pragma once

#include "Tests/Contract/RecordingFormOwner.h"
#include "Tests/Contract/X11/FormWindowAdapters.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace tarvex::contract {

/// A desktop with one window of the program, "Window", of 400 by 300 points.
class FormWindowFixture : public ::testing::Test {
protected:
    FormWindowFixture() {
        owner_.add(ControlKind::label, "label", {20, 250, 120, 22});
        owner_.add(ControlKind::slider, "slider", {20, 200, 360, 24}, 8);
        owner_.add(ControlKind::checkbox, "box", {20, 150, 200, 24});
        owner_.add(ControlKind::pushButton, "button", {20, 100, 100, 30});
    }

    void TearDown() override {
        window_.reset();
        desktop_.reset();
    }

    using Preparation = std::function<void(const std::string& displayName)>;

    void start(
        std::optional<test::WindowManagerKind> kind = test::WindowManagerKind::openbox,
        const std::string& scaleFactor = "1", const Preparation& prepare = [](const std::string&) {}) {
        startWithoutToolkitWindow(kind, scaleFactor, prepare);
        // Has it made, which otherwise waits until it is shown.
        window_->center();
        desktop_->settle();
    }

    /// Before the first showing, as in the program.
    void startWithoutToolkitWindow(
        std::optional<test::WindowManagerKind> kind, const std::string& scaleFactor = "1",
        const Preparation& prepare = [](const std::string&) {}) {
        desktop_ = std::make_unique<XFormWindowDesktop>(kind, scaleFactor, prepare);
        FormWindowAttributes attributes;
        attributes.title = "Window";
        attributes.contentSize = {400, 300};
        attributes.level = level_;
        window_ = desktop_->windows.makeFormWindow(attributes, owner_);
        desktop_->settle();
    }

    /// What the program does to bring a window up.
    void call() {
        window_->center();
        window_->makeKeyAndOrderFront();
        desktop_->windows.activateIgnoringOtherApps();
    }

    void show() {
        call();
        ASSERT_TRUE(waitUntil([&] { return desktop_->hasKeyboard("Window"); }));
        desktop_->settle();
    }

    bool waitUntil(const std::function<bool()>& condition) { return desktop_->waitUntil(condition); }

    [[nodiscard]] test::ManagedWindow managed() { return desktop_->managed("Window"); }

    [[nodiscard]] QWidget& control(const std::string& id) { return *desktop_->control("Window", id); }

    RecordingFormOwner owner_;
    std::int32_t level_ = 0;
    std::unique_ptr<XFormWindowDesktop> desktop_;
    std::unique_ptr<FormWindow> window_;
};

} // namespace tarvex::contract
