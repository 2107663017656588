#include "embedded/farms/demonstration.h"

#include <algorithm>

#include "embedded/farms/farm_writer.h"
#include "embedded/layout/layout_reader.h"
#include "embedded/model/refusal.h"

namespace embedded {
namespace {

constexpr std::string_view kServers[] = {".", "my_server", "MyServer", "My Server", "sales server"};

}  // namespace

bool IsDemonstrationServer(std::string_view server) {
    return std::ranges::find(kServers, server) != std::end(kServers);
}

void FillDemonstrationFarm(Database& database, std::string_view server) {
    const LayoutResult layout = ReadLayout(DemonstrationLayout());
    if (!layout.problems.empty()) {
        throw Refuse(Code::InternalFailure,
                     {"KrvSessionCreate", ProblemText("demonstration.toml", layout.problems.front())});
    }
    WriteFarm(database, server, layout.farm);
}

}  // namespace embedded
