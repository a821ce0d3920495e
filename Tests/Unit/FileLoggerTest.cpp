#include "App/Logging/FileLogger.h"

#include "Tests/Support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <iomanip>
#include <map>
#include <regex>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

namespace tarvex {

namespace {

using std::chrono::milliseconds;
using std::chrono::system_clock;

// The log is one per process and the queue offers no flush, so a test waits for its own lines to arrive.
template <typename Condition>
bool waitFor(Condition isMet) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (!isMet()) {
        if (std::chrono::steady_clock::now() > deadline) {
            return false;
        }
        std::this_thread::yield();
    }
    return true;
}

std::vector<std::string> linesWith(const std::string& marker) {
    std::vector<std::string> lines;
    std::istringstream content(contentOf(FileLogger::shared().path()));
    for (std::string line; std::getline(content, line);) {
        if (line.find(marker) != std::string::npos) {
            lines.push_back(line);
        }
    }
    return lines;
}

bool waitForLines(const std::string& marker, std::size_t count) {
    return waitFor([&] { return linesWith(marker).size() >= count; });
}

// The time in the brackets at the start of a line, read as local time.
system_clock::time_point timestampOf(const std::string& line) {
    std::tm local{};
    std::istringstream(line.substr(1, 19)) >> std::get_time(&local, "%Y-%m-%d %H:%M:%S");
    local.tm_isdst = -1;
    return system_clock::from_time_t(std::mktime(&local)) + milliseconds(std::stoi(line.substr(21, 3)));
}

class FileLoggerTest : public testing::Test {
protected:
    // Text that no line of another test holds, nor of an earlier run of this one in the same process.
    const std::string marker = "line-of-test-" + std::to_string(++testCount);

private:
    static inline int testCount = 0;
};

TEST_F(FileLoggerTest, ThereIsOneAtThePathOfThePlatform) {
    EXPECT_EQ(&FileLogger::shared(), &FileLogger::shared());
    EXPECT_EQ(FileLogger::shared().path(), logFilePath());
}

TEST_F(FileLoggerTest, AMissingLogsFolderIsCreatedOnFirstUse) {
    EXPECT_TRUE(
        std::filesystem::is_directory(std::filesystem::path(FileLogger::shared().path()).parent_path()));
}

TEST_F(FileLoggerTest, ALineIsTimestampBlankMessage) {
    FileLogger::shared().log(marker + ": detail=7");
    ASSERT_TRUE(waitForLines(marker, 1));
    const std::string line = linesWith(marker)[0];
    const std::regex shape(R"(\[\d{4}-\d{2}-\d{2} \d{2}:\d{2}:\d{2}\.\d{3}\] )" + marker + ": detail=7");
    EXPECT_TRUE(std::regex_match(line, shape)) << line;
}

TEST_F(FileLoggerTest, TheTimestampIsThatOfTheCall) {
    std::vector<std::pair<system_clock::time_point, system_clock::time_point>> calls;
    for (int count = 0; count < 200; ++count) {
        const auto before = std::chrono::floor<milliseconds>(system_clock::now());
        FileLogger::shared().log(marker);
        calls.emplace_back(before, system_clock::now());
    }
    ASSERT_TRUE(waitForLines(marker, calls.size()));
    const std::vector<std::string> lines = linesWith(marker);
    for (std::size_t index = 0; index < calls.size(); ++index) {
        EXPECT_GE(timestampOf(lines[index]), calls[index].first) << lines[index];
        EXPECT_LE(timestampOf(lines[index]), calls[index].second) << lines[index];
    }
}

TEST_F(FileLoggerTest, TheMessageIsWrittenAsItIs) {
    const std::string message = marker + " t\xc3\xa4g \xe6\x97\xa5 %s \\n\nsecond line of " + marker;
    FileLogger::shared().log(message);
    ASSERT_TRUE(waitForLines("second line of " + marker, 1));
    EXPECT_NE(contentOf(FileLogger::shared().path()).find("] " + message + "\n"), std::string::npos);
}

TEST_F(FileLoggerTest, LinesOfOneThreadKeepTheirOrder) {
    for (int number = 100; number < 400; ++number) {
        FileLogger::shared().log(marker + " " + std::to_string(number));
    }
    ASSERT_TRUE(waitForLines(marker, 300));
    const std::vector<std::string> lines = linesWith(marker);
    for (std::size_t index = 0; index < lines.size(); ++index) {
        EXPECT_TRUE(lines[index].ends_with(std::to_string(100 + index))) << lines[index];
    }
}

TEST_F(FileLoggerTest, ManyThreadsLogWholeLinesEachInItsOwnOrder) {
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([thread, this] {
            for (int number = 0; number < 100; ++number) {
                FileLogger::shared().log(marker + " " + std::to_string(thread) + " " +
                                         std::to_string(number));
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    ASSERT_TRUE(waitForLines(marker, 400));
    const std::regex shape(R"(\[[-0-9 :.]{23}\] )" + marker + R"( (\d) (\d+))");
    std::map<std::string, int> next;
    for (const std::string& line : linesWith(marker)) {
        std::smatch match;
        ASSERT_TRUE(std::regex_match(line, match, shape)) << line;
        EXPECT_EQ(std::stoi(match[2]), next[match[1]]++) << line;
    }
}

TEST_F(FileLoggerTest, ALogThatCannotBeWrittenCostsTheLineOnly) {
    const std::filesystem::path path = FileLogger::shared().path();
    const std::filesystem::path aside = path.string() + ".aside";
    FileLogger::shared().log(marker + " before");
    ASSERT_TRUE(waitForLines(marker + " before", 1));
    std::filesystem::rename(path, aside);
    std::filesystem::create_directory(path);
    EXPECT_NO_THROW(FileLogger::shared().log(marker + " lost"));
    std::filesystem::remove(path);
    std::filesystem::rename(aside, path);
    FileLogger::shared().log(marker + " after");
    EXPECT_TRUE(waitForLines(marker + " after", 1));
}

// Ends the process with lines that are still waiting: with 0 when all of them stand in the file after the
// logger's end.
[[noreturn]] void exitWithLinesWaiting() {
    // What is made first goes last: the folder after the check, the logger before it.
    static const std::string path = logFilePath();
    std::atexit([] {
        std::istringstream content(contentOf(path));
        int count = 0;
        for (std::string line; std::getline(content, line);) {
            count += line.ends_with(" waiting " + std::to_string(count)) ? 1 : 0;
        }
        std::_Exit(count == 2000 ? 0 : 1);
    });
    for (int number = 0; number < 2000; ++number) {
        FileLogger::shared().log("waiting " + std::to_string(number));
    }
    std::exit(2);
}

TEST(FileLoggerDeathTest, AProcessEndsOnlyWhenEveryLineIsWritten) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(exitWithLinesWaiting(), testing::ExitedWithCode(0), "^$");
}

// Ends the process with 0 when its time stamps are ahead of universal time by the minutes of the time zone.
[[noreturn]] void exitWithOffset(const char* zone, int expectedMinutes) {
    setenv("TZ", zone, 1);
    tzset();
    const std::time_t before = std::time(nullptr);
    FileLogger::shared().log("offset");
    if (!waitForLines("offset", 1)) {
        std::exit(2);
    }
    std::tm shown{};
    std::istringstream(linesWith("offset")[0].substr(1, 19)) >> std::get_time(&shown, "%Y-%m-%d %H:%M:%S");
    const std::time_t ahead = timegm(&shown) - before - expectedMinutes * 60L;
    std::exit(ahead >= 0 && ahead <= 30 ? 0 : 1);
}

TEST(FileLoggerDeathTest, TimestampsAreLocal) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(exitWithOffset("XXX-5:30", 330), testing::ExitedWithCode(0), "^$");
    EXPECT_EXIT(exitWithOffset("YYY8", -480), testing::ExitedWithCode(0), "^$");
}

} // namespace

} // namespace tarvex
