#include "Platform/Linux/SessionBusAddress.h"

#include "Tests/Contract/X11/ScopedVariable.h"
#include "Tests/Support/X11/ScratchDirectory.h"
#include "Tests/Support/X11/SilentSocket.h"

#include <gtest/gtest.h>

#include <cstddef>
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
    SessionBusAddress::pin("");
    EXPECT_STREQ(std::getenv("DBUS_SESSION_BUS_ADDRESS"), "disabled:");
    const ScopedVariable address("DBUS_SESSION_BUS_ADDRESS", "unix:path=/run/other/bus");
    SessionBusAddress::pin("unix:path=/run/some/bus");
    EXPECT_STREQ(std::getenv("DBUS_SESSION_BUS_ADDRESS"), "unix:path=/run/some/bus");
    SessionBusAddress::pin("");
    EXPECT_STREQ(std::getenv("DBUS_SESSION_BUS_ADDRESS"), "disabled:");
}

TEST_F(SessionBusAddressTest, SocketThatTakesConnectionsIsToldFromOneThatDoesNot) {
    test::SilentSocket server("a b,c=%");
    const std::string escapedPath = server.path().substr(0, server.path().rfind('/')) + "/a%20b%2cc%3D%25";
    const std::string address = "unix:path=" + escapedPath;
    EXPECT_TRUE(SessionBusAddress::takesConnections(address));
    EXPECT_TRUE(SessionBusAddress::takesConnections(address + ",guid=0123456789abcdef"));
    EXPECT_FALSE(SessionBusAddress::takesConnections(address + "x"));
    EXPECT_FALSE(SessionBusAddress::takesConnections(""));
    EXPECT_FALSE(SessionBusAddress::takesConnections(server.busAddress())) << "the comma ends the value";
    // Nobody listens there any more.
    EXPECT_FALSE(SessionBusAddress::takesConnections("unix:path=" + makeUserBus("run").string()));
}

TEST_F(SessionBusAddressTest, FullLineOfConnectionsIsNotWaitedIn) {
    test::SilentSocket server;
    EXPECT_TRUE(SessionBusAddress::takesConnections(server.busAddress()));
    server.fillTheLine();
    EXPECT_FALSE(SessionBusAddress::takesConnections(server.busAddress()));
}

TEST_F(SessionBusAddressTest, FirstOfSeveralAddressesThatWorksCounts) {
    test::SilentSocket full;
    const test::SilentSocket other;
    full.fillTheLine();
    const std::string missing = "unix:path=/nonexistent/socket";
    EXPECT_TRUE(SessionBusAddress::takesConnections(missing + ";" + other.busAddress()));
    EXPECT_TRUE(SessionBusAddress::takesConnections(other.busAddress() + ";" + full.busAddress()));
    // Whoever tries one after the other would wait at the first.
    EXPECT_FALSE(SessionBusAddress::takesConnections(full.busAddress() + ";" + other.busAddress()));
    EXPECT_FALSE(SessionBusAddress::takesConnections(missing + ";" + missing));
}

TEST_F(SessionBusAddressTest, AbstractSocketsAreReached) {
    const std::string name = "tarvex-test-" + std::to_string(getpid());
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path + 1, name.data(), name.size());
    const test::FileDescriptor server(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + name.size());
    ASSERT_EQ(bind(server.get(), reinterpret_cast<const sockaddr*>(&address), length), 0);
    ASSERT_EQ(listen(server.get(), 1), 0);
    EXPECT_TRUE(SessionBusAddress::takesConnections("unix:abstract=" + name + ",guid=00"));
    EXPECT_FALSE(SessionBusAddress::takesConnections("unix:abstract=" + name + "-other"));
}

TEST_F(SessionBusAddressTest, AddressesOfOtherKindsAreLeftToTheLibrary) {
    for (const char* other : {"tcp:host=localhost,port=1", "unixexec:path=x", "disabled:", "nonsense"}) {
        EXPECT_TRUE(SessionBusAddress::takesConnections(other)) << other;
    }
    EXPECT_TRUE(SessionBusAddress::takesConnections("unix:path=/" + std::string(200, 'x')));
}

} // namespace
} // namespace tarvex
