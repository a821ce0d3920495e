#include "Platform/Linux/Qt/QtStatusBar.h"

#include "Platform/Linux/Qt/EmbeddedTrayForm.h"
#include "Platform/Linux/Qt/NotifierForm.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace tarvex {

class QtStatusBar::Item final : public StatusItem {
public:
    Item(QtStatusBar& bar, StatusItemDelegate& delegate) : bar_(&bar), menu_(delegate, bar.menuClosing_) {
        bar_->items_.push_back(this);
        place(bar.tray());
    }

    Item(const Item&) = delete;
    Item& operator=(const Item&) = delete;
    Item(Item&&) = delete;
    Item& operator=(Item&&) = delete;

    ~Item() override { std::erase(bar_->items_, this); }

    void setAppearance(const StatusItemAppearance& appearance) override {
        appearance_ = appearance;
        if (form_) {
            form_->setAppearance(appearance);
        }
    }

    void setMenu(const Menu& menu) override {
        menu_.set(menu);
        if (form_) {
            form_->menuChanged();
        }
    }

    void place(Tray tray) {
        if (tray == tray_) {
            return;
        }
        tray_ = tray;
        form_.reset();
        if (tray == Tray::notifier) {
            form_ = std::make_unique<NotifierForm>(menu_, bar_->busAddress_);
        } else if (tray == Tray::embedding) {
            form_ = std::make_unique<EmbeddedTrayForm>(menu_, *bar_->connection_);
        }
        if (form_ && appearance_) {
            form_->setAppearance(*appearance_);
        }
    }

private:
    QtStatusBar* bar_;
    StatusMenu menu_;
    std::optional<StatusItemAppearance> appearance_;
    Tray tray_ = Tray::none;
    std::unique_ptr<TrayForm> form_;
};

QtStatusBar::QtStatusBar(XConnection& connection, XEventPump& pump, const std::string& busAddress,
                         std::function<void()> menuClosing)
    : connection_(&connection),
      busAddress_(busAddress),
      menuClosing_(std::move(menuClosing)),
      notifierHost_(busAddress, [this] { trayChanged(); }),
      embeddingTray_(connection, pump, [this] { trayChanged(); }) {}

QtStatusBar::~QtStatusBar() = default;

QtStatusBar::Tray QtStatusBar::tray() const {
    if (notifierHost_.hasHost()) {
        return Tray::notifier;
    }
    // An item in the wrong tray would flash up there.
    return notifierHost_.isKnown() && embeddingTray_.hasTray() ? Tray::embedding : Tray::none;
}

void QtStatusBar::trayChanged() {
    const Tray now = tray();
    const std::vector<Item*> items = items_;
    for (Item* item : items) {
        item->place(now);
    }
}

std::unique_ptr<StatusItem> QtStatusBar::makeStatusItem(StatusItemDelegate& delegate) {
    return std::make_unique<Item>(*this, delegate);
}

} // namespace tarvex
