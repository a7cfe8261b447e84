// Speed of the scans against the floor that memory sets: a pass that only reads every value
// of the file once. Run with scripts/bench; the table at the end gives each scan's ratio to
// the floor pass of the same size, measured in the same run.
//
// Data: 12 variables, 4 categorical with 3, 7, 12 and 40 codes and 8 continuous, about 3 %
// missing, and a weight variable.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <memory>
#include <random>
#include <sstream>

#include "drilldown/core/CDrillDown.h"
#include "workbench/data/DataFileLoader.h"
#include "workbench/dialogs/DialogTemplates.h"
#include "workbench/dialogs/HeadlessDialogs.h"
#include "workbench/headless/HeadlessHost.h"
#include "workbench/services/KeywordStore.h"
#include "workbench/session/DrillSession.h"

namespace {

constexpr double Missing = -99;
constexpr int Categorical = 4;
constexpr int Continuous = 8;
constexpr int CategoryCodes[Categorical] = {3, 7, 12, 40};

wb::DataFile generate(int cases) {
    wb::DataFile file;
    for (int v = 1; v <= Categorical + Continuous + 1; ++v) {
        wb::Variable variable;
        variable.name = v <= Categorical ? 'C' : v <= Categorical + Continuous ? 'X' : 'W';
        if (v <= Categorical + Continuous)
            variable.name += std::to_string(v);
        variable.missingCode = Missing;
        file.addVariable(std::move(variable));
    }
    file.reserveCases(cases);
    std::mt19937_64 random(7);
    std::uniform_real_distribution<double> unit(0, 1);
    std::vector<double> row(Categorical + Continuous + 1);
    for (int c = 0; c < cases; ++c) {
        for (int v = 0; v < Categorical; ++v)
            row[v] = 1 + std::floor(unit(random) * CategoryCodes[v]);
        for (int v = Categorical; v < Categorical + Continuous; ++v)
            row[v] = std::round(unit(random) * 1e5) / 100;
        for (int v = 0; v < Categorical + Continuous; ++v)
            if (unit(random) < 0.03)
                row[v] = Missing;
        row.back() = 0.5 + std::round(unit(random) * 20) / 10;
        file.appendCase(row);
    }
    file.setWeightVariable(Categorical + Continuous + 1);
    return file;
}

// One analysis on one generated file, with all 12 variables chosen for drilling.
class Workload {
public:
    explicit Workload(int cases) : m_file(generate(cases)) {
        m_host.messages().setEcho(nullptr);
        m_host.setDataFile(&m_file);
        m_host.setDialogs(&m_dialogs);
        m_dialogs.setDataFile(&m_file);
        activate();
        m_analysis = std::make_unique<CDrillDown>();
        m_analysis->Init();
        m_panel = wb::createDialogFromTemplate(m_dialogs.model(), 4813);
        std::vector<short> categorical, continuous;
        for (short v = 1; v <= Categorical; ++v)
            categorical.push_back(v);
        for (short v = Categorical + 1; v <= Categorical + Continuous; ++v)
            continuous.push_back(v);
        m_dialogs.presetVariableChoice(categorical, continuous);
        const int nv = m_file.variableCount();
        m_analysis->SetDDNVariable(m_panel, 1, 0, nv, 0, nv, nv);
    }
    void drillTwice() {
        wb::DrillSession session(*m_analysis, m_panel);
        session.drillDown(2, 0);
        session.drillDown(Categorical + 1, 0);
    }
    // Points the module at this workload's host; each workload has its own file.
    void activate() {
        ModuleContext()->Host = m_host.services();
        m_host.setDataFile(&m_file);  // the module's blocks describe this file again
    }
    CDrillDown& analysis() { return *m_analysis; }
    const wb::DataFile& file() const { return m_file; }

private:
    wb::DataFile m_file;
    wb::HeadlessHost m_host;
    wb::KeywordStore m_keywords{std::filesystem::path(), nullptr};
    wb::HeadlessDialogs m_dialogs{m_keywords};
    std::unique_ptr<CDrillDown> m_analysis;
    HWND m_panel = nullptr;
};

std::map<int, std::unique_ptr<Workload>>& workloads() {
    static std::map<int, std::unique_ptr<Workload>> loads;
    return loads;
}

Workload& workload(int cases) {
    auto& load = workloads()[cases];
    if (!load)
        load = std::make_unique<Workload>(cases);
    load->activate();
    return *load;
}

void setCounters(benchmark::State& state, int cases) {
    state.SetItemsProcessed(state.iterations() * cases);
}

void FloorPass(benchmark::State& state) {
    const int cases = static_cast<int>(state.range(0));
    const wb::DataFile& file = workload(cases).file();
    // Eight independent sums keep the adds from waiting on each other, so that memory, not
    // the latency of one chain of additions, sets the pace.
    constexpr std::size_t Chains = 8;
    for (auto _ : state) {
        double sums[Chains] = {};
        const double* values = file.row(1);
        const std::size_t count = std::size_t(cases) * file.stride() / Chains * Chains;
        for (std::size_t i = 0; i < count; i += Chains)
            for (std::size_t k = 0; k < Chains; ++k)
                sums[k] += values[i + k];
        benchmark::DoNotOptimize(sums);
    }
    setCounters(state, cases);
}

void ReadDDNV(benchmark::State& state) {
    const int cases = static_cast<int>(state.range(0));
    Workload& load = workload(cases);
    for (auto _ : state)
        benchmark::DoNotOptimize(load.analysis().ReadDDNV(0));
    setCounters(state, cases);
}

void ReadAfterDrill(benchmark::State& state) {
    const int cases = static_cast<int>(state.range(0));
    Workload& load = workload(cases);
    if (load.analysis().GetDrillUpsSize() == 0)
        load.drillTwice();
    for (auto _ : state)
        benchmark::DoNotOptimize(load.analysis().ReadAfterDrill(0));
    setCounters(state, cases);
}

void ReadBeforeDrill(benchmark::State& state) {
    const int cases = static_cast<int>(state.range(0));
    Workload& load = workload(cases);
    if (load.analysis().GetDrillUpsSize() == 0)
        load.drillTwice();
    for (auto _ : state)
        benchmark::DoNotOptimize(load.analysis().ReadBeforeDrill(0));
    setCounters(state, cases);
}

void LoadCsv(benchmark::State& state) {
    const int cases = static_cast<int>(state.range(0));
    std::ostringstream csv;
    const wb::DataFile& file = workload(cases).file();
    for (int v = 1; v <= file.variableCount(); ++v)
        csv << (v > 1 ? "," : "") << file.variable(v).name;
    csv << '\n';
    for (int c = 1; c <= cases; ++c) {
        for (int v = 1; v <= file.variableCount(); ++v)
            csv << (v > 1 ? "," : "") << file.value(c, v);
        csv << '\n';
    }
    const std::string text = csv.str();
    for (auto _ : state)
        benchmark::DoNotOptimize(wb::parseDataFile(text, "bench.csv").caseCount());
    setCounters(state, cases);
}

constexpr int Million = 1'000'000;

BENCHMARK(FloorPass)->Arg(Million)->Arg(5 * Million)->Unit(benchmark::kMillisecond);
BENCHMARK(ReadDDNV)->Arg(Million)->Arg(5 * Million)->Unit(benchmark::kMillisecond);
BENCHMARK(ReadAfterDrill)->Arg(Million)->Arg(5 * Million)->Unit(benchmark::kMillisecond);
BENCHMARK(ReadBeforeDrill)->Arg(Million)->Arg(5 * Million)->Unit(benchmark::kMillisecond);
BENCHMARK(LoadCsv)->Arg(Million)->Unit(benchmark::kMillisecond)->Iterations(2);

// Prints, after the usual table, each scan's time as a multiple of the floor pass.
class RatioReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs)
            m_times[run.benchmark_name()] = run.GetAdjustedRealTime();
    }
    void Finalize() override {
        ConsoleReporter::Finalize();
        std::printf("\n%-28s %10s %8s %8s\n", "scan", "ms", "x floor", "target");
        for (const auto& [name, time] : m_times) {
            const auto slash = name.find('/');
            const std::string scan = name.substr(0, slash);
            const std::string size = name.substr(slash);
            const auto floor = m_times.find("FloorPass" + size);
            if (scan == "FloorPass" || floor == m_times.end())
                continue;
            const double target = scan == "ReadDDNV" ? 3 : 2;
            std::printf("%-28s %10.2f %8.2f %8.0f\n", name.c_str(), time, time / floor->second,
                        target);
        }
    }

private:
    std::map<std::string, double> m_times;
};

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    // The analyses go while the module's context, which outlives main's statics no longer,
    // still stands.
    workloads().clear();
}
