#include "tools/krvadm/attached_server.h"

#include "embedded/attached/jukebox/scsi_jukebox.h"
#include "embedded/farms/servers.h"
#include "embedded/store/statement.h"
#include "tools/common/streams.h"
#include "tools/journal/call_items.h"

namespace embedded::tools {
namespace {

std::unique_ptr<Database> OpenAttached(const std::string& server) {
    std::unique_ptr<Database> database = OpenServer(server);
    database->StartWaiting();
    if (!FindValue<bool>(*database, "SELECT kind FROM server").value_or(false))
        throw ToolFailure("server \"" + server +
                          "\" is simulated; krvadm attach makes a server of real jukeboxes");
    return database;
}

FarmAccess AccessTo(Database& database) {
    return {.file = database.GetFile(),
            .look =
                [&database](const FarmAccess::Work& work) {
                    database.StartWaiting();
                    work(database);
                },
            .change =
                [&database](const FarmAccess::Work& work) {
                    database.StartWaiting();
                    InTransaction(database, [&] { work(database); });
                }};
}

}  // namespace

AttachedServer::AttachedServer(const std::string& server)
    : m_database(OpenAttached(server)), m_farm(AccessTo(*m_database), attached::OpenScsiJukebox) {}

std::vector<int32_t> AttachedServer::FindJukeboxes(const std::string& word) {
    if (!word.empty()) return {FindJukebox(*m_database, word)};
    return AttachedJukeboxes(*m_database);
}

}  // namespace embedded::tools
