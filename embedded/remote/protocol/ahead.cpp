#include "embedded/remote/protocol/ahead.h"

#include <utility>

#include "embedded/remote/protocol/fields.h"
#include "embedded/remote/protocol/sequence.h"

namespace embedded::remote {
namespace {

// Items of one kind are one sequence of all their fields: a value for each field would take most of the time.

template <typename Key, typename Record>
void PutItem(SequenceWriter& fields, const Described<Key, Record>& item) {
    Put(fields, item.key);
    Put(fields, item.record);
}

template <typename Key, typename Record>
void TakeItem(SequenceReader& fields, Described<Key, Record>& item) {
    item.key = Take<Key>(fields);
    item.record = Take<Record>(fields);
}

void PutItem(SequenceWriter& fields, const AheadSide& side) {
    Put(fields, side.key);
    Put(fields, side.record);
    fields.Number(side.failure.has_value() ? side.failure->code : 0);
    if (side.failure.has_value()) fields.Text(side.failure->text);
}

void TakeItem(SequenceReader& fields, AheadSide& side) {
    side.key = Take<SideKey>(fields);
    side.record = Take<SideRecord>(fields);
    const auto code = fields.Number<int32_t>();
    if (code != 0) side.failure = {code, std::string(fields.Text())};
}

void PutItem(SequenceWriter& fields, const AheadVolume& volume) {
    fields.Number(volume.id);
    Put(fields, volume.record);
    fields.Text(volume.aspects);
    fields.Number(volume.places.size());
    for (const SideKey& place : volume.places)
        Put(fields, place);
}

void TakeItem(SequenceReader& fields, AheadVolume& volume) {
    fields.Number(volume.id);
    volume.record = Take<VolumeRecord>(fields);
    volume.aspects = fields.Text();
    // A false count ends with the sequence, whose length is limited.
    for (auto count = fields.Number<uint32_t>(); count > 0; --count)
        volume.places.push_back(Take<SideKey>(fields));
}

template <typename Item>
void Write(json& message, const char* name, const std::vector<Item>& items) {
    if (items.empty()) return;
    SequenceWriter fields;
    for (const Item& item : items)
        PutItem(fields, item);
    message[name] = std::move(fields).Take();
}

template <typename Item>
void Read(const json& message, const char* name, std::vector<Item>& items) {
    const auto found = message.find(name);
    if (found == message.end()) return;
    SequenceReader fields(TextOf(*found));
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
