// A scan split over threads must leave what one pass leaves: counts and value categories
// exactly, sums and moments within 1e-12 relative. The files are split into three parts of
// 1,000 cases, with values chosen so that merging the parts is not the plain case: sets of
// values that overflow only when the parts come together, a set exactly full, values close
// enough for the tolerant comparison to join them in one pass.

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "drilldown/core/ModuleEntry.h"
#include "support/AnalysisFixture.h"
#include "workbench/services/DataService.h"

namespace {

constexpr double M = -99;
constexpr int Cases = 3000;
constexpr short C = 1, Many = 2, Full = 3, Exact = 4, JoinChain = 5, NearChain = 6, X = 7, W = 8;

// Cases 0 to 999 make the first part, 1,000 to 1,999 the second, the rest the third.
wb::DataFile partedFile() {
    std::mt19937 random(11);
    std::uniform_real_distribution<double> unit(0, 1);
    std::vector<std::vector<double>> rows;
    for (int c = 0; c < Cases; ++c) {
        const int part = c / 1000;
        rows.push_back({
            unit(random) < 0.05 ? M : 1 + std::floor(unit(random) * 6),
            double(c),                 // 3,000 values: only the parts together overflow
            double(std::min(c, 2047)),  // the 2,048th value again: one pass overflows
            std::max(0.0, c - 952.0),  // the 2,048th value comes last: one pass does not
            // One pass joins 1 + 8e-13 to 1 but keeps 1 + 1.6e-12 apart; the second part
            // alone joins the two.
            part == 0 ? 1 : part == 2 ? 2 : c % 2 == 0 ? 1 + 8e-13 : 1 + 1.6e-12,
            // 1 + 1.5e-12 stays apart from 1, but 1 + 6e-13 after it joins 1 in one pass
            // and 1 + 1.5e-12 in the second part alone.
            part == 0 ? 1 : part == 2 ? 2 : c == 1000 ? 1 + 1.5e-12 : 1 + 6e-13,
            unit(random) < 0.03 ? M : 1e9 + unit(random) * 1e6,  // far from zero
            0.5 + std::round(unit(random) * 300) / 100,          // every case counts
        });
    }
    wb::DataFile file = test::makeFile({{"C", M}, {"Many", M}, {"Full", M}, {"Exact", M},
                                        {"JoinChain", M}, {"NearChain", M}, {"X", M}, {"W", M}},
                                       rows);
    file.setWeightVariable(W);
    return file;
}

bool closeRelative(double a, double b) {
    return std::abs(a - b) <= 1e-12 * std::max({std::abs(a), std::abs(b), 1e-300});
}

void expectSameRecords(const DrillSet& parted, const DrillSet& onePass) {
    ASSERT_EQ(parted.size(), onePass.size());
    auto other = onePass.begin();
    for (const Drill& r : parted) {
        const Drill& o = *other++;
        SCOPED_TRACE(r.Name);
        EXPECT_EQ(r.Method, o.Method);
        EXPECT_EQ(r.Isset, o.Isset);
        EXPECT_EQ(r.N, o.N);
        EXPECT_EQ(r.MissingN, o.MissingN);
        EXPECT_EQ(r.Min, o.Min);
        EXPECT_EQ(r.Max, o.Max);
        EXPECT_PRED2(closeRelative, r.WeightedN, o.WeightedN);
        EXPECT_PRED2(closeRelative, r.MCount, o.MCount);
        EXPECT_PRED2(closeRelative, r.Mean, o.Mean);
        EXPECT_PRED2(closeRelative, r.SS, o.SS);
        ASSERT_EQ(r.Categories.size(), o.Categories.size());
        auto category = o.Categories.begin();
        for (const Categories& c : r.Categories) {
            EXPECT_EQ(c.Upper, category->Upper);
            EXPECT_EQ(c.Lower, category->Lower);
            EXPECT_EQ(c.Name, category->Name);
            EXPECT_PRED2(closeRelative, c.Count, category->Count);
            ++category;
        }
    }
}

// A host that holds no rows as the scans read them: every case comes through cstrtw, copied.
class CaseByCaseData : public wb::DataService {
public:
    void ReadCaseRows(CaseRows& rows) override { HostData::ReadCaseRows(rows); }
};

struct Snapshot {
    DrillSet downs, reviews;
    int validVar;
};

// Two runs of the same scans, step by step.
void expectSameSnapshots(const std::vector<Snapshot>& got, const std::vector<Snapshot>& wanted) {
    ASSERT_EQ(got.size(), wanted.size());
    for (std::size_t k = 0; k < got.size(); ++k) {
        SCOPED_TRACE(k);
        EXPECT_EQ(got[k].validVar, wanted[k].validVar);
        expectSameRecords(got[k].downs, wanted[k].downs);
        expectSameRecords(got[k].reviews, wanted[k].reviews);
    }
}

struct Scenario {
    const char* what;
    std::vector<short> categorical;
    short wm, rvmd;
};

class ScanParts : public test::AnalysisFixture {
protected:
    CaseByCaseData caseByCase;
    // The state after each scan of a short session, the cases split into `parts`, read
    // through the session's data service or, when `copying`, through one that copies.
    std::vector<Snapshot> run(const Scenario& scenario, int parts, bool copying = false) {
        open(partedFile());
        HostData*& data = Vmk6AnalysisContext()->Host.Data;
        HostData* const service = data;
        caseByCase.setDataFile(&file);
        if (copying)
            data = &caseByCase;
        analysis->Split = ScanSplit{parts, 1000};
        analysis->SetWM(scenario.wm);
        analysis->SetRVMD(scenario.rvmd);
        std::vector<Snapshot> states;
        auto note = [&] {
            states.push_back({*analysis->GetDrillDowns(), *analysis->GetReviews(),
                              analysis->GetValidVar()});
        };
        EXPECT_EQ(chooseDrillVariables(scenario.categorical, {X}), 1);
        note();
        EXPECT_EQ(chooseReviewVariables({scenario.categorical.back()}, {X}), 1);
        note();
        session.drillDown(C, 1);  // ReadAfterDrill, ReadBeforeDrill
        note();
        EXPECT_EQ(analysis->ReadBeforeDrill(0), 1);
        note();
        data = service;
        return states;
    }
};

TEST_F(ScanParts, LeaveWhatOnePassLeaves) {
    const std::vector<Scenario> scenarios = {
        {"sets that overflow or fill up", {C, Many, Full, Exact}, 0, 0},
        {"the same, weighted moments, reviews casewise", {C, Many, Full, Exact}, 1, 1},
        {"a value joined across parts", {C, JoinChain}, 0, 0},
        {"values close across parts", {C, NearChain}, 0, 0},
    };
    for (const Scenario& scenario : scenarios) {
        SCOPED_TRACE(scenario.what);
        expectSameSnapshots(run(scenario, 3), run(scenario, 1));
    }
}

TEST_F(ScanParts, AHostThatCopiesCaseByCaseGivesTheSameResults) {
    const Scenario scenario{"weighted moments, reviews casewise", {C, Many, Full, Exact}, 1, 1};
    expectSameSnapshots(run(scenario, 3, true), run(scenario, 3));
}

TEST_F(ScanParts, TheFileIsWhatItsCommentsSay) {
    // The first scan, over the whole file.
    const DrillSet first = run({"all", {C, Many, Full, Exact, JoinChain, NearChain}, 0, 0}, 1)[0].downs;
    auto record = [&](short variable) {
        return *std::find_if(first.begin(), first.end(),
                             [&](const Drill& r) { return r.Variable == variable; });
    };
    EXPECT_EQ(record(Many).Method, MethodNeatIntervals);
    EXPECT_EQ(record(Full).Method, MethodNeatIntervals);
    EXPECT_EQ(record(Exact).Method, MethodDistinctValues);
    auto uppers = [&](short variable) {
        std::vector<double> values;
        for (const Categories& c : record(variable).Categories)
            values.push_back(c.Upper);
        return values;
    };
    EXPECT_EQ(uppers(JoinChain), (std::vector<double>{1, 1 + 1.6e-12, 2}));
    EXPECT_EQ(uppers(NearChain), (std::vector<double>{1, 1 + 1.5e-12, 2}));
}
TEST_F(ScanParts, TheUserIsAskedOncePerCaseAsInOnePass) {
    for (const int parts : {1, 3}) {
        SCOPED_TRACE(parts);
        open(partedFile());
        analysis->Split = ScanSplit{parts, 1000};
        const unsigned long before = progress.lookbrCalls();
        ASSERT_EQ(analysis->ReadBeforeDrill(0), 1);
        EXPECT_EQ(progress.lookbrCalls() - before, unsigned(Cases));
    }
}

TEST_F(ScanParts, ABreakEndsTheScanWhereverItComes) {
    // Calls up to the first part's 1,000 cases come while it reads; the others after all
    // parts are read, once for each case they delivered.
    for (const unsigned long call : {500ul, 2500ul, 3000ul}) {
        SCOPED_TRACE(call);
        open(partedFile());
        analysis->Split = ScanSplit{3, 1000};
        progress.breakAtCall(call);
        ASSERT_EQ(chooseDrillVariables({C}, {X}), 1);
        EXPECT_EQ(analysis->GetDrillDownsSize(), 0);  // a cancelled first scan drops them
        EXPECT_FALSE(progress.isOpen());
        progress.breakAtCall(0);
    }
}

} // namespace
