#include "tools/krvsim/tool.h"

#include <CLI/CLI.hpp>
#include <new>

#include "embedded/model/refusal.h"
#include "tools/common/command.h"

namespace embedded::tools {
namespace {

constexpr int kDone = 0;
constexpr int kRefused = 1;
constexpr int kUsage = 2;
constexpr int64_t kMost = 2'000'000;

// What the words of one run ask for.
struct Arguments {
    InitOptions init;
    DumpOptions dump;
    GenerateOptions generate;
    CloneOptions clone;
    LoadOptions load;
    UnloadOptions unload;
    FaultAddOptions faultAdd;
    FaultListOptions faultList;
    FaultClearOptions faultClear;
    JournalOptions journal;
    CheckOptions check;
    std::function<void(const Streams&)> work;
};

// Validators whose bounds do not stand in the help of every option.
template <typename Number>
CLI::Validator FromTo(Number lowest, Number highest) {
    return CLI::Range(lowest, highest).description("");
}

class CommandLine {
  public:
    CommandLine() {
        m_app.require_subcommand(1);
        m_app.footer("Each command tells more: krvsim COMMAND --help");
        AddInit();
        AddDump();
        AddGenerate();
        AddClone();
        AddLoad();
        AddUnload();
        AddFault();
        AddJournal();
        AddCheck();
        AddServers();
    }

    void Parse(const std::vector<std::string>& words) {
        // The parser takes the words from the end.
        m_app.parse(std::vector<std::string>(words.rbegin(), words.rend()));
    }

    int Explain(const CLI::Error& error, const Streams& streams) const {
        if (error.get_exit_code() == 0) return m_app.exit(error, streams.out, streams.err);
        streams.err << "krvsim: " << error.what() << "\nRun with --help for more information.\n";
        return kUsage;
    }

    void Run(const Streams& streams) const { m_arguments.work(streams); }

  private:
    template <typename Options>
    CLI::App* Add(CLI::App& parent, const char* name, const char* description, Options& options,
                  void (*work)(const Options&, const Streams&)) {
        CLI::App* command = parent.add_subcommand(name, description);
        command->callback([this, &options, work] {
            m_arguments.work = [&options, work](const Streams& streams) { work(options, streams); };
        });
        return command;
    }

    static void AddServerOption(CLI::App* command, std::string& server) {
        command->add_option("--server", server, "the server, \".\" is the local one")->capture_default_str();
    }

    void AddInit() {
        InitOptions& options = m_arguments.init;
        CLI::App* command = Add(m_app, "init", "Give a server a farm.", options, Init);
        AddServerOption(command, options.server);
        CLI::Option* layout = command->add_option("--layout", options.layout,
                                                  "the farm of this layout file, \"-\" is standard input");
        layout->each([&options](const std::string&) { options.start = Start::Layout; });
        CLI::Option* demo = command->add_flag_callback(
            "--demo", [&options] { options.start = Start::Demonstration; },
            "the demonstration farm (the default)");
        CLI::Option* empty = command->add_flag_callback(
            "--empty", [&options] { options.start = Start::Empty; }, "no jukebox at all");
        layout->excludes(demo, empty);
        demo->excludes(empty);
        command->add_flag("--force", options.force, "replace a farm that the server has");
    }

    void AddDump() {
        DumpOptions& options = m_arguments.dump;
        CLI::App* command = Add(m_app, "dump", "Write a farm as a layout file or as JSON.", options, Dump);
        CLI::Option* server =
            command->add_option("--server", options.server, "the server, \".\" is the local one")
                ->capture_default_str();
        CLI::Option* library =
            command->add_option("--library", options.library, "ask this client library instead, a file");
        CLI::Option* from =
            command->add_option("--from", options.from, "the server that the library is asked for")
                ->capture_default_str();
        server->excludes(library);
        from->needs(library);
        const std::map<std::string, Format> formats = {{"toml", Format::Toml}, {"json", Format::Json}};
        command->add_option("--format", options.format, "toml or json")
            ->transform(CLI::CheckedTransformer(formats).description(""))
            ->type_name("FORMAT")
            ->default_str("toml");
    }

    void AddGenerate() {
        GenerateOptions& options = m_arguments.generate;
        CLI::App* command =
            Add(m_app, "generate", "Make a large farm; the same seed gives the same one.", options, Generate);
        AddServerOption(command, options.server);
        const CLI::Validator counts = FromTo(int64_t{1}, kMost);
        command->add_option("--jukeboxes", options.jukeboxes, "how many")
            ->capture_default_str()
            ->check(counts);
        command->add_option("--magazines", options.magazines, "in each jukebox")
            ->capture_default_str()
            ->check(counts);
        command->add_option("--slots", options.slots, "in each magazine; 2000000 slots in all at most")
            ->capture_default_str()
            ->check(counts);
        command->add_option("--fill", options.fill, "per cent of the slots that hold a medium")
            ->capture_default_str()
            ->check(FromTo(0, 100));
        command->add_option("--seed", options.seed, "any number")->capture_default_str();
        command->add_flag("--force", options.force, "replace a farm that the server has");
    }

    void AddClone() {
        CloneOptions& options = m_arguments.clone;
        CLI::App* command =
            Add(m_app, "clone", "Copy a farm that a client library shows; nothing is changed there.", options,
                Clone);
        command->add_option("--library", options.library, "the client library, a file")->required();
        command->add_option("--from", options.from, "the server that the library is asked for")
            ->capture_default_str();
        command->add_option("--to", options.to, "the server that gets the copy")->required();
        command->add_flag("--force", options.force, "replace a farm that the server has");
    }

    void AddLoad() {
        LoadOptions& options = m_arguments.load;
        CLI::App* command =
            Add(m_app, "load", "Put media into the import station of a jukebox.", options, Load);
        AddServerOption(command, options.server);
        command->add_option("--jukebox,-J", options.jukebox, "name, or @ and ID")->required();
        CLI::Option* type =
            command->add_option("--type", options.type, "new media of this type, such as \"DVD-RAM\"");
        command
            ->add_option("--label", options.label,
                         "the new media hold volumes with this label; without, they are blank")
            ->needs(type);
        command->add_option("--count", options.count, "how many new media")
            ->capture_default_str()
            ->check(FromTo(1, 100'000))
            ->needs(type);
        command->add_flag("--double-sided", options.doubleSided, "the new media have two sides")->needs(type);
        command->add_option("--from-export", options.fromExport,
                            "all media of the export station of this jukebox");
        command
            ->add_option("--volume,-V", options.volume,
                         "the exported medium, or the one on the shelf, that holds it")
            ->check(FromTo(1, 2'147'483'647));
    }

    void AddUnload() {
        UnloadOptions& options = m_arguments.unload;
        CLI::App* command =
            Add(m_app, "unload", "Empty export stations; the media go on the shelf.", options, Unload);
        AddServerOption(command, options.server);
        command->add_option("--jukebox,-J", options.jukebox, "name, or @ and ID; all of them without");
    }

    void AddFault() {
        CLI::App* fault = m_app.add_subcommand("fault", "Make calls fail or take long.");
        fault->require_subcommand(1);
        AddFaultAdd(*fault);
        CLI::App* list =
            Add(*fault, "list", "Show the faults of a server.", m_arguments.faultList, FaultList);
        AddServerOption(list, m_arguments.faultList.server);
        FaultClearOptions& clear = m_arguments.faultClear;
        CLI::App* command =
            Add(*fault, "clear", "Take faults away, all of them without numbers.", clear, FaultClear);
        AddServerOption(command, clear.server);
        command->add_option("FAULT", clear.faults, "the number of a fault");
    }

    void AddFaultAdd(CLI::App& fault) {
        FaultAddOptions& options = m_arguments.faultAdd;
        CLI::App* command = Add(fault, "add", "Make calls fail or take long.", options, FaultAdd);
        AddServerOption(command, options.server);
        command
            ->add_option("--function,-f", options.function, "such as KrvMediaExport or MediaExport, or any")
            ->required();
        const CLI::Validator numbers = FromTo(1, 2'147'483'647);
        command->add_option("--jukebox,-J", options.item.jukebox,
                            "only calls for this one: name, or @ and ID");
        command->add_option("--magazine,-M", options.item.magazine, "only calls for this one")
            ->check(numbers);
        command->add_option("--slot,-S", options.item.slot, "only calls for this one")->check(numbers);
        command->add_option("--side", options.item.side, "only calls for this one, A or B")
            ->check(CLI::IsMember({"A", "B"}).description(""));
        command->add_option("--drive,-D", options.item.drive, "only calls for this one")->check(numbers);
        command->add_option("--volume,-V", options.item.volume, "only calls for this one or for its place")
            ->check(numbers);
        command->add_option("--nth", options.nth, "the first call that is struck")
            ->capture_default_str()
            ->check(numbers);
        command->add_option("--times", options.times, "how many calls are struck; all without")
            ->check(numbers);
        command->add_option("--probability", options.probability, "of each call to be struck")
            ->capture_default_str()
            ->check(FromTo(0.0, 1.0));
        command->add_option("--seed", options.seed, "of that chance")->capture_default_str();
        command->add_option("--code", options.code, "fail with this code");
        command->add_option("--text", options.text, "and with this text")->check(IsShortText());
        command->add_option("--delay", options.delay, "wait before: 250ms, 40s or 5m");
    }

    // What fits the text of a failure.
    static CLI::Validator IsShortText() {
        return {[](const std::string& text) {
                    return text.size() < 1024 ? std::string() : std::string("has more than 1023 bytes");
                },
                ""};
    }

    void AddJournal() {
        JournalOptions& options = m_arguments.journal;
        CLI::App* command = Add(m_app, "journal", "Show the calls that were made.", options, Journal);
        AddServerOption(command, options.server);
        const auto task = [&](const char* name, JournalTask value, const char* description) {
            return command->add_flag_callback(
                name, [&options, value] { options.task = value; }, description);
        };
        CLI::Option* on = task("--on", JournalTask::SwitchOn, "switch the journal on");
        CLI::Option* off = task("--off", JournalTask::SwitchOff, "switch it off; what it holds stays");
        CLI::Option* summary =
            task("--summary", JournalTask::Summary, "what changed since it was switched on");
        on->excludes(off, summary);
        off->excludes(summary);
        command->add_option("--limit", options.limit, "how many calls it keeps")
            ->capture_default_str()
            ->check(FromTo(1, 100'000'000))
            ->needs(on);
        for (CLI::Option* show :
             {command->add_flag("--follow", options.follow, "go on until interrupted"),
              command->add_flag("--json", options.json, "one object a line"),
              command->add_option("--since", options.since, "only calls with a higher number")}) {
            show->excludes(on, off, summary);
        }
    }

    void AddCheck() {
        CLI::App* command = Add(m_app, "check", "Verify that a farm is sound.", m_arguments.check, Check);
        AddServerOption(command, m_arguments.check.server);
    }

    void AddServers() {
        CLI::App* command = m_app.add_subcommand("servers", "Show the servers that there are.");
        command->callback([this] { m_arguments.work = Servers; });
    }

    Arguments m_arguments;
    CLI::App m_app{"Looks after the farms of the simulated service.", "krvsim"};
};

// Every line of a message tells who speaks.
void Say(const Streams& streams, const std::string& message) {
    size_t start = 0;
    while (start <= message.size()) {
        const size_t end = std::min(message.find('\n', start), message.size());
        streams.err << "krvsim: " << message.substr(start, end - start) << '\n';
        start = end + 1;
    }
}

}  // namespace

int RunTool(const std::vector<std::string>& words, const Streams& streams) {
    CommandLine line;
    try {
        line.Parse(words);
        line.Run(streams);
        streams.out.flush();
        if (streams.out.good()) return kDone;
        Say(streams, "the output cannot be written");
    } catch (const CLI::Error& error) {
        return line.Explain(error, streams);
    } catch (const UsageFailure& failure) {
        Say(streams, failure.what());
        return kUsage;
    } catch (const Refusal& refusal) {
        Say(streams, refusal.GetText());
    } catch (const std::bad_alloc&) {
        Say(streams, "there is not enough memory");
    } catch (const std::exception& failure) {
        Say(streams, failure.what());
    }
    return kRefused;
}

}  // namespace embedded::tools
