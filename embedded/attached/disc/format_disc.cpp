#include <algorithm>
#include <array>

#include "embedded/attached/disc/block_writing.h"
#include "embedded/attached/disc/disc_change.h"
#include "embedded/attached/disc/empty_udf.h"
#include "embedded/attached/scsi/sense.h"

namespace embedded::attached {
namespace {

UdfRequest RequestOf(const Medium& medium, const FormatOptions& options) {
    UdfRequest request;
    request.label = options.label;
    request.hasVirtualAllocationTable = options.isSequential || medium.recording == Recording::Sequential;
    request.revision = options.udfRevision;
    if (request.revision.empty()) request.revision = request.hasVirtualAllocationTable ? "1.50" : "2.01";
    return request;
}

Result<Nothing> CheckRevision(const DiscChange& change, const UdfRequest& request) {
    constexpr std::array kRevisions{"1.02", "1.50", "2.00", "2.01"};
    const bool isKnown = std::ranges::find(kRevisions, request.revision) != kRevisions.end();
    if (!isKnown) return change.Refuse("can be given UDF 1.02, 1.50, 2.00 or 2.01 only");
    if (request.hasVirtualAllocationTable && request.revision == "1.02") {
        return change.Refuse("needs UDF 1.50 or later for a sequential file system");
    }
    return Nothing();
}

// The formats that suit each kind of random-access medium, the best one first (MMC-6, table 470).
Result<FormatCapacities::Choice> ChooseFormat(DiscChange& change, const Medium& medium) {
    const auto answer = change.GetDrive().Ask(ReadFormatCapacities(kFormatCapacitiesLength),
                                              kFormatCapacitiesLength, change.GetLimits().look);
    if (!answer) return answer.GetError();
    const auto formats = DecodeFormatCapacities(*answer);
    if (!formats) return change.GetDrive().Named(formats.GetError());
    constexpr uint8_t kFull = 0x00;
    constexpr uint8_t kDvdPlusRw = 0x26;
    constexpr uint8_t kBdReWithSpares = 0x30;
    constexpr uint8_t kBdRe = 0x31;
    for (const uint8_t type : {kDvdPlusRw, kBdReWithSpares, kBdRe, kFull}) {
        const auto choice = std::ranges::find(formats->choices, type, &FormatCapacities::Choice::type);
        if (choice != formats->choices.end()) return *choice;
    }
    return change.Refuse("offers no format for this medium (" + std::string(MediaTypeName(medium.type)) +
                         ")");
}

// FORMAT UNIT for media that were never formatted.
Result<Medium> FormatMedium(DiscChange& change, const Medium& medium) {
    const auto choice = ChooseFormat(change, medium);
    if (!choice) return choice.GetError();
    const auto parameters = FormatParameters(*choice, Answer::AtOnce);
    const auto done =
        change.DoAndWait(FormatUnitAs(), change.GetLimits().format, DiscStep::Preparing, parameters);
    if (!done) return done.GetError();
    return change.ReadWritableMedium();
}

// What an earlier file system is recognised by is overwritten with zeros where the new one has nothing.
std::vector<SparseFile::Extent> WithStartAndEnd(const std::vector<SparseFile::Extent>& written,
                                                const Medium& medium) {
    const uint64_t size = medium.blocks * medium.blockSize;
    const uint64_t signatures = std::min(size, medium.GetSignatureBlocks() * medium.blockSize);
    std::vector<SparseFile::Extent> extents{{0, signatures}};
    extents.insert(extents.end(), written.begin(), written.end());
    extents.push_back({size - signatures, size});
    return extents;
}

Result<Nothing> WriteRandom(DiscChange& change, const Medium& medium, const UdfRequest& request) {
    const auto image = MakeEmptyUdf(medium, request);
    if (!image) return image.GetError();
    const auto written = image->ListWritten();
    if (!written) return written.GetError();
    const auto runs = RunsOf(WithStartAndEnd(*written, medium), medium.blocks, medium.blockSize);
    auto done = WriteRuns(change, *image, runs, medium.blockSize);
    if (!done) return done;
    return CompareRuns(change, *image, runs, medium.blockSize);
}

bool IsNotReadableYet(const Error& error) {
    return error.sense &&
           (error.sense->key == sense_key::kIllegalRequest || error.sense->key == sense_key::kBlankCheck);
}

Result<Nothing> WriteSequential(DiscChange& change, const Medium& medium, const UdfRequest& request) {
    const auto image = MakeEmptyUdf(medium, request);
    if (!image) return image.GetError();
    const auto size = image->GetSize();
    if (!size) return size.GetError();
    auto set = change.SetNextSession(medium, true);
    if (!set) return set;
    const auto runs = RunsOf({{0, *size}}, *size / medium.blockSize, medium.blockSize);
    auto done = WriteRuns(change, *image, runs, medium.blockSize);
    if (!done) return done;
    // CDs are written track by track.
    if (IsCompactDisc(medium)) {
        auto closed = change.CloseOpenTrack();
        if (!closed) return closed;
    }
    done = CompareRuns(change, *image, runs, medium.blockSize);
    const bool needsClosing = !done && medium.profile != nullptr && IsNotReadableYet(done.GetError());
    if (!needsClosing) return done;
    auto closed = change.CloseSession();
    if (!closed) return closed;
    return CompareRuns(change, *image, runs, medium.blockSize);
}

// A medium that is written sequentially and whose first block is the next one to be written.
Result<Medium> EmptySequentialMedium(DiscChange& change, Medium medium, const UdfRequest& request) {
    if (medium.profile == nullptr) {
        const auto disc = ReadDisc(change.GetDrive(), change.GetLimits());
        if (!disc) return disc.GetError();
        if (disc->content == DiscContent::Blank) return medium;
        return change.Refuse("holds a disc that is written already and can be written once only");
    }
    if (medium.status != DiscStatus::Empty) {
        if (!medium.profile->isBlankable) {
            return change.Refuse("holds a disc that is written already and can be written once only");
        }
        // What mkudffs does not accept is found before anything is lost.
        Medium example = medium;
        constexpr uint64_t kExampleBlocks = 8192;
        example.blocks = kExampleBlocks;
        const auto trial = MakeEmptyUdf(example, request);
        if (!trial) return trial.GetError();
        const auto blanked = change.BlankMedium(medium, EraseExtent::Quick);
        if (!blanked) return blanked.GetError();
        auto blank = change.ReadWritableMedium();
        if (!blank) return blank;
        medium = *blank;
    }
    if (medium.status == DiscStatus::Empty && medium.nextWritable == 0 && medium.freeBlocks != 0)
        return medium;
    return change.Refuse("does not begin with the first block of the disc; use another one");
}

Result<Nothing> Format(DiscChange& change, const FormatOptions& options) {
    auto medium = change.ReadWritableMedium();
    if (!medium) return medium.GetError();
    const UdfRequest request = RequestOf(*medium, options);
    auto checked = CheckRevision(change, request);
    if (!checked) return checked;
    if (medium->recording == Recording::Sequential) {
        const auto empty = EmptySequentialMedium(change, *medium, request);
        if (!empty) return empty.GetError();
        return WriteSequential(change, *empty, request);
    }
    if (medium->isUnformatted) {
        medium = FormatMedium(change, *medium);
        if (!medium) return medium.GetError();
    }
    return WriteRandom(change, *medium, request);
}

}  // namespace

ChangeResult FormatDisc(Device& drive, const FormatOptions& options, const DiscLimits& limits,
                        const DiscProgress& progress) {
    DiscChange change(drive, limits, progress);
    return change.Finish(Format(change, options));
}

}  // namespace embedded::attached
