#include "krvcmd/console/query/query_objects.h"

namespace krvcmd {
namespace {

constexpr QueryObjectInfo kObjects[] = {
    {QueryObject::Jukeboxes, "jukeboxes", "JNoDMSFPCR", "oNJ"},
    {QueryObject::Magazines, "magazines", "NmoC", "NJm"},
    {QueryObject::Slots, "slots", "NmsaIotnfzylv", "NJms"},
    {QueryObject::Drives, "drives", "NdoPCR", "NJd"},
    {QueryObject::Volumes, "volumes", "ILotnfzylv", "NJmsalfv"},
};

}  // namespace

std::span<const QueryObjectInfo> QueryObjects() {
    return kObjects;
}

}  // namespace krvcmd
