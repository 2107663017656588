#pragma once

#include <cstdint>
#include <string>

namespace krvcmd::reliability {

// How a run of the program is to end.
struct Result {
    enum class Kind { Ok, System, Service };

    Kind kind = Kind::Ok;
    uint32_t code = 0;
    std::string text{};

    static Result System(uint32_t code) { return {Kind::System, code}; }

    bool IsOk() const { return kind == Kind::Ok; }

    // The line on standard error.
    std::string ResultLine(bool quiet) const;

    // Of the process: its low 8 bits, and never 0 for a code that is not 0.
    int ExitStatus() const;
};

}  // namespace krvcmd::reliability
