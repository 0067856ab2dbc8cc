// SPDX-License-Identifier: MIT
#include "storage/Config.h"

#include "models/Paths.h"
#include "storage/Json.h"
#include "storage/LateSaves.h"
#include "storage/LegacyKeyCode.h"

namespace sayloft {
namespace {

using Chords = std::vector<std::int64_t>;

template <typename Field, typename Read>
void readField(const Json& object, const char* key, Field& field, Read read) {
    if (!object.contains(key))
        return;
    if (auto value = read(object.at(key)))
        field = std::move(*value);
}

std::optional<Chords> readIntegers(const Json& value) {
    return readArray(value, readInteger);
}

std::optional<Chords> readLegacyChords(const Json& keyCodes) {
    const auto codes = readArray(keyCodes, readKeyCode);
    if (!codes)
        return std::nullopt;
    Chords chords;
    for (const std::uint16_t code : *codes) {
        if (const std::int64_t chord = chordForLegacyKeyCode(code); chord != 0)
            chords.push_back(chord);
    }
    return chords;
}

void readChords(const Json& object, const char* key, const char* legacyKey, Chords& chords) {
    std::optional<Chords> read;
    readField(object, key, read, readIntegers);
    if (!read)
        readField(object, legacyKey, read, readLegacyChords);
    if (read)
        chords = std::move(*read);
}

auto readStringArray(const Json& value) {
    return readArray(value, readString);
}

auto readReplacements(const Json& value) {
    return readArray(value, readStringArray);
}

Json replacementsToJson(const std::vector<std::vector<QString>>& replacements) {
    Json entries = Json::array();
    for (const auto& replacement : replacements) {
        Json entry = Json::array();
        for (const QString& text : replacement)
            entry.push_back(toJson(text));
        entries.push_back(std::move(entry));
    }
    return entries;
}

}  // namespace

QString Config::url() {
    return DATA_DIR + QStringLiteral("/config.json");
}

KeptFile Config::file() {
    return {url(), [](const QByteArray& text) { return decode(text).has_value(); },
            KeptFile::Author::user};
}

Config Config::load() {
    const auto json = file().read().text;
    return json ? decode(*json).value_or(Config()) : Config();
}

void Config::save() const {
    saveNowOrLater(file(), encode());
}

std::optional<Config> Config::decode(const QByteArray& json) {
    const auto object = parseJson(json);
    if (!object || !object->is_object())
        return std::nullopt;

    Config config;
    readChords(*object, "dictateChords", "dictateKeys", config.dictateChords);
    readChords(*object, "dictateEnterChords", "dictateEnterKeys", config.dictateEnterChords);
    readField(*object, "inputDeviceUID", config.inputDeviceUID, readString);
    readField(*object, "pillStyle", config.pillStyle, readString);
    readField(*object, "animAppear", config.animAppear, readDouble);
    readField(*object, "animHide", config.animHide, readDouble);
    readField(*object, "holdDuration", config.holdDuration, readDouble);
    readField(*object, "leaveInClipboard", config.leaveInClipboard, readBool);
    readField(*object, "replacements", config.replacements, readReplacements);
    readField(*object, "boostMic", config.boostMic, readBool);
    readField(*object, "playSounds", config.playSounds, readBool);
    readField(*object, "model", config.model, readString);
    return config;
}

QByteArray Config::encode() const {
    Json object = Json::object();
    object["dictateChords"] = dictateChords;
    object["dictateEnterChords"] = dictateEnterChords;
    object["inputDeviceUID"] = inputDeviceUID ? toJson(*inputDeviceUID) : Json();
    object["pillStyle"] = toJson(pillStyle);
    object["animAppear"] = animAppear;
    object["animHide"] = animHide;
    object["holdDuration"] = holdDuration;
    object["leaveInClipboard"] = leaveInClipboard;
    object["replacements"] = replacementsToJson(replacements);
    object["boostMic"] = boostMic;
    object["playSounds"] = playSounds;
    object["model"] = toJson(model);
    return writeJson(object);
}

}  // namespace sayloft
