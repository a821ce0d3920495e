#include "Platform/Linux/SessionBusAddress.h"

#include "Tests/Contract/X11/ScopedVariable.h"
#include "Tests/Support/X11/ScratchDirectory.h"

#include <gtest/gtest.h>

#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace tarvex {
namespace {

class SessionBusAddressTest : public ::testing::Test {
protected:
    /// Puts a socket where the user's bus has its own.
    std::filesystem::path makeUserBus(const char* folder) {
        const std::filesystem::path path = scratch_.folder(folder) / "bus";
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
        const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
        EXPECT_EQ(bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
        close(socket);
        return path;
    }

    test::ScratchDirectory scratch_;
    ScopedVariable address_{"DBUS_SESSION_BUS_ADDRESS", std::nullopt};
    ScopedVariable runtime_{"XDG_RUNTIME_DIR", std::nullopt};
};

TEST_F(SessionBusAddressTest, EnvironmentNamesIt) {
    const ScopedVariable address("DBUS_SESSION_BUS_ADDRESS", "unix:path=/run/some/bus;tcp:host=x");
    EXPECT_EQ(SessionBusAddress::find(), "unix:path=/run/some/bus;tcp:host=x");
}

TEST_F(SessionBusAddressTest, BusThatIsRuledOutOrWouldHaveToBeStartedIsNone) {
    const std::filesystem::path bus = makeUserBus("run");
    const ScopedVariable runtime("XDG_RUNTIME_DIR", bus.parent_path().string());
    for (const char* none : {"disabled:", "autolaunch:", "unix:path=/x;autolaunch:scope=*user"}) {
        const ScopedVariable address("DBUS_SESSION_BUS_ADDRESS", none);
        EXPECT_EQ(SessionBusAddress::find(), "") << none;
    }
}

TEST_F(SessionBusAddressTest, UsersBusServesWhereNoneIsNamed) {
    EXPECT_EQ(SessionBusAddress::find(), "");
    const ScopedVariable empty("XDG_RUNTIME_DIR", scratch_.folder("empty").string());
    EXPECT_EQ(SessionBusAddress::find(), "");
    const std::filesystem::path bus = makeUserBus("run");
    const ScopedVariable runtime("XDG_RUNTIME_DIR", bus.parent_path().string());
    EXPECT_EQ(SessionBusAddress::find(), "unix:path=" + bus.string());
}

TEST_F(SessionBusAddressTest, UnusualCharactersOfAPathAreEscaped) {
    const std::filesystem::path bus = makeUserBus("a b,c=%");
    const ScopedVariable runtime("XDG_RUNTIME_DIR", bus.parent_path().string());
    EXPECT_TRUE(SessionBusAddress::find().ends_with("/a%20b%2cc%3d%25/bus")) << SessionBusAddress::find();
}

TEST_F(SessionBusAddressTest, PinningPutsItIntoTheEnvironment) {
    SessionBusAddress::pin();
    EXPECT_STREQ(std::getenv("DBUS_SESSION_BUS_ADDRESS"), "disabled:");
    const ScopedVariable address("DBUS_SESSION_BUS_ADDRESS", "unix:path=/run/some/bus");
    SessionBusAddress::pin();
    EXPECT_STREQ(std::getenv("DBUS_SESSION_BUS_ADDRESS"), "unix:path=/run/some/bus");
}

} // namespace
} // namespace tarvex
