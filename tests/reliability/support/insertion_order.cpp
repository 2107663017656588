#include "tests/reliability/support/insertion_order.h"

#include <cstdlib>
#include <limits>

namespace krvcmd::reliability {
namespace {

int Sign(bool less, bool greater) {
    return less ? -1 : (greater ? 1 : 0);
}

bool IsDigit(char character) {
    return character >= '0' && character <= '9';
}

struct SplitText {
    std::string prefix;
    int64_t number = 0;
};

SplitText Split(std::string_view text) {
    size_t stop = text.empty() ? 0 : text.size() - 1;
    const auto isOfNumber = [&](size_t at) {
        return IsDigit(text[at]) || (text[at] == '%' && at + 1 == text.size());
    };
    while (stop > 0 && isOfNumber(stop))
        --stop;
    constexpr std::string_view kSeparators = "-@,;:. ";
    const bool isAtEnd = stop + 1 >= text.size();
    if (isAtEnd || kSeparators.find(text[stop]) == std::string_view::npos) return {std::string(text), 0};
    const int64_t number = std::strtoll(std::string(text.substr(stop + 1)).c_str(), nullptr, 10);
    // Numbers have 32 bits.
    return {std::string(text.substr(0, stop)),
            number > std::numeric_limits<int32_t>::max() ? std::numeric_limits<int32_t>::max() : number};
}

int CompareNumbers(const std::string& left, const std::string& right) {
    const int64_t first = std::strtoll(left.c_str(), nullptr, 10);
    const int64_t second = std::strtoll(right.c_str(), nullptr, 10);
    return Sign(first<second, first> second);
}

int CompareCells(const std::string& left, const std::string& right, bool areNumbers) {
    if (left.empty() || right.empty()) return Sign(left.empty() && !right.empty(), !left.empty());
    return areNumbers ? CompareNumbers(left, right) : CompareTexts(left, right);
}

bool BelongsBefore(const Cells& row, const Cells& other, const std::vector<OrderKey>& keys) {
    for (const OrderKey& key : keys) {
        const int result = CompareCells(row[key.column], other[key.column], key.isNumber);
        if (result != 0) return result == (key.isDescending ? 1 : -1);
    }
    return false;
}

}  // namespace

int CompareTexts(std::string_view left, std::string_view right) {
    const SplitText first = Split(left);
    const SplitText second = Split(right);
    if (const int result = first.prefix.compare(second.prefix); result != 0) return Sign(result < 0, true);
    return Sign(first.number<second.number, first.number> second.number);
}

std::vector<Cells> InsertedOneByOne(const std::vector<Cells>& arrived, const std::vector<OrderKey>& keys) {
    std::vector<Cells> rows;
    for (const Cells& row : arrived) {
        auto place = rows.begin();
        while (place != rows.end() && !BelongsBefore(row, *place, keys))
            ++place;
        rows.insert(place, row);
    }
    return rows;
}

}  // namespace krvcmd::reliability
