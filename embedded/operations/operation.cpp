#include "embedded/operations/operation.h"

#include <functional>
#include <utility>
#include <vector>

namespace embedded {
namespace {

class Import : public Operation {
  public:
    explicit Import(const SlotKey& key) : Operation(key.jukeboxId), m_key(key) {}

    void Plan(Database& database) override { m_transfer = PlanImport(database, m_key); }
    void Perform(Mechanics& mechanics) override { m_sides = mechanics.Import(m_transfer); }
    CallOutcome Record(Database& database) override { return RecordImport(database, m_transfer, m_sides); }

  private:
    SlotKey m_key;
    Transfer m_transfer;
    std::vector<ReadSide> m_sides;
};

class Export : public Operation {
  public:
    explicit Export(const SlotKey& key) : Operation(key.jukeboxId), m_key(key) {}

    void Plan(Database& database) override { m_transfer = PlanExport(database, m_key); }
    void Perform(Mechanics& mechanics) override { mechanics.Export(m_transfer); }
    CallOutcome Record(Database& database) override { return RecordExport(database, m_transfer); }

  private:
    SlotKey m_key;
    Transfer m_transfer;
};

class Scan : public Operation {
  public:
    explicit Scan(const SideKey& key) : Operation(key.jukeboxId), m_key(key) {}

    void Plan(Database& database) override { m_slot = FindSlotToScan(database, m_key); }
    void Perform(Mechanics& mechanics) override { m_sides = mechanics.Read(m_slot, m_key.side); }
    CallOutcome Record(Database& database) override {
        return RecordScan(database, m_slot, m_key.side, m_sides);
    }

  private:
    SideKey m_key;
    Slot m_slot;
    std::vector<ReadSide> m_sides;
};

class Write : public Operation {
  public:
    using Planner = std::function<WritePlan(Database&, const SideKey&)>;

    Write(const SideKey& key, Planner planner)
        : Operation(key.jukeboxId), m_key(key), m_planner(std::move(planner)) {}

    const SideKey* GetWrittenSide() const override { return &m_key; }

    void Plan(Database& database) override { m_plan = m_planner(database, m_key); }
    void Perform(Mechanics& mechanics) override {
        if (!m_plan.sides.empty()) m_written = mechanics.Write(m_plan);
    }
    CallOutcome Record(Database& database) override { return RecordWriting(database, m_plan, m_written); }

  private:
    SideKey m_key;
    Planner m_planner;
    WritePlan m_plan;
    WrittenSides m_written;
};

}  // namespace

std::unique_ptr<Operation> ImportOperation(const SlotKey& key) {
    return std::make_unique<Import>(key);
}

std::unique_ptr<Operation> ExportOperation(const SlotKey& key) {
    return std::make_unique<Export>(key);
}

std::unique_ptr<Operation> ScanOperation(const SideKey& key) {
    return std::make_unique<Scan>(key);
}

std::unique_ptr<Operation> FormatOperation(const SideKey& key, const FormatRequest& request) {
    return std::make_unique<Write>(key, [request](Database& database, const SideKey& side) {
        return PlanFormat(database, side, request);
    });
}

std::unique_ptr<Operation> EraseOperation(const SideKey& key) {
    return std::make_unique<Write>(key, PlanErase);
}

std::unique_ptr<Operation> FinalizeOperation(const SideKey& key) {
    return std::make_unique<Write>(key, PlanFinalize);
}

}  // namespace embedded
