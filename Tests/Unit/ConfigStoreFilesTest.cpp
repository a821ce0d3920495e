// The store over real files: what a user, an editor or a crash may leave in place of the configuration.
#include "Core/Configuration/ConfigStore.h"
#include "Core/Configuration/JsonCoding.h"
#include "Platform/Posix/PosixFileManager.h"
#include "Tests/Support/ConfigProperties.h"
#include "Tests/Support/EvenSplits.h"
#include "Tests/Support/RecordingLog.h"
#include "Tests/Support/TemporaryDirectory.h"
#include "Tests/Support/UnprivilegedUser.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <atomic>
#include <filesystem>
#include <string>
#include <sys/stat.h>
#include <thread>
#include <vector>

namespace tarvex {

namespace {

namespace fs = std::filesystem;

// Files that somebody removes between being found and being read.
class VanishingFiles final : public FileManager {
public:
    explicit VanishingFiles(FileManager& files) : files_(&files) {}

    [[nodiscard]] std::string applicationSupportDirectory() const override {
        return files_->applicationSupportDirectory();
    }

    void createDirectory(const std::string& path) override { files_->createDirectory(path); }

    [[nodiscard]] bool fileExists(const std::string& path) const override {
        const bool wasThere = files_->fileExists(path);
        fs::remove(path);
        return wasThere;
    }

    [[nodiscard]] std::string readFile(const std::string& path) const override {
        return files_->readFile(path);
    }

    void writeFileAtomically(const std::string& path, std::string_view content) override {
        files_->writeFileAtomically(path, content);
    }

    void keepCopy(const std::string& path, const std::string& copyPath) override {
        files_->keepCopy(path, copyPath);
    }

private:
    FileManager* files_;
};

class ConfigStoreFilesTest : public testing::Test {
protected:
    ConfigStoreFilesTest() { fs::create_directories(folder); }

    [[nodiscard]] ConfigStore store() { return {LoggerFactory(log).makeLogger("ConfigStore"), files}; }

    // Loading fails and logs one line that begins so; what stands at the path is not touched.
    template <typename Error>
    void expectLoadFails(const std::string& logPrefix) {
        log.clear();
        const fs::file_status before = fs::symlink_status(file);
        EXPECT_THROW(static_cast<void>(store().loadConfig()), Error);
        ASSERT_EQ(log.unifiedLines().size(), 1U);
        EXPECT_TRUE(log.unifiedLines()[0].message.starts_with(logPrefix)) << log.unifiedLines()[0].message;
        EXPECT_EQ(log.unifiedLines()[0].message.find('\n'), std::string::npos);
        EXPECT_EQ(fs::symlink_status(file).type(), before.type());
    }

    void expectContentDoesNotDecode(const std::string& content) {
        writeContent(file, content);
        expectLoadFails<DecodingError>("Failed to decode config: ");
        EXPECT_TRUE(contentOf(file) == content) << "the file was touched";
    }

    void expectDefaultsUnlogged() {
        EXPECT_TRUE(haveSameFields(*store().loadConfig(), *TarvexConfig::makeDefault()));
        EXPECT_TRUE(log.unifiedLines().empty());
    }

    RecordingLog log;
    TemporaryDirectory home;
    PosixFileManager files{home.path("config")};
    fs::path folder = home.path() / "config" / "Tarvex";
    fs::path file = folder / "config.json";
};

TEST_F(ConfigStoreFilesTest, NoFolderAtAll) {
    fs::remove_all(home.path() / "config");
    expectDefaultsUnlogged();
    EXPECT_TRUE(fs::is_directory(folder));
    EXPECT_TRUE(fs::is_empty(folder)) << "loading writes no file";
}

TEST_F(ConfigStoreFilesTest, ASavedRecordIsCompactJsonWithoutTheKeysOfAbsentOptionals) {
    store().saveConfig(*TarvexConfig::makeDefault());
    const std::string text = contentOf(file);
    const auto document = nlohmann::json::parse(text);
    EXPECT_EQ(text.find_first_of(" \n\t"), std::string::npos);
    EXPECT_FALSE(document.contains("openEditorHotkey"));
    EXPECT_FALSE(document.contains("openPreferencesHotkey"));
    EXPECT_EQ(document.at("cellMarginPoints"), 8);
    EXPECT_EQ(document.size(), 8U);
    EXPECT_TRUE(haveSameFields(*store().loadConfig(), *TarvexConfig::makeDefault()));
}

TEST_F(ConfigStoreFilesTest, AFileInPlaceOfTheFolder) {
    fs::remove_all(folder);
    writeContent(folder, "not a folder");
    EXPECT_THROW(static_cast<void>(store().loadConfig()), FileError);
    EXPECT_THROW(store().saveConfig(*TarvexConfig::makeDefault()), FileError);
    EXPECT_TRUE(log.unifiedLines().empty());
    EXPECT_EQ(contentOf(folder), "not a folder");
}

TEST_F(ConfigStoreFilesTest, AnEmptyFile) {
    expectContentDoesNotDecode("");
}

TEST_F(ConfigStoreFilesTest, AnEmptyObject) {
    expectContentDoesNotDecode("{}");
}

TEST_F(ConfigStoreFilesTest, NotJson) {
    expectContentDoesNotDecode("margin = 8\n");
}

TEST_F(ConfigStoreFilesTest, InvalidUtf8) {
    expectContentDoesNotDecode(
        "{\"grids\":[],\"defaultGridByDisplayId\":{\"v\":\"\xff\"},\"cellMarginPoints\":8}");
}

TEST_F(ConfigStoreFilesTest, TruncatedAtEveryByte) {
    const std::string whole = encodeTarvexConfig(*TarvexConfig::makeDefault());
    for (std::size_t length = 0; length < whole.size(); ++length) {
        SCOPED_TRACE(length);
        expectContentDoesNotDecode(whole.substr(0, length));
        ASSERT_FALSE(HasFailure());
    }
}

TEST_F(ConfigStoreFilesTest, DeeplyNested) {
    expectContentDoesNotDecode(std::string(100'000, '['));
    expectContentDoesNotDecode(std::string(100'000, '[') + std::string(100'000, ']'));
}

TEST_F(ConfigStoreFilesTest, TenMegabytes) {
    expectContentDoesNotDecode(std::string(10'000'000, 'x'));
    expectContentDoesNotDecode(std::string(10'000'000, '\0'));
    EXPECT_LT(log.unifiedLines().at(0).message.size(), 400U);
    writeContent(file, R"({"grids":[],"defaultGridByDisplayId":{},"cellMarginPoints":5})" +
                           std::string(10'000'000, ' '));
    EXPECT_EQ(store().loadConfig()->cellMarginPoints(), 5);
}

TEST_F(ConfigStoreFilesTest, NumbersThatAreNotFinite) {
    for (const char* number : {"NaN", "Infinity", "1e999", "\"NaN\""}) {
        SCOPED_TRACE(number);
        expectContentDoesNotDecode(R"({"grids":[],"defaultGridByDisplayId":{},"cellMarginPoints":)" +
                                   std::string(number) + "}");
    }
}

TEST_F(ConfigStoreFilesTest, AFolderInPlaceOfTheFile) {
    fs::create_directory(file);
    expectLoadFails<FileError>("Failed to read config: ");
    log.clear();
    EXPECT_THROW(store().saveConfig(*TarvexConfig::makeDefault()), FileError);
    EXPECT_TRUE(log.unifiedLines().at(0).message.starts_with("Failed to write config: "));
    EXPECT_TRUE(fs::is_directory(file));
}

TEST_F(ConfigStoreFilesTest, APipeInPlaceOfTheFileIsRefusedAtOnce) {
    ASSERT_EQ(mkfifo(file.c_str(), 0600), 0);
    expectLoadFails<FileError>("Failed to read config: ");
    log.clear();
    EXPECT_THROW(store().saveConfig(*TarvexConfig::makeDefault()), FileError);
    EXPECT_TRUE(log.unifiedLines().at(0).message.starts_with("Failed to write config: "));
    EXPECT_TRUE(fs::is_fifo(file));
}

TEST_F(ConfigStoreFilesTest, AnUnreadableFile) {
    writeContent(file, R"({"grids":[],"defaultGridByDisplayId":{},"cellMarginPoints":5})");
    fs::permissions(file, fs::perms::none);
    fs::permissions(home.path(), fs::perms::all);
    fs::permissions(home.path() / "config", fs::perms::all);
    const UnprivilegedUser user(folder);
    if (UnprivilegedUser::isBoundByPermissions()) {
        expectLoadFails<FileError>("Failed to read config: ");
        EXPECT_NE(log.unifiedLines().at(0).message.find("Permission denied"), std::string::npos);
    } else {
        EXPECT_EQ(store().loadConfig()->cellMarginPoints(), 5) << "nothing is unreadable for the superuser";
        EXPECT_TRUE(log.unifiedLines().empty());
    }
}

TEST_F(ConfigStoreFilesTest, ADanglingLinkCountsAsAbsentAndSavingCreatesItsTarget) {
    fs::create_symlink("elsewhere.json", file);
    expectDefaultsUnlogged();
    EXPECT_FALSE(fs::exists(folder / "elsewhere.json"));
    store().saveConfig(*TarvexConfig::makeDefault());
    EXPECT_TRUE(fs::is_symlink(file));
    EXPECT_EQ(contentOf(folder / "elsewhere.json"), encodeTarvexConfig(*TarvexConfig::makeDefault()));
    expectDefaultsUnlogged();
}

TEST_F(ConfigStoreFilesTest, ALinkToItselfCountsAsAbsentAndCannotBeSaved) {
    fs::create_symlink("config.json", file);
    expectDefaultsUnlogged();
    EXPECT_THROW(store().saveConfig(*TarvexConfig::makeDefault()), FileError);
    EXPECT_TRUE(log.unifiedLines().at(0).message.starts_with("Failed to write config: "));
}

TEST_F(ConfigStoreFilesTest, AFileRemovedBetweenBeingFoundAndBeingRead) {
    store().saveConfig(*TarvexConfig::makeDefault());
    VanishingFiles vanishing(files);
    ConfigStore reader(LoggerFactory(log).makeLogger("ConfigStore"), vanishing);
    EXPECT_THROW(static_cast<void>(reader.loadConfig()), FileError);
    ASSERT_EQ(log.unifiedLines().size(), 1U);
    EXPECT_EQ(log.unifiedLines()[0].message,
              "Failed to read config: Cannot read \"" + file.string() + "\": No such file or directory");
    log.clear();
    EXPECT_TRUE(haveSameFields(*reader.loadConfig(), *TarvexConfig::makeDefault()));
    EXPECT_TRUE(log.unifiedLines().empty());
}

TEST_F(ConfigStoreFilesTest, AFolderThatIsALinkStaysOneWhenARecordIsSaved) {
    fs::remove_all(folder);
    fs::create_directory(home.path() / "elsewhere");
    fs::create_directory_symlink("../elsewhere", folder);
    store().saveConfig(*TarvexConfig::makeDefault());
    EXPECT_TRUE(fs::is_symlink(folder));
    EXPECT_EQ(contentOf(home.path() / "elsewhere" / "config.json"),
              encodeTarvexConfig(*TarvexConfig::makeDefault()));
    EXPECT_EQ(std::distance(fs::directory_iterator(folder), fs::directory_iterator()), 1)
        << "and no temporary file stays";
    expectDefaultsUnlogged();
}

TEST_F(ConfigStoreFilesTest, TenThousandSplits) {
    TarvexConfigFields fields = TarvexConfig::makeDefault()->fields();
    const std::vector<double> splits = evenSplits(10'000);
    fields.grids = {std::make_shared<const GridDefinition>("many", "Many", splits, std::vector<double>{})};
    store().saveConfig(TarvexConfig(fields));
    EXPECT_EQ(store().loadConfig()->grids().at(0)->verticalSplits(), splits);
}

TEST_F(ConfigStoreFilesTest, ASaveOverABrokenFileMendsIt) {
    writeContent(file, "broken");
    store().saveConfig(*TarvexConfig::makeDefault());
    expectDefaultsUnlogged();
}

TEST_F(ConfigStoreFilesTest, AReaderAgainstAWriterSeesOnlyWholeRecords) {
    TarvexConfigFields large = TarvexConfig::makeDefault()->fields();
    large.cellMarginPoints = 99;
    for (int index = 0; index < 200; ++index) {
        large.grids.push_back(std::make_shared<const GridDefinition>(
            std::to_string(index), "Grid", std::vector(50, 0.123456789), std::vector{0.5}));
    }
    const TarvexConfig largeRecord(large);
    store().saveConfig(*TarvexConfig::makeDefault());

    std::atomic<bool> isWriting{true};
    std::thread writer([&] {
        RecordingLog writerLog;
        PosixFileManager writerFiles(home.path("config"));
        ConfigStore writerStore(LoggerFactory(writerLog).makeLogger("ConfigStore"), writerFiles);
        for (int round = 0; round < 200; ++round) {
            writerStore.saveConfig(round % 2 == 0 ? largeRecord : *TarvexConfig::makeDefault());
        }
        isWriting = false;
    });
    ConfigStore reader = store();
    int reads = 0;
    int damaged = 0;
    do {
        try {
            const TarvexConfigRef config = reader.loadConfig();
            damaged +=
                haveSameFields(*config, largeRecord) || haveSameFields(*config, *TarvexConfig::makeDefault())
                    ? 0
                    : 1;
        } catch (const std::exception&) {
            ++damaged;
        }
        ++reads;
    } while (isWriting);
    writer.join();
    EXPECT_GT(reads, 0);
    EXPECT_EQ(damaged, 0) << "of " << reads << " reads";
    EXPECT_EQ(fs::directory_iterator(folder)->path().filename(), "config.json")
        << "and no temporary file stays";
    EXPECT_EQ(std::distance(fs::directory_iterator(folder), fs::directory_iterator()), 1);
}

} // namespace

} // namespace tarvex
