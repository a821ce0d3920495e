#include "Tests/Support/ConfigProperties.h"
#include "Tests/Support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>

namespace tarvex {

namespace {

TEST(ConfigCorpusTest, EveryTextOfTheFuzzersCorpusKeepsTheRules) {
    std::size_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(TARVEX_CONFIG_CORPUS)) {
        EXPECT_EQ(findBrokenConfigRule(contentOf(entry.path())), std::nullopt) << entry.path().filename();
        ++count;
    }
    EXPECT_GE(count, 26U) << "the corpus is not where it is looked for";
}

} // namespace

} // namespace tarvex
