#pragma once

#include <algorithm>
#include <cstring>
#include <type_traits>
#include <utility>

#include "embedded/remote/protocol/cbor.h"
#include "krvcmd/service/sdk/krv_sdk.h"
#include "krvcmd/service/sdk/records.h"

namespace embedded::remote {

// Keys and records travel as their fields, one after the other: in an array, or in a sequence (sequence.h).
// Visit names the fields once, for both directions and for both forms.

template <size_t Size>
void CopyText(std::string_view text, char (&field)[Size]) {
    if (text.size() > Size) throw ProtocolFailure("a text is too long");
    std::fill(std::begin(field), std::end(field), '\0');
    std::ranges::copy(text, field);
}

template <typename Integer, typename Number>
Integer InRange(Number value) {
    if (!std::in_range<Integer>(value)) throw ProtocolFailure("a number is out of range");
    return static_cast<Integer>(value);
}

class FieldWriter {
  public:
    // Appends to the array.
    explicit FieldWriter(json::array_t& list) : m_list(list) {}

    template <typename Integer>
    void Number(Integer value) {
        m_list.emplace_back(value);
    }
    template <size_t Size>
    void Text(const char (&field)[Size]) {
        m_list.push_back(BytesOf(krvcmd::RecordText(field)));
    }

  private:
    json::array_t& m_list;
};

// Throws a ProtocolFailure for a field that is missing, of another type, or that does not fit.
class FieldReader {
  public:
    explicit FieldReader(const json& list) : m_list(list) {
        if (!list.is_array()) throw ProtocolFailure("a list is missing");
    }

    bool IsAtEnd() const { return m_next == m_list.size(); }

    const json& Next() {
        if (IsAtEnd()) throw ProtocolFailure("a list is too short");
        return m_list[m_next++];
    }

    template <typename Integer>
    void Number(Integer& value) {
        const json& field = Next();
        const bool isUnsigned = field.is_number_unsigned();
        if (!isUnsigned && !field.is_number_integer()) throw ProtocolFailure("a number is missing");
        value = isUnsigned ? InRange<Integer>(field.get<uint64_t>()) : InRange<Integer>(field.get<int64_t>());
    }
    template <typename Integer>
    Integer Number() {
        Integer value{};
        Number(value);
        return value;
    }
    template <size_t Size>
    void Text(char (&field)[Size]) {
        CopyText(TextOf(Next()), field);
    }
    std::string Text() { return std::string(TextOf(Next())); }

  private:
    const json& m_list;
    size_t m_next = 0;
};

template <typename Fields>
void Visit(Fields& fields, JukeboxKey& key) {
    fields.Number(key.jukeboxId);
}
template <typename Fields>
void Visit(Fields& fields, MagazineKey& key) {
    fields.Number(key.jukeboxId);
    fields.Number(key.magazine);
}
template <typename Fields>
void Visit(Fields& fields, DriveKey& key) {
    fields.Number(key.jukeboxId);
    fields.Number(key.drive);
}
template <typename Fields>
void Visit(Fields& fields, SlotKey& key) {
    fields.Number(key.jukeboxId);
    fields.Number(key.magazine);
    fields.Number(key.slot);
}
template <typename Fields>
void Visit(Fields& fields, SideKey& key) {
    fields.Number(key.jukeboxId);
    fields.Number(key.magazine);
    fields.Number(key.slot);
    fields.Number(key.side);
}
template <typename Fields>
void Visit(Fields& fields, DeviceIdentity& identity) {
    for (int32_t& number : identity.scsiAddress)
        fields.Number(number);
    fields.Text(identity.vendor);
    fields.Text(identity.product);
    fields.Text(identity.revision);
}
template <typename Fields>
void Visit(Fields& fields, JukeboxRecord& record) {
    Visit(fields, record.identity);
    fields.Number(record.enabled);
    fields.Number(record.doubleSided);
    fields.Number(record.driveCount);
    fields.Number(record.magazineCount);
    fields.Number(record.slotCount);
    fields.Text(record.name);
}
template <typename Fields>
void Visit(Fields& fields, MagazineRecord& record) {
    fields.Number(record.slotCount);
    fields.Number(record.present);
}
template <typename Fields>
void Visit(Fields& fields, DriveRecord& record) {
    Visit(fields, record.identity);
    fields.Number(record.enabled);
    fields.Number(record.libraryValue1);
    fields.Number(record.libraryValue2);
}
template <typename Fields>
void Visit(Fields& fields, SlotRecord& record) {
    fields.Number(record.state);
    fields.Number(record.mediumCode);
}
template <typename Fields>
void Visit(Fields& fields, SideRecord& record) {
    fields.Number(record.state);
    fields.Number(record.mediumCode);
    fields.Number(record.finalization);
    fields.Number(record.volumeId);
}
template <typename Fields>
void Visit(Fields& fields, VolumeRecord& record) {
    fields.Number(record.type);
    fields.Number(record.state);
    fields.Number(record.libraryValue1);
    fields.Text(record.fileSystem);
    fields.Text(record.label);
    fields.Number(record.totalCapacity);
    fields.Number(record.freeCapacity);
    fields.Number(record.libraryValue2);
}
template <typename Fields>
void Visit(Fields& fields, FormatOptions& options) {
    fields.Text(options.label);
    fields.Number(options.certify);
    fields.Number(options.sequential);
}

// Writes the fields of a key or a record.
template <typename Fields, typename Record>
void Put(Fields& fields, Record record) {
    Visit(fields, record);
}

// Appends the fields of a key or a record.
template <typename Record>
void Append(json::array_t& list, const Record& record) {
    FieldWriter writer(list);
    Put(writer, record);
}

template <typename Record>
json ListOf(const Record& record) {
    json::array_t list;
    Append(list, record);
    return list;
}

// The next fields as a key or a record, its size set.
template <typename Record, typename Fields>
Record Take(Fields& fields) {
    Record record{};
    record.size = sizeof(Record);
    Visit(fields, record);
    return record;
}

}  // namespace embedded::remote
