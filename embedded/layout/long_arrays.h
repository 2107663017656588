#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace embedded {

// The long arrays of tables in a TOML text, such as the volumes of a large farm: what they are parsed to
// takes many times the memory of their text, so they are parsed piece by piece. The text must outlive this
// object.
class LongArrays {
  public:
    // Some elements of an array, with the commas between them.
    struct Piece {
        int line = 1;  // of its first character, one-based
        std::string_view elements;
    };

    // Invalid TOML does no harm: the rest or a piece is invalid then, too.
    explicit LongArrays(std::string_view text);

    bool IsEmpty() const { return m_arrays.empty(); }

    // The text with these arrays emptied; every line keeps its number.
    std::string GetRest() const;

    // The pieces of the array that begins on this line; none for an array that is not a long one.
    std::vector<Piece> Take(int line);

    // Whether every long array was taken.
    bool AreAllTaken() const;

  private:
    struct Array {
        size_t begin = 0;  // behind the opening bracket
        size_t end = 0;    // of the closing one
        std::vector<Piece> pieces;
        bool isTaken = false;
    };

    std::string_view m_text;
    std::map<int, Array> m_arrays;  // by line
};

}  // namespace embedded
