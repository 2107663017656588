#pragma once

#include <memory>
#include <string>
#include <vector>

#include "embedded/mechanics/attached_farm.h"
#include "embedded/store/database.h"

namespace embedded::tools {

// A server that is attached to real jukeboxes: its catalogue, and the jukeboxes themselves.
class AttachedServer {
  public:
    // Throws a ToolFailure when the server has a simulated farm.
    explicit AttachedServer(const std::string& server);

    Database& GetDatabase() { return *m_database; }
    AttachedFarm& GetFarm() { return m_farm; }

    // The jukebox that the word names, or all of them when it is empty.
    std::vector<int32_t> FindJukeboxes(const std::string& word);

  private:
    std::unique_ptr<Database> m_database;
    AttachedFarm m_farm;
};

}  // namespace embedded::tools
