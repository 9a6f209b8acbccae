/* SPDX-License-Identifier: Apache-2.0 */
/* The place of a number or key in a record of the model. Member pointers of fields of different
 * types have different types; places have one, so that a table can hold them. */
#ifndef FRRUCI_OSPF_FIELD_H
#define FRRUCI_OSPF_FIELD_H

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace frruci::ospf {

/// Offset and size in bytes.
struct Place {
    uint8_t offset;
    uint8_t size;
};

/// A place in that kind of record only.
template <typename Record> struct Field {
    static_assert(sizeof(Record) <= UINT8_MAX);

    Place place;
};

#define FRRUCI_FIELD(Record, member)                                                               \
    ::frruci::ospf::Field<Record> {                                                                \
        { offsetof(Record, member), sizeof(Record::member) }                                       \
    }

static_assert(std::endian::native == std::endian::little); // narrowing keeps the first bytes

/// The number of 1, 2 or 4 bytes at that place.
inline uint32_t numberAt(const void *record, Place place) {
    uint32_t number = 0;
    memcpy(&number, static_cast<const char *>(record) + place.offset, place.size);
    return number;
}

/// The 32-bit number of a caller, which may lie anywhere; null reads as 0.
inline uint32_t wordAt(const void *value) {
    uint32_t word = 0;
    if (value != nullptr) {
        memcpy(&word, value, sizeof word);
    }
    return word;
}

/// Stores a number, narrowed to its field.
template <typename Record> void storeNumber(Record &record, Field<Record> field, uint32_t number) {
    memcpy(reinterpret_cast<char *>(&record) + field.place.offset, &number, field.place.size);
}

template <typename Record> uint32_t numberOf(const Record &record, Field<Record> field) {
    return numberAt(&record, field.place);
}

} // namespace frruci::ospf

#endif
