#include "embedded/attached/discovery/discovery.h"

#include <algorithm>

namespace embedded::attached {
namespace {

// Discs of random-access drives look like disks, but those are no drives of a changer unless it names them.
bool CanBeDrive(const InquiryData& inquiry) {
    switch (inquiry.type) {
        case DeviceType::Optical:
        case DeviceType::OpticalMemory:
            return true;
        default:
            return inquiry.type == DeviceType::Disk && inquiry.isRemovable;
    }
}

bool IsOptical(const InquiryData& inquiry) {
    return inquiry.type == DeviceType::Optical || inquiry.type == DeviceType::OpticalMemory;
}

Result<FoundChanger> LookInside(Device& changer, FoundDevice found) {
    auto geometry = ReadGeometry(changer);
    if (!geometry) return geometry.GetError();
    auto drives = ReadElements(changer, ElementType::Drive, geometry->addresses.drives);
    if (!drives) return drives.GetError();
    FoundChanger result{std::move(found), *geometry, {}};
    for (Element& element : *drives)
        result.drives.push_back({std::move(element), Evidence::None, {}});
    return result;
}

class Search {
  public:
    Search(const Opener& open, Waiting& waiting) : m_open(open), m_waiting(waiting) {}

    void Visit(const Place& place) {
        auto transport = m_open(place.address);
        if (!transport) {
            m_findings.problems.push_back(transport.GetError());
            return;
        }
        Device device(std::move(*transport), place.address, m_waiting);
        auto identity = ReadIdentity(device);
        if (!identity) {
            m_findings.problems.push_back(identity.GetError());
            return;
        }
        if (identity->inquiry.qualifier != 0) return;
        FoundDevice found{place, std::move(*identity)};
        if (CanBeDrive(found.identity.inquiry)) {
            m_drives.push_back(std::move(found));
        } else if (found.identity.inquiry.type == DeviceType::Changer) {
            auto changer = LookInside(device, std::move(found));
            if (!changer) {
                m_findings.problems.push_back(changer.GetError());
                return;
            }
            m_findings.changers.push_back(std::move(*changer));
        }
    }

    Findings Finish() {
        std::vector<bool> isTaken(m_drives.size());
        const auto matches = Match();
        for (size_t i = 0; i < matches.size(); ++i) {
            for (size_t k = 0; k < matches[i].size(); ++k) {
                FoundDriveElement& element = m_findings.changers[i].drives[k];
                element.evidence = matches[i][k].evidence;
                for (const size_t drive : matches[i][k].drives) {
                    element.drives.push_back(m_drives[drive]);
                    isTaken[drive] = true;
                }
            }
        }
        for (size_t i = 0; i < m_drives.size(); ++i) {
            if (!isTaken[i] && IsOptical(m_drives[i].identity.inquiry))
                m_findings.loneDrives.push_back(m_drives[i]);
        }
        return std::move(m_findings);
    }

  private:
    std::vector<std::vector<DriveMatch>> Match() const {
        std::vector<std::vector<Element>> changers;
        for (const FoundChanger& changer : m_findings.changers) {
            std::vector<Element> elements;
            for (const FoundDriveElement& drive : changer.drives)
                elements.push_back(drive.element);
            changers.push_back(std::move(elements));
        }
        std::vector<Identity> candidates;
        for (const FoundDevice& drive : m_drives)
            candidates.push_back(drive.identity);
        return MatchDrives(changers, candidates);
    }

    const Opener& m_open;
    Waiting& m_waiting;
    Findings m_findings;
    std::vector<FoundDevice> m_drives;
};

}  // namespace

Findings Discover(const std::vector<Place>& places, const Opener& open, Waiting& waiting) {
    Search search(open, waiting);
    for (const Place& place : places)
        search.Visit(place);
    return search.Finish();
}

}  // namespace embedded::attached
