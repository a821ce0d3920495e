#include "Tests/Contract/X11/DisplayAdapters.h"
#include "Tests/Contract/X11/ScopedVariable.h"
#include "Tests/Support/X11/XServer.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace tarvex {
namespace {

class DisplayLocale : public ::testing::Test {
protected:
    std::string locale() { return adapters_.displays.currentLocaleIdentifier(); }

    ScopedVariable all_{"LC_ALL", std::nullopt};
    ScopedVariable messages_{"LC_MESSAGES", std::nullopt};
    ScopedVariable language_{"LANG", std::nullopt};
    test::XServer server_;
    XDisplayAdapters adapters_{server_.displayName()};
};

TEST_F(DisplayLocale, UnsetEnvironmentIsUnknown) {
    EXPECT_EQ(locale(), "");
}

TEST_F(DisplayLocale, EncodingAndModifierAreDropped) {
    for (const char* value : {"en_US", "en_US.UTF-8", "en_US@euro", "en_US.UTF-8@euro", "en_US@euro.UTF-8"}) {
        const ScopedVariable language("LANG", value);
        EXPECT_EQ(locale(), "en_US") << value;
    }
    const ScopedVariable language("LANG", "de");
    EXPECT_EQ(locale(), "de");
}

TEST_F(DisplayLocale, ProgrammersLocaleIsUnknown) {
    for (const char* value : {"C", "POSIX", "C.UTF-8", "C.utf8", "", "."}) {
        const ScopedVariable language("LANG", value);
        EXPECT_EQ(locale(), "") << value;
    }
}

TEST_F(DisplayLocale, MoreParticularVariablesGoFirst) {
    const ScopedVariable language("LANG", "de_DE.UTF-8");
    EXPECT_EQ(locale(), "de_DE");
    const ScopedVariable messages("LC_MESSAGES", "fr_FR.UTF-8");
    EXPECT_EQ(locale(), "fr_FR");
    const ScopedVariable all("LC_ALL", "C");
    EXPECT_EQ(locale(), "");
    const ScopedVariable none("LC_ALL", "");
    EXPECT_EQ(locale(), "fr_FR");
}

} // namespace
} // namespace tarvex
