#pragma once

#include <string>
#include <vector>

namespace krvcmd {

// The client library's binary interface, as its C header declares and describes it.
struct ClientInterface {
    struct Field {
        std::string declaration;  // as in C, without the semicolon
        unsigned offset = 0;
        std::string text;
    };
    struct Record {
        std::string name;
        unsigned size = 0;
        std::string text;
        std::vector<Field> fields;
    };
    struct Function {
        std::string section;  // heading under which it stands
        std::string name;
        std::string prototype;  // as in C, in one line, with the semicolon
        std::string text;
    };
    std::vector<Record> records;
    std::vector<Function> functions;
};

// Reads the header. Throws std::runtime_error for a record, a field or a function that is not described,
// and for a record or a field whose size or offset is not asserted.
ClientInterface ReadClientInterface(const std::string& header);

}  // namespace krvcmd
