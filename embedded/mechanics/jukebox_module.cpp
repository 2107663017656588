#include "embedded/mechanics/jukebox_module.h"

#include <filesystem>
#include <stdexcept>

#include "embedded/model/refusal.h"
#include "embedded/platform/platform.h"

namespace embedded {
namespace {

#ifdef __linux__

constexpr const char* kFileName = "libkrvJukebox64.so";

OpenJukeboxFunction* FindOpenFunction(const std::string& server) {
    const std::filesystem::path file = OwnFile().parent_path() / kFileName;
    std::error_code ignored;
    if (!std::filesystem::exists(file, ignored)) {
        throw Refuse(Code::NoJukeboxModule,
                     {server, PathText(file) + " is missing; install the package krvcmd-jukebox"});
    }
    try {
        // The module is linked so that it is never unloaded: the jukeboxes that it makes need its code.
        const SharedLibrary module(file);
        if (auto* open = module.Find<OpenJukeboxFunction>(kOpenJukeboxFunction)) return open;
    } catch (const std::runtime_error& failure) {
        throw Refuse(Code::NoJukeboxModule,
                     {server, std::string(failure.what()) + "; install the package krvcmd-jukebox again"});
    }
    throw Refuse(Code::NoJukeboxModule, {server, PathText(file) + " does not belong to this version"});
}

#else

OpenJukeboxFunction* FindOpenFunction(const std::string& server) {
    throw Refuse(Code::NoJukeboxModule, {server, "this works on Linux only"});
}

#endif

}  // namespace

JukeboxOpener ModuleOpener(const std::string& server) {
    return [server](const JukeboxAddress& address) {
        return std::unique_ptr<PhysicalJukebox>(FindOpenFunction(server)(address));
    };
}

}  // namespace embedded
