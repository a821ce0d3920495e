#include "Core/Configuration/ConfigStore.h"

#include "Core/Configuration/JsonCoding.h"
#include "Tests/Support/ConfigProperties.h"
#include "Tests/Support/RecordingLog.h"
#include "Tests/Support/SimulatedFileManager.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <string>
#include <vector>

namespace tarvex {

namespace {

class ConfigStoreTest : public testing::Test {
protected:
    [[nodiscard]] ConfigStore store() { return {LoggerFactory(log).makeLogger("ConfigStore"), files}; }

    // The message of the exception; empty when nothing is thrown.
    template <typename Error>
    [[nodiscard]] static std::string messageOf(const std::function<void()>& action) {
        try {
            action();
        } catch (const Error& error) {
            return error.what();
        }
        return "";
    }

    void load() { loaded = store().loadConfig(); }

    void save() { store().saveConfig(*TarvexConfig::makeDefault()); }

    void expectLogged(const std::vector<std::string>& messages) const {
        std::vector<UnifiedLogLine> expected;
        for (const std::string& message : messages) {
            expected.push_back({"Tarvex", "ConfigStore", message});
        }
        EXPECT_EQ(log.unifiedLines(), expected);
        EXPECT_TRUE(log.systemLines().empty());
    }

    RecordingLog log;
    SimulatedFileManager files;
    TarvexConfigRef loaded;
};

TEST_F(ConfigStoreTest, NoFolderAndNoFileGiveTheDefaultsAndAFolder) {
    load();
    EXPECT_TRUE(haveSameFields(*loaded, *TarvexConfig::makeDefault()));
    EXPECT_TRUE(files.hasDirectory("/support/Tarvex"));
    EXPECT_EQ(files.content(SimulatedFileManager::configPath), std::nullopt);
    EXPECT_EQ(files.callCount(FileOperation::writeFile), 0U);
    expectLogged({});
}

TEST_F(ConfigStoreTest, TheFirstSaveMakesFolderAndFile) {
    save();
    EXPECT_TRUE(files.hasDirectory("/support/Tarvex"));
    EXPECT_EQ(files.content(SimulatedFileManager::configPath),
              encodeTarvexConfig(*TarvexConfig::makeDefault()));
    expectLogged({});
}

TEST_F(ConfigStoreTest, WhatIsSavedIsLoadedByEveryOtherStore) {
    TarvexConfigFields fields = TarvexConfig::makeDefault()->fields();
    fields.cellMarginPoints = 21;
    fields.openEditorHotkey = HotkeyDefinition{5, 768};
    ConfigStore writer = store();
    ConfigStore reader = store();
    writer.saveConfig(TarvexConfig(fields));
    EXPECT_TRUE(haveSameFields(*reader.loadConfig(), TarvexConfig(fields)));
}

TEST_F(ConfigStoreTest, NothingIsCached) {
    ConfigStore reader = store();
    save();
    EXPECT_EQ(reader.loadConfig()->cellMarginPoints(), 8);
    files.putFile(SimulatedFileManager::configPath,
                  R"({"grids":[],"defaultGridByDisplayId":{},"cellMarginPoints":3})");
    EXPECT_EQ(reader.loadConfig()->cellMarginPoints(), 3);
    files.removeFile(SimulatedFileManager::configPath);
    EXPECT_EQ(reader.loadConfig()->cellMarginPoints(), 8);
    EXPECT_EQ(files.callCount(FileOperation::readFile), 2U);
}

TEST_F(ConfigStoreTest, AnEmptyObjectIsLoggedAndThrown) {
    files.putFile(SimulatedFileManager::configPath, "{}");
    const std::string message = messageOf<DecodingError>([this] { load(); });
    EXPECT_EQ(message, "\"grids\" of the configuration is missing");
    expectLogged({"Failed to decode config: " + message});
}

TEST_F(ConfigStoreTest, AnEmptyFileIsReadButDoesNotDecode) {
    files.putFile(SimulatedFileManager::configPath, "");
    const std::string message = messageOf<DecodingError>([this] { load(); });
    EXPECT_NE(message, "");
    expectLogged({"Failed to decode config: " + message});
}

TEST_F(ConfigStoreTest, AFileThatDoesNotDecodeIsLeftAlone) {
    files.putFile(SimulatedFileManager::configPath, "broken");
    EXPECT_THROW(load(), DecodingError);
    EXPECT_EQ(files.content(SimulatedFileManager::configPath), "broken");
    EXPECT_EQ(files.callCount(FileOperation::writeFile), 0U);
}

TEST_F(ConfigStoreTest, AFileThatCannotBeReadIsLoggedAndThrown) {
    files.putFile(SimulatedFileManager::configPath, encodeTarvexConfig(*TarvexConfig::makeDefault()));
    files.fail(FileOperation::readFile, "Cannot read it: Permission denied");
    EXPECT_EQ(messageOf<FileError>([this] { load(); }), "Cannot read it: Permission denied");
    expectLogged({"Failed to read config: Cannot read it: Permission denied"});
}

TEST_F(ConfigStoreTest, AFailedWriteIsLoggedAndThrownAndLeavesTheOldFile) {
    files.putFile(SimulatedFileManager::configPath, "old");
    files.fail(FileOperation::writeFile, "Cannot write it: No space left on device");
    EXPECT_EQ(messageOf<FileError>([this] { save(); }), "Cannot write it: No space left on device");
    expectLogged({"Failed to write config: Cannot write it: No space left on device"});
    EXPECT_EQ(files.content(SimulatedFileManager::configPath), "old");
}

TEST_F(ConfigStoreTest, ARecordThatCannotBeEncodedIsLoggedAndNeverWritten) {
    TarvexConfigFields fields = TarvexConfig::makeDefault()->fields();
    fields.cellMarginPoints = std::nan("");
    const std::string message = messageOf<EncodingError>([&] { store().saveConfig(TarvexConfig(fields)); });
    EXPECT_EQ(message, "\"cellMarginPoints\" is not a finite number");
    expectLogged({"Failed to encode config: " + message});
    EXPECT_EQ(files.callCount(FileOperation::writeFile), 0U);
}

TEST_F(ConfigStoreTest, ASystemWithoutAFolderForDataThrowsUnlogged) {
    files.fail(FileOperation::applicationSupportDirectory, "none");
    EXPECT_EQ(messageOf<FileError>([this] { load(); }), "none");
    EXPECT_EQ(messageOf<FileError>([this] { save(); }), "none");
    expectLogged({});
}

TEST_F(ConfigStoreTest, AFolderThatCannotBeMadeThrowsUnlogged) {
    files.fail(FileOperation::createDirectory, "read-only");
    EXPECT_EQ(messageOf<FileError>([this] { load(); }), "read-only");
    EXPECT_EQ(messageOf<FileError>([this] { save(); }), "read-only");
    expectLogged({});
}

TEST_F(ConfigStoreTest, APlainFileInPlaceOfTheFolderThrowsUnlogged) {
    files.putFile("/support/Tarvex", "a plain file");
    EXPECT_NE(messageOf<FileError>([this] { load(); }), "");
    EXPECT_NE(messageOf<FileError>([this] { save(); }), "");
    expectLogged({});
}

TEST_F(ConfigStoreTest, EveryCallMakesSureOfTheFolder) {
    load();
    save();
    load();
    EXPECT_EQ(files.callCount(FileOperation::createDirectory), 3U);
}

TEST_F(ConfigStoreTest, SettingsThatDoNotDecodeAreKeptBesideThoseThatReplaceThem) {
    const std::string kept = std::string(SimulatedFileManager::configPath) + ".bak";
    files.putFile(SimulatedFileManager::configPath, "{ my grids");
    files.putFile(kept, "an older one");
    save();
    EXPECT_EQ(files.content(kept), "{ my grids");
    load();
    expectLogged({});
}

TEST_F(ConfigStoreTest, SettingsThatCannotBeReadAreKeptToo) {
    const std::string kept = std::string(SimulatedFileManager::configPath) + ".bak";
    files.putFile(SimulatedFileManager::configPath, "secret");
    files.fail(FileOperation::readFile, "denied");
    save();
    EXPECT_EQ(files.content(kept), "secret");
}

TEST_F(ConfigStoreTest, SettingsThatAreInOrderAreNotKept) {
    save();
    save();
    EXPECT_EQ(files.callCount(FileOperation::keepCopy), 0U);
}

TEST_F(ConfigStoreTest, SettingsAreKeptUnderASecondNameWhereTheFirstIsTaken) {
    const std::string kept = std::string(SimulatedFileManager::configPath) + ".bak";
    files.putFile(SimulatedFileManager::configPath, "{ my grids");
    files.createDirectory(kept);
    save();
    EXPECT_EQ(files.content(kept + ".1"), "{ my grids");
    load();
    expectLogged({});
}

TEST_F(ConfigStoreTest, SettingsThatCannotBeKeptAnywhereAreReplaced) {
    files.putFile(SimulatedFileManager::configPath, "{ my grids");
    files.fail(FileOperation::keepCopy, "no room");
    save();
    load();
    expectLogged({"Failed to keep the config that was replaced: no room"});
}

TEST_F(ConfigStoreTest, SettingsThatWereMovedAsideComeBackWhenTheWritingFails) {
    files.putFile(SimulatedFileManager::configPath, "{ my grids");
    files.movesInsteadOfCopying = true;
    files.fail(FileOperation::writeFile, "no room");
    EXPECT_EQ(messageOf<FileError>([this] { save(); }), "no room");
    EXPECT_EQ(files.content(SimulatedFileManager::configPath), "{ my grids");
    expectLogged({"Failed to write config: no room"});
}

TEST_F(ConfigStoreTest, AFailureThatHasPassedIsForgotten) {
    save();
    files.fail(FileOperation::readFile, "busy");
    EXPECT_THROW(load(), FileError);
    files.heal(FileOperation::readFile);
    load();
    EXPECT_TRUE(haveSameFields(*loaded, *TarvexConfig::makeDefault()));
    expectLogged({"Failed to read config: busy"});
}

} // namespace

} // namespace tarvex
