#include "embedded/remote/protocol/ahead.h"

#include "embedded/remote/protocol/fields.h"

namespace embedded::remote {
namespace {

// An item is a list of its fields.

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
    if (!side.failure.has_value()) return;
    list.emplace_back(side.failure->code);
    list.push_back(BytesOf(side.failure->text));
}

void TakeItem(FieldReader& fields, AheadSide& side) {
    side.key = Take<SideKey>(fields);
    side.record = Take<SideRecord>(fields);
    if (fields.IsAtEnd()) return;
    side.failure.emplace();
    fields.Number(side.failure->code);
    side.failure->text = fields.Text();
}

void AppendItem(json::array_t& list, const AheadVolume& volume) {
    list.emplace_back(volume.id);
    Append(list, volume.record);
    list.push_back(BytesOf(volume.aspects));
    for (const SideKey& place : volume.places)
        Append(list, place);
}

void TakeItem(FieldReader& fields, AheadVolume& volume) {
    fields.Number(volume.id);
    volume.record = Take<VolumeRecord>(fields);
    volume.aspects = fields.Text();
    while (!fields.IsAtEnd())
        volume.places.push_back(Take<SideKey>(fields));
}

template <typename Item>
void Write(json& message, const char* name, const std::vector<Item>& items) {
    if (items.empty()) return;
    json::array_t list;
    list.reserve(items.size());
    for (const Item& item : items) {
        json::array_t fields;
        constexpr size_t kUsualFields = 16;
        fields.reserve(kUsualFields);
        AppendItem(fields, item);
        list.emplace_back(std::move(fields));
    }
    message[name] = std::move(list);
}

template <typename Item>
void Read(const json& message, const char* name, std::vector<Item>& items) {
    const auto found = message.find(name);
    if (found == message.end()) return;
    if (!found->is_array()) throw ProtocolFailure(std::string("\"") + name + "\" is no list");
    items.resize(found->size());
    size_t position = 0;
    for (const json& list : *found) {
        FieldReader fields(list);
        TakeItem(fields, items[position++]);
    }
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
