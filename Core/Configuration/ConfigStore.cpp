#include "Core/Configuration/ConfigStore.h"

#include "Core/Configuration/JsonCoding.h"

#include <exception>
#include <utility>

namespace tarvex {

namespace {

// Runs one step of the store; a failure is logged under the given words and passed on.
template <typename Step>
auto loggingFailure(const Logger& logger, const char* words, Step&& step) {
    try {
        return std::forward<Step>(step)();
    } catch (const std::exception& error) {
        logger.error(std::string(words) + error.what());
        throw;
    }
}

} // namespace

ConfigStore::ConfigStore(Logger logger, FileManager& fileManager)
    : logger_(std::move(logger)), fileManager_(&fileManager) {}

TarvexConfigRef ConfigStore::loadConfig() {
    const std::string url = getConfigUrl();
    if (!fileManager_->fileExists(url)) {
        return TarvexConfig::makeDefault();
    }
    return decodeConfig(
        loggingFailure(logger_, "Failed to read config: ", [&] { return fileManager_->readFile(url); }));
}

void ConfigStore::saveConfig(const TarvexConfig& config) {
    const std::string url = getConfigUrl();
    const std::string data = encodeConfig(config);
    loggingFailure(logger_, "Failed to write config: ", [&] {
        keepUnreadable(url);
        fileManager_->writeFileAtomically(url, data);
    });
}

void ConfigStore::keepUnreadable(const std::string& url) {
    if (!fileManager_->fileExists(url)) {
        return;
    }
    try {
        static_cast<void>(decodeTarvexConfig(fileManager_->readFile(url)));
    } catch (const std::exception&) {
        fileManager_->keepCopy(url, url + ".bak");
    }
}

std::string ConfigStore::getConfigUrl() {
    const std::string directory = fileManager_->applicationSupportDirectory() + "/Tarvex";
    fileManager_->createDirectory(directory);
    return directory + "/config.json";
}

TarvexConfigRef ConfigStore::decodeConfig(const std::string& data) {
    return loggingFailure(logger_, "Failed to decode config: ", [&] { return decodeTarvexConfig(data); });
}

std::string ConfigStore::encodeConfig(const TarvexConfig& config) {
    return loggingFailure(logger_, "Failed to encode config: ", [&] { return encodeTarvexConfig(config); });
}

TarvexConfigRef loadConfigOrNone(ConfigStore& store) {
    try {
        return store.loadConfig();
    } catch (const std::exception&) {
        return nullptr;
    }
}

TarvexConfigRef loadConfigOrDefault(ConfigStore& store) {
    TarvexConfigRef config = loadConfigOrNone(store);
    return config ? config : TarvexConfig::makeDefault();
}

} // namespace tarvex
