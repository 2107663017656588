#include "embedded/attached/disc/empty_udf.h"

#include <filesystem>
#include <string_view>

#include "embedded/attached/base/device_text.h"
#include "embedded/attached/disc/run_program.h"

namespace embedded::attached {
namespace {

constexpr std::chrono::milliseconds kLimit{120'000};

std::string FindProgram() {
    for (const char* path : {"/usr/sbin/mkudffs", "/usr/bin/mkudffs", "/usr/local/sbin/mkudffs"}) {
        std::error_code failure;
        if (std::filesystem::exists(path, failure)) return path;
    }
    return "";
}

// Descriptor 3 of the program is the file.
constexpr const char* kFile = "/proc/self/fd/3";

// The kinds of media that mkudffs lays out differently: CD with their run-out blocks, rewritable DVD with a
// sparing table.
const char* LayoutOf(const Medium& medium, bool hasVirtualAllocationTable) {
    if (medium.recording == Recording::Sequential) return IsCompactDisc(medium) ? "cdr" : "dvdr";
    if (medium.profile == nullptr || hasVirtualAllocationTable) return "hd";
    switch (medium.profile->number) {
        case profile_number::kDvdRam:
            return "dvdram";
        case profile_number::kDvdRwRestrictedOverwrite:
        case profile_number::kDvdPlusRw:
        case profile_number::kDvdPlusRwDualLayer:
            return "dvdrw";
        default:
            return "hd";
    }
}

// The sentence in which mkudffs says why not.
std::string ReasonIn(const std::string& output) {
    constexpr std::string_view kMark = "Error: ";
    const size_t at = output.find(kMark);
    if (at == std::string::npos) return "it does not say why";
    const size_t start = at + kMark.size();
    return Printable(output.substr(start, output.find('\n', start) - start));
}

}  // namespace

std::vector<std::string> UdfArguments(const Medium& medium, const UdfRequest& request) {
    const std::string blocks = std::to_string(medium.blocks);
    std::vector<std::string> arguments{
        "--utf8", "--label=" + request.label, "--blocksize=" + std::to_string(medium.blockSize),
        std::string("--media-type=") + LayoutOf(medium, request.hasVirtualAllocationTable),
        "--udfrev=" + request.revision};
    if (medium.recording == Recording::Random) {
        arguments.emplace_back("--bootarea=erase");
        // Readers look for the table in the last block of the medium.
        if (request.hasVirtualAllocationTable) {
            arguments.emplace_back("--vat");
            arguments.push_back("--minblocks=" + blocks);
        }
    }
    arguments.emplace_back(kFile);
    arguments.push_back(blocks);
    return arguments;
}

Result<SparseFile> MakeEmptyUdf(const Medium& medium, const UdfRequest& request) {
    const std::string program = FindProgram();
    if (program.empty()) {
        return Error{ErrorKind::NotFound, "mkudffs is missing; install the package udftools", {}};
    }
    const bool isCutToSize = medium.recording == Recording::Sequential;
    auto file = SparseFile::Create(isCutToSize ? 0 : medium.blocks * medium.blockSize);
    if (!file) return file;
    const auto end = RunProgram(program, UdfArguments(medium, request), file->GetDescriptor(), kLimit);
    if (!end) return end.GetError();
    if (end->status != 0) {
        return Error{ErrorKind::Refused, "mkudffs makes no file system: " + ReasonIn(end->output), {}};
    }
    return file;
}

}  // namespace embedded::attached
