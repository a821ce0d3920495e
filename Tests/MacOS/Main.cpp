#include "Tests/MacOS/Fakes/FakeMac.h"

#include <gtest/gtest.h>

#include <memory>

namespace tarvex {
namespace {

/// Gives every test a Mac of its own, and fails it for what the adapters leave behind or do wrong there.
class FreshMac final : public testing::EmptyTestEventListener {
public:
    void OnTestStart(const testing::TestInfo& /*test*/) override { mac_ = std::make_unique<fake::FakeMac>(); }

    void OnTestEnd(const testing::TestInfo& /*test*/) override {
        for (const std::string& fault : mac_->faults()) {
            ADD_FAILURE() << fault;
        }
        mac_.reset();
    }

private:
    std::unique_ptr<fake::FakeMac> mac_;
};

} // namespace
} // namespace tarvex

int main(int count, char** arguments) {
    testing::InitGoogleTest(&count, arguments);
    // GoogleTest owns its listeners.
    testing::UnitTest::GetInstance()->listeners().Append(std::make_unique<tarvex::FreshMac>().release());
    return RUN_ALL_TESTS();
}
