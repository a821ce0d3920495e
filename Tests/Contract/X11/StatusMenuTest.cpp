#include "Platform/Linux/Qt/StatusMenu.h"

#include "Tests/Contract/X11/MainLoopApplication.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tarvex::contract {

namespace {

/// Notes what it is told, in order.
class NotingDelegate final : public StatusItemDelegate {
public:
    explicit NotingDelegate(std::vector<std::string>& notes) : notes_(&notes) {}

    [[nodiscard]] Menu menuWillOpen() override { return {}; }

    void menuItemChosen(const MenuItem& item) override { notes_->push_back("chosen " + item.title); }

private:
    std::vector<std::string>* notes_;
};

class StatusMenuChoice : public ::testing::Test {
protected:
    static MenuItem makeItem() {
        MenuItem item;
        item.title = "Edit";
        item.action = "edit";
        return item;
    }

    MainLoopApplication application_;
    std::vector<std::string> notes_;
    NotingDelegate delegate_{notes_};
    StatusMenu menu_{delegate_, [this] { notes_.emplace_back("closing"); }};
};

TEST_F(StatusMenuChoice, MenuClosesAtOnceAndTheDelegateIsToldLater) {
    menu_.choose(makeItem());
    EXPECT_EQ(notes_, (std::vector<std::string>{"closing"}));
    application_.settle();
    EXPECT_EQ(notes_, (std::vector<std::string>{"closing", "chosen Edit"}));
}

TEST_F(StatusMenuChoice, EntryThatCanDoNothingIsLetBe) {
    MenuItem item = makeItem();
    item.isEnabled = false;
    menu_.choose(item);
    item = makeItem();
    item.action = {};
    menu_.choose(item);
    application_.settle();
    EXPECT_TRUE(notes_.empty());
}

} // namespace

} // namespace tarvex::contract
