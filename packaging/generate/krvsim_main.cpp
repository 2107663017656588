#include <stdexcept>
#include <string>
#include <string_view>

#include "packaging/generate/fill_file.h"
#include "packaging/generate/krvsim_rows.h"
#include "packaging/generate/shell_tables.h"

namespace {

// The block for the only mark, "krvsim SHELL": the rows of the table as texts of that shell.
std::string BlockOf(const std::string& mark) {
    constexpr std::string_view kStart = "krvsim ";
    if (!mark.starts_with(kStart)) throw std::runtime_error("unknown mark: @" + mark + "@");
    return krvcmd::ShellTexts(mark.substr(kStart.size()), embedded::tools::KrvsimRows());
}

}  // namespace

// Fills a template of a completion script of krvsim.
int main(int argc, char** argv) {
    return krvcmd::FillFile(argc, argv, BlockOf);
}
