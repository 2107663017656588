#include "krvcmd/frontend/grammar/keyword.h"

#include <algorithm>
#include <cstddef>
#include <string>

namespace krvcmd {
namespace {

// Texts are compared in pieces of this many characters, each ended by its first blank.
constexpr size_t kPieceLength = 31;

// The text without what follows a blank in each piece.
std::string Fold(std::string_view text) {
    std::string folded;
    folded.reserve(text.size());
    for (size_t start = 0; start < text.size(); start += kPieceLength) {
        const std::string_view piece = text.substr(start, kPieceLength);
        folded += piece.substr(0, piece.find(' '));
    }
    return folded;
}

enum class Match { None, LeadingPart, Exact };

Match MatchForm(std::string_view word, std::string_view writtenForm) {
    if (KeywordEquals(word, writtenForm)) return Match::Exact;
    return KeywordStartsWith(word, writtenForm) ? Match::LeadingPart : Match::None;
}

Match MatchNode(std::string_view word, const KeywordNode& node) {
    Match best = MatchForm(word, node.keyword);
    if (!node.dashAllowed) return best;
    for (const std::string_view prefix : {"-", "/"}) {
        best = std::max(best, MatchForm(word, std::string(prefix).append(node.keyword)));
    }
    return best;
}

}  // namespace

bool KeywordEquals(std::string_view word, std::string_view keyword) {
    return Fold(word) == Fold(keyword);
}

bool KeywordStartsWith(std::string_view word, std::string_view keyword) {
    return Fold(keyword).starts_with(Fold(word));
}

const KeywordNode* FindKeyword(KeywordNode::Table candidates, std::string_view word) {
    const KeywordNode* found = nullptr;
    int count = 0;
    for (const KeywordNode* node : candidates) {
        const Match match = MatchNode(word, *node);
        if (match == Match::Exact) return node;
        if (match == Match::None) continue;
        found = node;
        ++count;
    }
    return count == 1 ? found : nullptr;
}

}  // namespace krvcmd
