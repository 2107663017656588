#include <algorithm>
#include <vector>

#include "krvcmd/service/sdk/call.h"
#include "tests/fuzz/bytes_reader.h"

// Splits a list of directories. The first two bytes are the size that the library claims, the rest is what it
// wrote.
int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using krvcmd::fuzz::Require;
    krvcmd::fuzz::BytesReader reader(data, size);
    const size_t requiredSize = reader.Take<uint16_t>();
    // A copy, so that a sanitizer notices a read past its end.
    const size_t taken = std::min<size_t>(size, sizeof(uint16_t));
    const std::vector<char> buffer(data + taken, data + size);

    std::vector<std::string> aspects;
    krvcmd::SplitAspects(buffer, requiredSize, aspects);
    size_t offset = 0;
    for (const std::string& aspect : aspects) {
        Require(!aspect.empty(), "an empty text ends the list");
        Require(aspect.find('\0') == std::string::npos, "a text ends at its NUL");
        Require(offset <= requiredSize, "no text begins beyond the claimed size");
        Require(offset + aspect.size() <= buffer.size(), "no text goes beyond the buffer");
        Require(std::equal(aspect.begin(), aspect.end(), buffer.begin() + static_cast<ptrdiff_t>(offset)),
                "the texts follow one another");
        offset += aspect.size() + 1;
    }
    const bool isWhole = offset >= buffer.size() || offset > requiredSize || buffer[offset] == '\0';
    Require(isWhole, "no text is left out");
    return 0;
}
