#include "Platform/MacOS/Logging/OsLog.h"
#include "Tests/MacOS/Fakes/FakeMac.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tarvex {
namespace {

using testing::ElementsAre;

TEST(UnifiedLog, LineIsAnErrorThatEverybodyMayRead) {
    writeUnifiedLogError("Tarvex", "ConfigStore", "Failed to read config: %s gone");
    writeUnifiedLogError("Tarvex", "DisplayService", "");
    EXPECT_THAT(fake::mac().log.lines,
                ElementsAre(fake::UnifiedLine{"Tarvex", "ConfigStore", OS_LOG_TYPE_ERROR,
                                              "Failed to read config: %s gone"},
                            fake::UnifiedLine{"Tarvex", "DisplayService", OS_LOG_TYPE_ERROR, ""}));
}

TEST(UnifiedLog, NamesNeedNotEndWhereTheirTextDoes) {
    const std::string_view names = "TarvexConfigStore";
    writeUnifiedLogError(names.substr(0, 6), names.substr(6), names.substr(6, 6));
    EXPECT_THAT(fake::mac().log.lines,
                ElementsAre(fake::UnifiedLine{"Tarvex", "ConfigStore", OS_LOG_TYPE_ERROR, "Config"}));
}

} // namespace
} // namespace tarvex
