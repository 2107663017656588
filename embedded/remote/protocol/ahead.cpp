#include "embedded/remote/protocol/ahead.h"

#include "embedded/remote/protocol/fields.h"

namespace embedded::remote {
namespace {

// Items of one kind are one list of all their fields: a list for each item would take most of the time.

template <typename Key, typename Record>
void AppendItem(json::array_t& list, const Described<Key, Record>& item) {
    Append(list, item.key);
    Append(list, item.record);
}

template <typename Key, typename Record>
void TakeItem(FieldReader& fields, Described<Key, Record>& item) {
    item.key = Take<Key>(fields);
    item.record = Take<Record>(fields);
}

void AppendItem(json::array_t& list, const AheadSide& side) {
    Append(list, side.key);
    Append(list, side.record);
    list.emplace_back(side.failure.has_value());
    if (!side.failure.has_value()) return;
    list.emplace_back(side.failure->code);
    list.push_back(BytesOf(side.failure->text));
}

void TakeItem(FieldReader& fields, AheadSide& side) {
    side.key = Take<SideKey>(fields);
    side.record = Take<SideRecord>(fields);
    if (!fields.Flag()) return;
    side.failure.emplace();
    fields.Number(side.failure->code);
    side.failure->text = fields.Text();
}

void AppendItem(json::array_t& list, const AheadVolume& volume) {
    list.emplace_back(volume.id);
    Append(list, volume.record);
    list.push_back(BytesOf(volume.aspects));
    list.emplace_back(volume.places.size());
    for (const SideKey& place : volume.places)
        Append(list, place);
}

void TakeItem(FieldReader& fields, AheadVolume& volume) {
    fields.Number(volume.id);
    volume.record = Take<VolumeRecord>(fields);
    volume.aspects = fields.Text();
    // A false count ends with the list, whose length is limited.
    for (auto count = fields.Number<uint32_t>(); count > 0; --count)
        volume.places.push_back(Take<SideKey>(fields));
}

template <typename Item>
void Write(json& message, const char* name, const std::vector<Item>& items) {
    if (items.empty()) return;
    json::array_t list;
    constexpr size_t kUsualFields = 14;
    list.reserve(items.size() * kUsualFields);
    for (const Item& item : items)
        AppendItem(list, item);
    message[name] = std::move(list);
}

template <typename Item>
void Read(const json& message, const char* name, std::vector<Item>& items) {
    const auto found = message.find(name);
    if (found == message.end()) return;
    FieldReader fields(*found);
    while (!fields.IsAtEnd())
        TakeItem(fields, items.emplace_back());
}

// For volumes that follow each other.
constexpr const char* kRow = "row";

}  // namespace

json ToMessage(const Ahead& ahead) {
    json message = json::object();
    Write(message, "jukeboxes", ahead.jukeboxes);
    Write(message, "magazines", ahead.magazines);
    Write(message, "drives", ahead.drives);
    Write(message, "slots", ahead.slots);
    Write(message, "sides", ahead.sides);
    Write(message, "volumes", ahead.volumes);
    if (ahead.areVolumesInRow) message[kRow] = ahead.isEndOfRow ? "ends" : "goes on";
    return message;
}

Ahead AheadFrom(const json& message) {
    if (!message.is_object()) throw ProtocolFailure("\"ahead\" is no map");
    Ahead ahead;
    Read(message, "jukeboxes", ahead.jukeboxes);
    Read(message, "magazines", ahead.magazines);
    Read(message, "drives", ahead.drives);
    Read(message, "slots", ahead.slots);
    Read(message, "sides", ahead.sides);
    Read(message, "volumes", ahead.volumes);
    ahead.areVolumesInRow = message.contains(kRow);
    ahead.isEndOfRow = ahead.areVolumesInRow && message[kRow] == "ends";
    for (size_t i = 1; i < ahead.volumes.size(); ++i) {
        if (ahead.areVolumesInRow && ahead.volumes[i].id <= ahead.volumes[i - 1].id)
            throw ProtocolFailure("volumes are not in order");
    }
    return ahead;
}

}  // namespace embedded::remote
