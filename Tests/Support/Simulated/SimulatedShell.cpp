#include "Tests/Support/Simulated/SimulatedShell.h"

#include <utility>

namespace tarvex {

Control SimulatedFormWindow::control(const std::string& id) const {
    for (const Control& control : owner->form(attributes.contentSize).controls) {
        if (control.id == id) {
            return control;
        }
    }
    throw std::out_of_range("no control " + id);
}

void SimulatedFormWindow::use(const std::string& id, double value) const {
    const Control used = control(id);
    if (used.isEnabled && !used.isHidden) {
        owner->controlChanged(id, value);
    }
}

class SimulatedFormWindows::Window final : public FormWindow {
public:
    Window(std::shared_ptr<SimulatedFormWindow> state, Journal& journal)
        : state_(std::move(state)), journal_(&journal) {}

    [[nodiscard]] bool isVisible() const override { return state_->isVisible; }

    void setNeedsLayout() override { ++state_->layouts; }

    void center() override {
        note("center");
        ++state_->timesCentered;
    }

    void makeKeyAndOrderFront() override {
        note("key and front");
        state_->isVisible = true;
        state_->isKey = true;
    }

    void close() override {
        note("close");
        state_->isVisible = false;
        state_->isKey = false;
    }

private:
    void note(const char* what) { journal_->note("\"" + state_->attributes.title + "\" " + what); }

    std::shared_ptr<SimulatedFormWindow> state_;
    Journal* journal_;
};

std::unique_ptr<FormWindow> SimulatedFormWindows::makeFormWindow(const FormWindowAttributes& attributes,
                                                                 FormOwner& owner) {
    auto state = std::make_shared<SimulatedFormWindow>();
    state->attributes = attributes;
    state->owner = &owner;
    windows_.push_back(state);
    return std::make_unique<Window>(state, *journal_);
}

SimulatedFormWindow& SimulatedFormWindows::titled(const std::string& title) {
    for (const auto& window : windows_) {
        if (window->attributes.title == title) {
            return *window;
        }
    }
    throw std::out_of_range("no window " + title);
}

class SimulatedStatusBar::Item final : public StatusItem {
public:
    explicit Item(SimulatedStatusBar& bar) : bar_(&bar) {}

    Item(const Item&) = delete;
    Item& operator=(const Item&) = delete;
    Item(Item&&) = delete;
    Item& operator=(Item&&) = delete;

    ~Item() override {
        bar_->journal_->note("status item removed");
        bar_->delegate_ = nullptr;
    }

    void setAppearance(const StatusItemAppearance& appearance) override { bar_->appearance = appearance; }

    void setMenu(const Menu& menu) override { bar_->menu = menu; }

private:
    SimulatedStatusBar* bar_;
};

std::unique_ptr<StatusItem> SimulatedStatusBar::makeStatusItem(StatusItemDelegate& delegate) {
    journal_->note("status item made");
    delegate_ = &delegate;
    ++made_;
    return std::make_unique<Item>(*this);
}

void SimulatedStatusBar::choose(const std::string& title) {
    const Menu menu = delegate_->menuWillOpen();
    for (const MenuItem& item : menu.items) {
        if (item.title == title) {
            delegate_->menuItemChosen(item);
            return;
        }
        for (const MenuItem& inner : item.submenu.value_or(std::vector<MenuItem>{})) {
            if (inner.title == title) {
                delegate_->menuItemChosen(inner);
                return;
            }
        }
    }
    throw std::out_of_range("no menu item " + title);
}

} // namespace tarvex
