#include "krvcmd/console/program_names.h"

namespace krvcmd {

ProgramNames& GetProgramNames() {
    static ProgramNames names;
    return names;
}

}  // namespace krvcmd
