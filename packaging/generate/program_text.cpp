#include "packaging/generate/program_text.h"

#include "krvcmd/console/writer/output_object.h"

namespace krvcmd {

std::string ProgramText(std::string_view text) {
    std::string replaced(text);
    Ostrel::UI::Console::ReplacePlaceholder(replaced, "[CmdLine]", "krvcmd");
    Ostrel::UI::Console::ReplacePlaceholder(replaced, "[ProductName]", "Carvoline");
    return replaced;
}

}  // namespace krvcmd
