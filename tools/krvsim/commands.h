// The commands of krvsim: what each is told, and what does it. Each writes its results to `out` and
// what it has to remark to `err`; one that fails throws a ToolFailure, a UsageFailure or a Refusal.
#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "tools/common/command.h"

namespace embedded::tools {

enum class Start { Demonstration, Empty, Layout };

struct InitOptions {
    std::string server = ".";
    Start start = Start::Demonstration;
    std::string layout;  // a file, "-" = standard input
    bool force = false;  // replace a farm that is there
};
void Init(const InitOptions& options, const Streams& streams);

enum class Format { Toml, Json };

struct DumpOptions {
    std::string server = ".";
    std::string library;  // empty: the farm of `server`; else a client library, asked for `from`
    std::string from = ".";
    Format format = Format::Toml;
};
void Dump(const DumpOptions& options, const Streams& streams);

struct GenerateOptions {
    std::string server = ".";
    int32_t jukeboxes = 1;
    int32_t magazines = 1;  // in each jukebox
    int32_t slots = 100;    // in each magazine
    int32_t fill = 80;      // per cent of the slots that hold a medium
    int64_t seed = 1;
    bool force = false;
};
void Generate(const GenerateOptions& options, const Streams& streams);

struct CloneOptions {
    std::string library;
    std::string from = ".";
    std::string to;
    bool force = false;
};
void Clone(const CloneOptions& options, const Streams& streams);

struct LoadOptions {
    std::string server = ".";
    std::string jukebox;  // name, or "@" and ID
    std::string type;     // of new media
    std::string label;    // empty: they are blank
    int32_t count = 1;
    bool doubleSided = false;
    std::string fromExport;         // a jukebox whose exported media come back
    std::optional<int32_t> volume;  // the medium that holds it, from an export station or the shelf
};
void Load(const LoadOptions& options, const Streams& streams);

struct UnloadOptions {
    std::string server = ".";
    std::string jukebox;  // empty: all of them
};
void Unload(const UnloadOptions& options, const Streams& streams);

// Which items a fault is for; everything that is not given is any. Numbers count from 1.
struct FaultItem {
    std::string jukebox;
    std::optional<int32_t> magazine;
    std::optional<int32_t> slot;
    std::string side;  // "A" or "B"
    std::optional<int32_t> drive;
    std::optional<int32_t> volume;
};

struct FaultAddOptions {
    std::string server = ".";
    std::string function;  // "any" = every one
    FaultItem item;
    int64_t nth = 1;               // the first call that it strikes
    std::optional<int64_t> times;  // how many it strikes; nothing: all
    double probability = 1;
    int64_t seed = 1;
    std::optional<int32_t> code;
    std::string text;
    std::string delay;  // a number and ms, s or m
};
void FaultAdd(const FaultAddOptions& options, const Streams& streams);

struct FaultListOptions {
    std::string server = ".";
};
void FaultList(const FaultListOptions& options, const Streams& streams);

struct FaultClearOptions {
    std::string server = ".";
    std::vector<int64_t> faults;  // empty: all
};
void FaultClear(const FaultClearOptions& options, const Streams& streams);

enum class JournalTask { Show, SwitchOn, SwitchOff, Summary };

struct JournalOptions {
    std::string server = ".";
    JournalTask task = JournalTask::Show;
    int64_t limit = 100'000;  // entries that are kept
    bool follow = false;
    bool json = false;
    int64_t since = 0;  // only entries with a higher ID
    // For how long to follow; nothing: until interrupted.
    std::optional<std::chrono::milliseconds> followFor;
};
void Journal(const JournalOptions& options, const Streams& streams);

struct CheckOptions {
    std::string server = ".";
};
void Check(const CheckOptions& options, const Streams& streams);

void Servers(const Streams& streams);

}  // namespace embedded::tools
