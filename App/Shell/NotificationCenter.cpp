#include "App/Shell/NotificationCenter.h"

#include <utility>

namespace tarvex {

class NotificationCenter::Registration final : public Observation {
public:
    explicit Registration(std::shared_ptr<Entry> entry) : entry_(std::move(entry)) {}

    Registration(const Registration&) = delete;
    Registration& operator=(const Registration&) = delete;
    Registration(Registration&&) = delete;
    Registration& operator=(Registration&&) = delete;

    ~Registration() override { entry_->isCancelled = true; }

private:
    std::shared_ptr<Entry> entry_;
};

std::unique_ptr<NotificationCenter::Observation> NotificationCenter::addObserver(std::string_view name,
                                                                                 Handler handler) {
    auto entry = std::make_shared<Entry>();
    entry->name = name;
    entry->handler = std::move(handler);
    entries_.push_back(entry);
    return std::make_unique<Registration>(std::move(entry));
}

void NotificationCenter::post(std::string_view name) {
    entries_.remove_if([](const auto& entry) { return entry->isCancelled; });
    const auto present = entries_;
    for (const auto& entry : present) {
        if (entry->name == name && !entry->isCancelled) {
            entry->handler();
        }
    }
}

} // namespace tarvex
