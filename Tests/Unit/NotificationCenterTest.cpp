#include "App/Shell/NotificationCenter.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tarvex {

namespace {

class NotificationCenterTest : public ::testing::Test {
protected:
    NotificationCenter::Handler noting(std::string what) {
        return [this, what = std::move(what)] { notes_.push_back(what); };
    }

    NotificationCenter center_;
    std::vector<std::string> notes_;
};

TEST_F(NotificationCenterTest, ObserversOfTheNameAreCalledInOrder) {
    const auto first = center_.addObserver("a", noting("first"));
    const auto other = center_.addObserver("b", noting("other"));
    const auto second = center_.addObserver("a", noting("second"));
    center_.post("a");
    EXPECT_EQ(notes_, (std::vector<std::string>{"first", "second"}));
    center_.post("nobody's");
    EXPECT_EQ(notes_.size(), 2U);
}

TEST_F(NotificationCenterTest, ObservationEndsWithItsObject) {
    auto first = center_.addObserver("a", noting("first"));
    const auto second = center_.addObserver("a", noting("second"));
    first.reset();
    center_.post("a");
    EXPECT_EQ(notes_, std::vector<std::string>{"second"});
}

TEST_F(NotificationCenterTest, HandlersMayEndEachOther) {
    std::unique_ptr<NotificationCenter::Observation> second;
    std::unique_ptr<NotificationCenter::Observation> first = center_.addObserver("a", [&] {
        notes_.emplace_back("first");
        first.reset();
        second.reset();
    });
    second = center_.addObserver("a", noting("second"));
    center_.post("a");
    center_.post("a");
    EXPECT_EQ(notes_, std::vector<std::string>{"first"});
}

TEST_F(NotificationCenterTest, ObserverAddedMeanwhileWaitsForTheNextTime) {
    std::vector<std::unique_ptr<NotificationCenter::Observation>> added;
    const auto adder =
        center_.addObserver("a", [&] { added.push_back(center_.addObserver("a", noting("new"))); });
    center_.post("a");
    EXPECT_TRUE(notes_.empty());
    center_.post("a");
    EXPECT_EQ(notes_, std::vector<std::string>{"new"});
}

TEST_F(NotificationCenterTest, NotificationsMayBePostedFromWithinOne) {
    const auto outer = center_.addObserver("a", [&] {
        notes_.emplace_back("a");
        center_.post("b");
    });
    const auto inner = center_.addObserver("b", noting("b"));
    const auto last = center_.addObserver("a", noting("a again"));
    center_.post("a");
    EXPECT_EQ(notes_, (std::vector<std::string>{"a", "b", "a again"}));
}

TEST_F(NotificationCenterTest, ObservationMayOutliveTheCenter) {
    std::unique_ptr<NotificationCenter::Observation> observation;
    {
        NotificationCenter passing;
        observation = passing.addObserver("a", noting("a"));
    }
    observation.reset();
    EXPECT_TRUE(notes_.empty());
}

} // namespace

} // namespace tarvex
