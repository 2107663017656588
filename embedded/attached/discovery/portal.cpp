#include "embedded/attached/discovery/portal.h"

#include <algorithm>

#include "embedded/attached/device/device.h"
#include "embedded/attached/scsi/report_luns.h"
#include "embedded/attached/transport/iscsi_transport.h"

namespace embedded::attached {
namespace {

constexpr uint32_t kFirstAllocation = 8 + 8 * 256;
constexpr uint32_t kMostUnits = 0x4000;

// The units of a target, asked of its unit 0, which every target answers for (SPC-4, 6.33).
Result<std::vector<uint16_t>> ListUnits(Device& target) {
    uint32_t allocation = kFirstAllocation;
    while (true) {
        const auto answer = target.Ask(ReportLuns(allocation), allocation);
        if (!answer) return answer.GetError();
        const auto list = DecodeReportLuns(*answer);
        if (!list) return target.Named(list.GetError());
        const uint32_t units = list->length / 8;
        if (units > kMostUnits)
            return target.Named(BadAnswer(kReportLuns, "names more units than there can be"));
        if (8 + list->length <= allocation) return list->luns;
        allocation = 8 + list->length;
    }
}

}  // namespace

Result<PortalUnits> ListPortalUnits(const IscsiPortal& portal, const IscsiLogin& login,
                                    const IscsiLimits& limits, Waiting& waiting) {
    const auto targets = ListIscsiTargets(portal, login, limits);
    if (!targets) return targets.GetError();
    PortalUnits found;
    for (const IscsiTarget& target : *targets) {
        const IscsiAddress unit0{portal, target.name, 0};
        auto transport = OpenIscsiTransport(unit0, login, limits);
        if (!transport) {
            found.problems.push_back(transport.GetError());
            continue;
        }
        Device device(std::move(*transport), target.name + " at " + portal.GetText(), waiting);
        const auto units = ListUnits(device);
        if (!units) {
            found.problems.push_back(units.GetError());
            continue;
        }
        for (const uint16_t lun : *units)
            found.units.push_back({portal, target.name, lun});
    }
    std::ranges::sort(found.units, [](const IscsiAddress& one, const IscsiAddress& other) {
        return std::tie(one.target, one.lun) < std::tie(other.target, other.lun);
    });
    return found;
}

}  // namespace embedded::attached
