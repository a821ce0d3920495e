#include "Tests/Support/Simulated/SimulatedShell.h"

#include <utility>

namespace tarvex {

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
    const Menu menu = open();
    const auto chooseFrom = [&](const std::vector<MenuItem>& items) {
        for (const MenuItem& item : items) {
            if (item.title == title && !item.isSeparator) {
                if (item.isEnabled && !item.action.empty()) {
                    delegate_->menuItemChosen(item);
                }
                return true;
            }
        }
        return false;
    };
    bool isFound = chooseFrom(menu.items);
    for (const MenuItem& item : menu.items) {
        isFound = isFound || (item.submenu && chooseFrom(*item.submenu));
    }
    if (!isFound) {
        throw std::out_of_range("no menu item " + title);
    }
}

} // namespace tarvex
