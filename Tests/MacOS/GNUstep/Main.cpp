#include "Tests/Support/X11/XServer.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr const char* childMark = "TARVEX_APPKIT_TESTS_HAVE_A_DISPLAY";

/// GNUstep asks the system for the user's home, and not the environment; its own settings can name folders
/// elsewhere.
std::string writeSettings(const std::string& home) {
    std::string path = home + "/GNUstep.conf";
    std::ofstream(path) << "GNUSTEP_USER_DIR_LIBRARY=" << home << "/Library\n"
                        << "GNUSTEP_USER_DEFAULTS_DIR=" << home << "/Defaults\n";
    return path;
}

/// Runs this program again, with a display and a home of its own: the libraries read both before main() does.
int runOnPrivateDisplay(char** argv) {
    const tarvex::test::XServer server;
    auto environment = server.clientEnvironment("appkit");
    environment["GNUSTEP_CONFIG_FILE"] = writeSettings(environment.at("HOME"));
    const pid_t child = fork();
    if (child == 0) {
        for (const auto& [name, value] : environment) {
            setenv(name.c_str(), value.c_str(), 1);
        }
        setenv(childMark, "1", 1);
        execv("/proc/self/exe", argv);
        _exit(127);
    }
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child) {
        return 1;
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : 1;
}

} // namespace

int main(int argc, char** argv) {
    if (std::getenv(childMark) == nullptr) {
        return runOnPrivateDisplay(argv);
    }
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
