#include <string>
#include <vector>

#include "krvcmd/frontend/grammar/command_grammar.h"
#include "krvcmd/frontend/grammar/keyword.h"
#include "tests/fuzz/fuzz_target.h"

namespace krvcmd::fuzz {
namespace {

// Folds pieces of 31 characters: subtracts 0x20 from each character and ends the piece at the first 0.
std::string FoldThroughBuffer(std::string_view text) {
    std::string folded;
    while (!text.empty()) {
        char buffer[32] = {};
        const std::string_view piece = text.substr(0, 31);
        for (size_t i = 0; i < piece.size(); ++i)
            buffer[i] = static_cast<char>(static_cast<unsigned char>(piece[i]) - 0x20);
        folded += buffer;
        text.remove_prefix(piece.size());
    }
    return folded;
}

std::vector<std::string> WrittenForms(const KeywordNode& node) {
    const std::string keyword(node.keyword);
    if (!node.dashAllowed) return {keyword};
    return {"-" + keyword, "/" + keyword, keyword};
}

const KeywordNode* FindAsDescribed(KeywordNode::Table candidates, std::string_view word) {
    const std::string folded = FoldThroughBuffer(word);
    const KeywordNode* found = nullptr;
    int count = 0;
    for (const KeywordNode* node : candidates) {
        bool begins = false;
        for (const std::string& form : WrittenForms(*node)) {
            const std::string foldedForm = FoldThroughBuffer(form);
            if (folded == foldedForm) return node;
            if (foldedForm.compare(0, folded.size(), folded) == 0) begins = true;
        }
        if (!begins) continue;
        found = node;
        ++count;
    }
    return count == 1 ? found : nullptr;
}

}  // namespace

}  // namespace krvcmd::fuzz

// Matches a word with the keywords of one level, and compares the result with a character-by-character
// implementation of the folded comparison.
int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace krvcmd;
    // A word of the command line has no NUL.
    const std::string_view bytes = fuzz::TextOf(data, size);
    const std::string_view word = bytes.substr(0, bytes.find('\0'));
    const KeywordNode::Table topLevel = CommandGrammar::TopLevel();
    fuzz::Require(FindKeyword(topLevel, word) == fuzz::FindAsDescribed(topLevel, word), "the same node");
    for (const KeywordNode* command : topLevel) {
        if (command->children.empty()) continue;
        fuzz::Require(FindKeyword(command->children, word) == fuzz::FindAsDescribed(command->children, word),
                      "the same node");
        fuzz::Require(KeywordEquals(word, command->keyword) ==
                          (fuzz::FoldThroughBuffer(word) == fuzz::FoldThroughBuffer(command->keyword)),
                      "equal as described");
    }
    return 0;
}
