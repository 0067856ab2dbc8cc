// SPDX-License-Identifier: MIT
#include "storage/LateSaves.h"

#include <map>
#include <utility>

namespace sayloft {
namespace {

struct LateSave {
    KeptFile file;
    QByteArray text;
};

/// By the path of the file, of which only the newest text counts.
std::map<QString, LateSave>& lateSaves() {
    static std::map<QString, LateSave> saves;
    return saves;
}

}  // namespace

void saveNowOrLater(const KeptFile& file, const QByteArray& text) {
    lateSaves().erase(file.path());
    if (!file.write(text))
        lateSaves().insert({file.path(), {file, text}});
}

void saveWhatIsLate() {
    for (const auto& [path, save] : std::exchange(lateSaves(), {}))
        saveNowOrLater(save.file, save.text);
}

}  // namespace sayloft
