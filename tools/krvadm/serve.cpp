#include "embedded/remote/serve/serve.h"

#include <string>

#include "tools/common/command_line.h"
#include "tools/krvadm/tool.h"

namespace embedded::tools {
namespace {

struct ServeCommandOptions {
    bool isReadOnly = false;
    std::string only;
};

void Serve(const ServeCommandOptions& options, const Streams& /*streams*/) {
    remote::ServeOptions rights;
    if (options.isReadOnly) rights.rights = remote::ServeOptions::Rights::Looks;
    if (!options.only.empty()) rights.only = options.only;
    remote::Serve(rights);
}

}  // namespace

void AddServe(CommandLine& line) {
    const auto [app, options] = line.Add(
        line.GetTool(), "serve",
        "Answer for the farms of this machine on standard input and output, as ssh starts it.", Serve);
    app.add_flag("--read-only", options.isReadOnly, "refuse every change");
    app.add_option("--only", options.only, "show this server alone, whichever the caller asks for");
}

}  // namespace embedded::tools
