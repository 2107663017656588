#pragma once

#include <string>
#include <vector>

namespace krvcmd {

// The binary interface of the client library, as its C header declares and describes it.
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
        std::string section;  // its heading
        std::string name;
        std::string prototype;  // as in C, on one line, with the semicolon
        std::string text;
    };
    std::vector<Record> records;
    std::vector<Function> functions;
};

// Reads the header. Throws std::runtime_error for a record, field or function without a description, and for
// a record or field whose size or offset is not asserted.
ClientInterface ReadClientInterface(const std::string& header);

}  // namespace krvcmd
