#include "tools/krvsim/farm_source.h"

#include <filesystem>

#include "embedded/farms/farm_reader.h"
#include "embedded/farms/servers.h"
#include "embedded/farms/snapshots.h"
#include "embedded/store/farm_file.h"
#include "tools/common/streams.h"

namespace embedded::tools {

FarmSource FarmSourceOf(const std::string& word) {
    const size_t separator = word.rfind('@');
    std::error_code ignored;
    if (separator == std::string::npos || std::filesystem::exists(FarmPath(word), ignored)) return {word, {}};
    return {separator == 0 ? "." : word.substr(0, separator), word.substr(separator + 1)};
}

Farm ReadFarm(const FarmSource& source) {
    if (source.snapshot.empty()) return embedded::ReadFarm(*OpenServer(source.server));
    const std::filesystem::path file = SnapshotPath(source.server, source.snapshot);
    std::error_code ignored;
    if (!std::filesystem::exists(file, ignored)) {
        throw ToolFailure("server \"" + source.server + "\" has no snapshot \"" + source.snapshot + "\"");
    }
    const std::unique_ptr<Database> database = OpenFarmAt(file);
    if (database == nullptr) throw ToolFailure("the snapshot \"" + source.snapshot + "\" is empty");
    return embedded::ReadFarm(*database);
}

}  // namespace embedded::tools
