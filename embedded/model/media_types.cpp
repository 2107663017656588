#include "embedded/model/media_types.h"

#include <algorithm>

namespace embedded {
namespace {

using enum Writing;
using enum Access;

constexpr uint64_t kMega = 1'000'000;
constexpr uint64_t kCd = 737'280'000;  // 360,000 sectors of 2048 bytes

// clang-format off
constexpr MediaType kTypes[] = {
    { 0, "CD-ROM",         ReadOnly,   Sequential, kCd},
    { 1, "CD-R",           WriteOnce,  Sequential, kCd},
    { 2, "CD-RW",          Rewritable, Sequential, kCd},
    { 4, "DVD-ROM",        ReadOnly,   Sequential, 4'700 * kMega},
    { 5, "DVD-R",          WriteOnce,  Sequential, 4'700 * kMega},
    { 6, "DVD-RW",         Rewritable, Sequential, 4'700 * kMega},
    { 7, "DVD-Row",        Rewritable, Random,     4'700 * kMega},
    { 9, "DVD+R",          WriteOnce,  Sequential, 4'700 * kMega},
    {10, "DVD+RW",         Rewritable, Random,     4'700 * kMega},
    {12, "DVD-RAM",        Rewritable, Random,     4'700 * kMega},
    {13, "DVD-RAM WO",     WriteOnce,  Sequential, 4'700 * kMega},
    {16, "DVD-R DL",       WriteOnce,  Sequential, 8'540 * kMega},
    {17, "DVD+R DL",       WriteOnce,  Sequential, 8'540 * kMega},
    {20, "MO Rewritable",  Rewritable, Random,     4'600 * kMega},
    {21, "MO Write Once",  WriteOnce,  Sequential, 4'600 * kMega},
    {22, "PDD Rewritable", Rewritable, Random,     23'300 * kMega},
    {23, "PDD Write Once", WriteOnce,  Sequential, 23'300 * kMega},
    {24, "UDO Rewritable", Rewritable, Random,     30'000 * kMega},
    {25, "UDO Write Once", WriteOnce,  Sequential, 30'000 * kMega},
    {26, "BD-RE",          Rewritable, Random,     25'000 * kMega},
    {27, "BD-R",           WriteOnce,  Sequential, 25'000 * kMega},
};
// clang-format on

}  // namespace

const char* FileSystemName(Access access) {
    return access == Access::Random ? "UDF 2.01" : "UDF 1.50 seq";
}

std::span<const MediaType> AllMediaTypes() {
    return kTypes;
}

const MediaType* FindMediaType(uint32_t code) {
    const auto* found = std::ranges::find(kTypes, code, &MediaType::code);
    return found == std::end(kTypes) ? nullptr : found;
}

const MediaType* FindMediaType(std::string_view name) {
    const auto* found = std::ranges::find(kTypes, name, &MediaType::name);
    return found == std::end(kTypes) ? nullptr : found;
}

std::string_view MediaTypeName(uint32_t code) {
    const MediaType* type = FindMediaType(code);
    return type == nullptr ? "unknown" : type->name;
}

}  // namespace embedded
