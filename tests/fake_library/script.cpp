#include "tests/fake_library/script.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string>

#include "tests/fake_library/script_line.h"

namespace krvfake {
namespace {

int32_t Int(int64_t value) {
    return static_cast<int32_t>(value);
}

uint32_t Unsigned(int64_t value) {
    return static_cast<uint32_t>(value);
}

// Reads a script line by line; a jukebox's parts belong to the jukebox line above them.
class ScriptReader {
  public:
    explicit ScriptReader(FakeLibrary& library) : m_library(library) {}

    void Read(const ScriptLine& line);

  private:
    void ReadJukebox(const ScriptLine& line);
    void ReadDrive(const ScriptLine& line);
    void ReadMagazine(const ScriptLine& line);
    void ReadSlot(const ScriptLine& line);
    void ReadSide(const ScriptLine& line);
    void ReadVolume(const ScriptLine& line);
    void ReadEnumerate(const ScriptLine& line);
    void ReadFail(const ScriptLine& line);
    void ReadDelay(const ScriptLine& line);
    void ReadGenerate(const ScriptLine& line);
    void ReadRecord(const ScriptLine& line);

    Jukebox& CurrentJukebox();
    static Device ReadDevice(const ScriptLine& line);
    static Occurrence ReadOccurrence(const ScriptLine& line);

    FakeLibrary& m_library;
    Jukebox* m_jukebox = nullptr;
};

void ScriptReader::Read(const ScriptLine& line) {
    struct Statement {
        std::string_view word;
        void (ScriptReader::*read)(const ScriptLine&);
    };
    static constexpr std::array<Statement, 11> kStatements = {{
        {"jukebox", &ScriptReader::ReadJukebox},
        {"drive", &ScriptReader::ReadDrive},
        {"magazine", &ScriptReader::ReadMagazine},
        {"slot", &ScriptReader::ReadSlot},
        {"side", &ScriptReader::ReadSide},
        {"volume", &ScriptReader::ReadVolume},
        {"enumerate", &ScriptReader::ReadEnumerate},
        {"fail", &ScriptReader::ReadFail},
        {"delay", &ScriptReader::ReadDelay},
        {"generate", &ScriptReader::ReadGenerate},
        {"record", &ScriptReader::ReadRecord},
    }};
    const auto* const found = std::ranges::find_if(
        kStatements, [&](const Statement& statement) { return statement.word == line.Word(0); });
    if (found == kStatements.end()) throw std::runtime_error("unknown statement " + line.Word(0));
    (this->*found->read)(line);
    line.RefuseUnread();
}

void ScriptReader::ReadJukebox(const ScriptLine& line) {
    m_jukebox = &m_library.GetFarm().AddJukebox(Int(line.NumberWord(1)), line.Text("name"));
    m_jukebox->WithChanger(ReadDevice(line));
    m_jukebox->enabled = line.Number("enabled", 1) != 0;
    m_jukebox->doubleSided = line.Number("doublesided", 0) != 0;
}

void ScriptReader::ReadDrive(const ScriptLine& line) {
    CurrentJukebox().WithDrive(ReadDevice(line), line.Number("enabled", 1) != 0);
    if (line.Has("claimed")) CurrentJukebox().claimedDrives = Int(line.Number("claimed", 0));
}

void ScriptReader::ReadMagazine(const ScriptLine& line) {
    Slot others;
    others.state = Unsigned(line.Number("state", others.state));
    others.mediumCode = Unsigned(line.Number("medium", others.mediumCode));
    Jukebox& jukebox = CurrentJukebox();
    jukebox.WithMagazine(Int(line.Number("slots", 0)), others);
    jukebox.magazines.back().present = line.Number("present", 1) != 0;
    if (line.Has("claimed")) jukebox.claimedMagazines = Int(line.Number("claimed", 0));
}

void ScriptReader::ReadSlot(const ScriptLine& line) {
    CurrentJukebox().WithSlot(Int(line.Number("M", 0)), Int(line.Number("S", 0)),
                              Unsigned(line.Number("state", slot_state::kEmpty)),
                              Unsigned(line.Number("medium", kNoMedium)));
}

void ScriptReader::ReadSide(const ScriptLine& line) {
    Side side;
    side.state = Unsigned(line.Number("state", 6));
    side.mediumCode = Unsigned(line.Number("medium", 5));
    side.finalization = Unsigned(line.Number("finalization", 1));
    side.volumeId = Int(line.Number("V", 0));
    CurrentJukebox().WithSide(Int(line.Number("M", 0)), Int(line.Number("S", 0)), Int(line.Number("side", 0)),
                              side);
}

void ScriptReader::ReadVolume(const ScriptLine& line) {
    Volume& volume = m_library.GetFarm().AddVolume(Int(line.NumberWord(1)), line.Text("label"));
    volume.WithType(Unsigned(line.Number("type", 0))).InState(Unsigned(line.Number("state", 0)));
    volume.WithFileSystem(line.Text("fs", "UDF")).WithMedium(Unsigned(line.Number("medium", 5)));
    volume.WithCapacity(static_cast<uint64_t>(line.Number("total", 0)),
                        static_cast<uint64_t>(line.Number("free", 0)));
    for (const std::string& directory : line.Texts("dir"))
        volume.WithDirectory(directory);
    for (const std::string& place : line.Texts("at")) {
        const auto key = ParseNumbers(place, '/');
        volume.At(Int(key.at(0)), Int(key.at(1)), Int(key.at(2)), Int(key.at(3)));
    }
    for (const std::string& place : line.Texts("says")) {
        const auto key = ParseNumbers(place, '/');
        volume.SaysItIsAt(Int(key.at(0)), Int(key.at(1)), Int(key.at(2)), Int(key.at(3)));
    }
    volume.aspectBytes = line.Text("aspect-bytes");
    for (const int64_t size : line.Numbers("aspect-sizes", ',')) {
        volume.aspectSizes.push_back(Unsigned(size));
    }
    for (const int64_t count : line.Numbers("location-counts", ',')) {
        volume.locationCounts.push_back(Unsigned(count));
    }
}

void ScriptReader::ReadEnumerate(const ScriptLine& line) {
    std::vector<int32_t> ids;
    bool endless = false;
    for (size_t i = 2; i < line.Words().size(); ++i) {
        endless = line.Word(i) == "...";
        if (!endless) ids.push_back(Int(line.NumberWord(i)));
    }
    if (line.Word(1) == "jukeboxes") {
        m_library.GetFarm().EnumerateJukeboxes(ids, endless);
    } else if (line.Word(1) == "volumes") {
        m_library.GetFarm().EnumerateVolumes(ids, endless);
    } else {
        throw std::runtime_error("only jukeboxes and volumes are enumerated");
    }
}

void ScriptReader::ReadFail(const ScriptLine& line) {
    const bool filled = line.Words().size() > 2 && line.Word(2) == "filled";
    m_library.FailCall(line.Word(1), ReadOccurrence(line),
                       {Int(line.Number("code", 1)), line.Text("text", "scripted failure")},
                       filled ? Outputs::Filled : Outputs::LeftAlone);
}

void ScriptReader::ReadDelay(const ScriptLine& line) {
    m_library.DelayCall(line.Word(1), ReadOccurrence(line), Unsigned(line.Number("ms", 0)));
}

void ScriptReader::ReadGenerate(const ScriptLine& line) {
    GeneratedSize size;
    size.jukeboxes = Int(line.Number("jukeboxes", size.jukeboxes));
    size.magazinesPerJukebox = Int(line.Number("magazines", size.magazinesPerJukebox));
    size.slotsPerMagazine = Int(line.Number("slots", size.slotsPerMagazine));
    size.volumes = Int(line.Number("volumes", size.volumes));
    size.withLocations = line.Number("locations", 1) != 0;
    size.withDirectories = line.Number("directories", 0) != 0;
    size.isVaried = line.Number("varied", 0) != 0;
    m_library.Generate(size);
}

void ScriptReader::ReadRecord(const ScriptLine& line) {
    if (line.Word(1) != "off") throw std::runtime_error("recording can only be switched off");
    m_library.RecordTo({});
}

Jukebox& ScriptReader::CurrentJukebox() {
    if (m_jukebox == nullptr) throw std::runtime_error("no jukebox stands above this line");
    return *m_jukebox;
}

Device ScriptReader::ReadDevice(const ScriptLine& line) {
    Device device{line.Text("vendor"), line.Text("product"), line.Text("revision"), {}};
    const auto scsi = line.Numbers("scsi", '/');
    if (!scsi.empty()) device.scsi = {Int(scsi.at(0)), Int(scsi.at(1)), Int(scsi.at(2))};
    return device;
}

Occurrence ScriptReader::ReadOccurrence(const ScriptLine& line) {
    if (line.Has("nth")) return Occurrence::Nth(static_cast<int>(line.Number("nth", 1)));
    return Occurrence::From(static_cast<int>(line.Number("from", 1)));
}

}  // namespace

void RunScript(FakeLibrary& library, std::string_view script) {
    ScriptReader reader(library);
    for (int number = 1; !script.empty(); ++number) {
        const size_t end = script.find('\n');
        std::string_view text = script.substr(0, end);
        script = end == std::string_view::npos ? std::string_view() : script.substr(end + 1);
        if (text.ends_with('\r')) text.remove_suffix(1);
        try {
            const ScriptLine line(text);
            if (!line.IsEmpty()) reader.Read(line);
        } catch (const std::exception& error) {
            throw std::runtime_error("script line " + std::to_string(number) + ": " + error.what());
        }
    }
}

}  // namespace krvfake
