#include "embedded/journal/call_info.h"

#include <algorithm>

namespace embedded {
namespace {

constexpr std::string_view kPrefix = "Krv";

constexpr std::string_view kFunctions[] = {
    "KrvSessionCreate",      "KrvSessionClose",    "KrvGetNextJukebox",    "KrvGetJukebox",
    "KrvGetMagazine",        "KrvGetDrive",        "KrvGetSlot",           "KrvGetSide",
    "KrvGetNextVolume",      "KrvVolumeDetail",    "KrvVolumeAspects",     "KrvVolumeLocations",
    "KrvVolumeSetAspects",   "KrvVolumeActivate",  "KrvVolumeDeactivate",  "KrvVolumeErase",
    "KrvVolumeFinalize",     "KrvVolumeFormat",    "KrvMediaImport",       "KrvMediaExport",
    "KrvMediaScan",          "KrvActivateJukebox", "KrvDeactivateJukebox", "KrvActivateMagazine",
    "KrvDeactivateMagazine", "KrvActivateDrive",   "KrvDeactivateDrive",   "KrvJukeboxSetName",
    "KrvServiceStart",       "KrvServiceStop",     "KrvServiceRestart",
};

template <typename Key>
bool IsReadable(const Key* key) {
    return key != nullptr && key->size == sizeof(Key);
}

// -1 stands for a number that is left out.
std::optional<int64_t> Given(int32_t number) {
    return number == -1 ? std::nullopt : std::optional<int64_t>(number);
}

bool IsSameWord(std::string_view left, std::string_view right) {
    const auto lower = [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    };
    return std::ranges::equal(left, right, {}, lower, lower);
}

}  // namespace

Item ItemOf(const JukeboxKey* key) {
    Item item;
    if (IsReadable(key)) item.jukebox = Given(key->jukeboxId);
    return item;
}

Item ItemOf(const MagazineKey* key) {
    Item item;
    if (!IsReadable(key)) return item;
    item.jukebox = Given(key->jukeboxId);
    item.magazine = Given(key->magazine);
    return item;
}

Item ItemOf(const DriveKey* key) {
    Item item;
    if (!IsReadable(key)) return item;
    item.jukebox = Given(key->jukeboxId);
    item.drive = Given(key->drive);
    return item;
}

Item ItemOf(const SlotKey* key) {
    Item item;
    if (!IsReadable(key)) return item;
    item.jukebox = Given(key->jukeboxId);
    item.magazine = Given(key->magazine);
    item.slot = Given(key->slot);
    return item;
}

Item ItemOf(const SideKey* key) {
    Item item;
    if (!IsReadable(key)) return item;
    item.jukebox = Given(key->jukeboxId);
    item.magazine = Given(key->magazine);
    item.slot = Given(key->slot);
    item.side = Given(key->side);
    return item;
}

Item VolumeItem(uint32_t volume) {
    Item item;
    item.volume = volume;
    return item;
}

Item WithText(Item item, const char* text) {
    if (text != nullptr) item.text = text;
    return item;
}

Item ReadItem(Statement& row) {
    Item item;
    row >> item.jukebox >> item.magazine >> item.slot >> item.side >> item.drive >> item.volume;
    return item;
}

std::span<const std::string_view> FunctionNames() {
    return kFunctions;
}

std::string_view FindFunction(std::string_view word) {
    for (const std::string_view function : kFunctions) {
        if (IsSameWord(word, function) || IsSameWord(word, function.substr(kPrefix.size()))) return function;
    }
    return {};
}

}  // namespace embedded
