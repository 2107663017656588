#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <ostream>
#include <string>
#include <vector>

namespace embedded::tools {

// A number and what it counts: "1 jukebox", "2 jukeboxes".
std::string Counted(int64_t number, const char* singular, const char* plural);

// "512 B", "3 KiB", "12 MiB", rounded to the nearest.
std::string SizeText(uintmax_t bytes);

// Universal time, "2026-11-21 01:19:05Z".
std::string TimeText(std::chrono::system_clock::time_point time);
std::string TimeText(std::filesystem::file_time_type time);

// Universal time with microseconds, "2026-11-21T01:19:05.123456Z".
std::string PreciseTimeText(std::chrono::system_clock::time_point time);

// A table for a terminal: columns as wide as their widest cell, in bytes, with two blanks between them.
class TextTable {
  public:
    explicit TextTable(std::vector<std::string> head) : m_rows{std::move(head)} {}

    // A row has as many cells as the head.
    void Add(std::vector<std::string> row) { m_rows.push_back(std::move(row)); }

    bool HasRows() const { return m_rows.size() > 1; }
    void Write(std::ostream& out) const;

  private:
    std::vector<std::vector<std::string>> m_rows;
};

}  // namespace embedded::tools
