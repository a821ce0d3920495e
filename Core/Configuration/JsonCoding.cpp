#include "Core/Configuration/JsonCoding.h"

#include "Core/Configuration/JsonReading.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string_view>
#include <utility>

namespace tarvex {

namespace {

using nlohmann::json;
using nlohmann::ordered_json;

// The records need four levels. A parsed level takes a hundred times the byte that opens it: a file of ten
// million brackets would take a gigabyte, to be refused in the end.
constexpr std::size_t maxNesting = 512;

double finite(double value, const char* key) {
    if (!std::isfinite(value)) {
        throw EncodingError("\"" + std::string(key) + "\" is not a finite number");
    }
    return value;
}

ordered_json finiteNumbers(const std::vector<double>& values, const char* key) {
    ordered_json array = ordered_json::array();
    for (const double value : values) {
        array.push_back(finite(value, key));
    }
    return array;
}

std::optional<HotkeyDefinition> decodeHotkey(const JsonObjectReader& parent, const char* key) {
    const json* value = parent.optional(key);
    if (value == nullptr) {
        return std::nullopt;
    }
    const JsonObjectReader reader(*value, key);
    return HotkeyDefinition{reader.requiredUInt32("keyCode"), reader.requiredUInt32("modifiers")};
}

std::optional<ModifierDefinition> decodeModifiers(const JsonObjectReader& parent, const char* key) {
    const json* value = parent.optional(key);
    if (value == nullptr) {
        return std::nullopt;
    }
    return ModifierDefinition{JsonObjectReader(*value, key).requiredUInt32("modifiers")};
}

std::vector<GridDefinitionRef> decodeGrids(const JsonObjectReader& reader) {
    const json& array = reader.required("grids");
    if (!array.is_array()) {
        throw DecodingError("\"grids\" is not an array");
    }
    std::vector<GridDefinitionRef> grids;
    grids.reserve(array.size());
    for (const json& element : array) {
        grids.push_back(decodeGridDefinition(element));
    }
    return grids;
}

std::map<std::string, std::string> decodeGridAssignments(const JsonObjectReader& reader) {
    const json& object = reader.required("defaultGridByDisplayId");
    if (!object.is_object()) {
        throw DecodingError("\"defaultGridByDisplayId\" is not an object");
    }
    std::map<std::string, std::string> assignments;
    for (const auto& [displayId, gridId] : object.items()) {
        if (!gridId.is_string()) {
            throw DecodingError("\"defaultGridByDisplayId\" holds something that is not a string");
        }
        assignments.emplace(displayId, gridId.get<std::string>());
    }
    return assignments;
}

// The parser quotes the token that it stopped at, which may be as long as the text and hold any bytes. A log
// takes the start of it, as one line of plain characters.
std::string describe(const json::exception& error) {
    constexpr std::size_t longest = 200;
    std::string description = error.what();
    if (description.size() > longest) {
        description.replace(longest, std::string::npos, "...");
    }
    const auto isUnprintable = [](char character) { return character < ' ' || character > '~'; };
    std::replace_if(description.begin(), description.end(), isUnprintable, '?');
    return description;
}

bool opensLevel(char character) {
    return character == '[' || character == '{';
}

// Brackets within strings do not count.
bool isNestedTooDeep(std::string_view text) {
    // So it is with every honest text, and counting is fast.
    if (std::cmp_less_equal(std::count_if(text.begin(), text.end(), opensLevel), maxNesting)) {
        return false;
    }
    std::size_t depth = 0;
    bool isInString = false;
    for (std::size_t index = 0; index < text.size(); ++index) {
        const char character = text[index];
        if (isInString) {
            index += character == '\\' ? 1 : 0;
            isInString = character != '"';
        } else if (character == '"') {
            isInString = true;
        } else if (opensLevel(character)) {
            if (++depth > maxNesting) {
                return true;
            }
        } else if (character == ']' || character == '}') {
            depth -= depth > 0 ? 1 : 0;
        }
    }
    return false;
}

json parse(const std::string& text) {
    // The parser takes one for the end of the text and would pass over whatever follows.
    if (text.find('\0') != std::string::npos) {
        throw DecodingError("the text holds a zero byte");
    }
    if (isNestedTooDeep(text)) {
        throw DecodingError("the text is nested more than " + std::to_string(maxNesting) + " levels deep");
    }
    try {
        return json::parse(text);
    } catch (const json::exception& error) {
        throw DecodingError(describe(error));
    }
}

void putHotkey(ordered_json& object, const char* key, const std::optional<HotkeyDefinition>& hotkey) {
    if (hotkey) {
        object[key] = {{"keyCode", hotkey->keyCode}, {"modifiers", hotkey->modifiers}};
    }
}

void putModifiers(ordered_json& object, const char* key,
                  const std::optional<ModifierDefinition>& definition) {
    if (definition) {
        object[key] = {{"modifiers", definition->modifiers}};
    }
}

void putBool(ordered_json& object, const char* key, std::optional<bool> value) {
    if (value) {
        object[key] = *value;
    }
}

} // namespace

TarvexConfigRef decodeTarvexConfig(const std::string& text) {
    const json document = parse(text);
    const JsonObjectReader reader(document, "the configuration");
    TarvexConfigFields fields;
    fields.grids = decodeGrids(reader);
    fields.defaultGridByDisplayId = decodeGridAssignments(reader);
    fields.cellMarginPoints = reader.requiredNumber("cellMarginPoints");
    fields.openEditorHotkey = decodeHotkey(reader, "openEditorHotkey");
    fields.openPreferencesHotkey = decodeHotkey(reader, "openPreferencesHotkey");
    fields.singleSnapModifiers = decodeModifiers(reader, "singleSnapModifiers");
    fields.multiSnapModifiers = decodeModifiers(reader, "multiSnapModifiers");
    fields.launchAtLogin = reader.optionalBool("launchAtLogin");
    fields.hideMenuBarIcon = reader.optionalBool("hideMenuBarIcon");
    fields.restoreWindowSizeOnUnsnap = reader.optionalBool("restoreWindowSizeOnUnsnap");
    return std::make_shared<const TarvexConfig>(std::move(fields));
}

std::string encodeTarvexConfig(const TarvexConfig& config) {
    ordered_json object;
    object["grids"] = ordered_json::array();
    for (const GridDefinitionRef& grid : config.grids()) {
        object["grids"].push_back(encodeJson(*grid));
    }
    object["defaultGridByDisplayId"] = config.defaultGridByDisplayId();
    object["cellMarginPoints"] = finite(config.cellMarginPoints(), "cellMarginPoints");
    putHotkey(object, "openEditorHotkey", config.openEditorHotkey());
    putHotkey(object, "openPreferencesHotkey", config.openPreferencesHotkey());
    putModifiers(object, "singleSnapModifiers", config.singleSnapModifiers());
    putModifiers(object, "multiSnapModifiers", config.multiSnapModifiers());
    putBool(object, "launchAtLogin", config.launchAtLogin());
    putBool(object, "hideMenuBarIcon", config.hideMenuBarIcon());
    putBool(object, "restoreWindowSizeOnUnsnap", config.restoreWindowSizeOnUnsnap());
    try {
        return object.dump();
    } catch (const json::exception& error) {
        throw EncodingError(describe(error));
    }
}

GridDefinitionRef decodeGridDefinition(const json& json) {
    const JsonObjectReader reader(json, "a grid");
    return std::make_shared<const GridDefinition>(reader.requiredString("id"), reader.requiredString("name"),
                                                  reader.requiredNumbers("verticalSplits"),
                                                  reader.requiredNumbers("horizontalSplits"));
}

ordered_json encodeJson(const GridDefinition& grid) {
    return {{"id", grid.id()},
            {"name", grid.name()},
            {"verticalSplits", finiteNumbers(grid.verticalSplits(), "verticalSplits")},
            {"horizontalSplits", finiteNumbers(grid.horizontalSplits(), "horizontalSplits")}};
}

GridCell decodeGridCell(const json& json) {
    const JsonObjectReader reader(json, "a cell");
    return {reader.requiredInteger("rowIndex"), reader.requiredInteger("columnIndex"),
            decodeNormalizedRect(reader.required("rect"))};
}

ordered_json encodeJson(const GridCell& cell) {
    return {{"rowIndex", cell.rowIndex()},
            {"columnIndex", cell.columnIndex()},
            {"rect", encodeJson(cell.rect())}};
}

NormalizedRect decodeNormalizedRect(const json& json) {
    const JsonObjectReader reader(json, "a rectangle");
    return {reader.requiredNumber("x"), reader.requiredNumber("y"), reader.requiredNumber("width"),
            reader.requiredNumber("height")};
}

ordered_json encodeJson(const NormalizedRect& rect) {
    return {{"x", finite(rect.x(), "x")},
            {"y", finite(rect.y(), "y")},
            {"width", finite(rect.width(), "width")},
            {"height", finite(rect.height(), "height")}};
}

NormalizedPoint decodeNormalizedPoint(const json& json) {
    const JsonObjectReader reader(json, "a point");
    return {reader.requiredNumber("x"), reader.requiredNumber("y")};
}

ordered_json encodeJson(const NormalizedPoint& point) {
    return {{"x", finite(point.x(), "x")}, {"y", finite(point.y(), "y")}};
}

GridLineOrientation decodeGridLineOrientation(const json& json) {
    const auto orientation =
        json.is_string() ? makeGridLineOrientation(json.get<std::string>()) : std::nullopt;
    if (!orientation) {
        throw DecodingError(R"(a line orientation is neither "horizontal" nor "vertical")");
    }
    return *orientation;
}

ordered_json encodeJson(GridLineOrientation orientation) {
    return std::string(rawValue(orientation));
}

DisplayIdentifier decodeDisplayIdentifier(const json& json) {
    const JsonObjectReader reader(json, "a display");
    return {reader.requiredInteger("vendorId"), reader.requiredInteger("productId"),
            reader.optionalInteger("serialNumber")};
}

ordered_json encodeJson(const DisplayIdentifier& identifier) {
    ordered_json object = {{"vendorId", identifier.vendorId()}, {"productId", identifier.productId()}};
    if (const std::optional<std::int64_t> serialNumber = identifier.serialNumber()) {
        object["serialNumber"] = *serialNumber;
    }
    return object;
}

} // namespace tarvex
