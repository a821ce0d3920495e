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
        const Kept kept = canBeLoaded(url) ? Kept{} : keep(url);
        try {
            fileManager_->writeFileAtomically(url, data);
        } catch (const std::exception&) {
            bringBack(kept, url);
            throw;
        }
        if (!kept.failure.empty()) {
            logger_.error("Failed to keep the config that was replaced: " + kept.failure);
        }
    });
}

bool ConfigStore::canBeLoaded(const std::string& url) {
    if (!fileManager_->fileExists(url)) {
        return true;
    }
    try {
        static_cast<void>(decodeTarvexConfig(fileManager_->readFile(url)));
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

ConfigStore::Kept ConfigStore::keep(const std::string& url) {
    Kept kept;
    for (const char* suffix : {".bak", ".bak.1"}) {
        try {
            fileManager_->keepCopy(url, url + suffix);
            return {url + suffix, {}};
        } catch (const std::exception& error) {
            kept.failure = error.what();
        }
    }
    return kept;
}

void ConfigStore::bringBack(const Kept& kept, const std::string& url) {
    if (kept.url.empty() || fileManager_->fileExists(url)) {
        return;
    }
    try {
        fileManager_->keepCopy(kept.url, url);
    } catch (const std::exception& error) {
        logger_.error("Failed to bring back the config from \"" + kept.url + "\": " + error.what());
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
