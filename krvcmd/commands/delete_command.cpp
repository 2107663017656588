#include "krvcmd/commands/delete_command.h"

namespace krvcmd {

Status CDelete::Run() {
    return {};
}

}  // namespace krvcmd
