#pragma once

#include "App/Toolkit/FormWindow.h"

#include <functional>
#include <memory>
#include <utility>

namespace tarvex {

/// A window that is made when it is first needed. Most runs of the program never show one, and making them
/// would take up most of its start and a good part of its memory.
class LazyFormWindow final : public FormWindow {
public:
    using Maker = std::function<std::unique_ptr<FormWindow>()>;

    explicit LazyFormWindow(Maker maker) : maker_(std::move(maker)) {}

    [[nodiscard]] bool isVisible() const override { return window_ && window_->isVisible(); }

    void setNeedsLayout() override {
        if (window_) {
            window_->setNeedsLayout();
        }
    }

    void center() override { window().center(); }

    void makeKeyAndOrderFront() override { window().makeKeyAndOrderFront(); }

    void close() override {
        if (window_) {
            window_->close();
        }
    }

private:
    FormWindow& window() {
        if (!window_) {
            window_ = maker_();
        }
        return *window_;
    }

    Maker maker_;
    std::unique_ptr<FormWindow> window_;
};

} // namespace tarvex
