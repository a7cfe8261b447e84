// Access to the records of the analysis. The current record is the record of DrillDowns
// whose variable is CurrentDown.

#include <algorithm>

#include "CDrillDown.h"

DrillSet::iterator CDrillDown::LookFor(short variable, DrillSet* records) const {
    return std::find_if(records->begin(), records->end(),
                        [variable](const Drill& d) { return d.Variable == variable; });
}

const Drill* CDrillDown::FindRecord(const DrillSet& records, int variable) const {
    const auto it = std::find_if(records.begin(), records.end(),
                                 [variable](const Drill& d) { return d.Variable == variable; });
    return it == records.end() ? nullptr : &*it;
}

const Drill* CDrillDown::CurrentRecord() const { return FindRecord(*DrillDowns, CurrentDown); }

CategorySet* CDrillDown::GetCurrentCategories() const {
    return &Mutable(*CurrentRecord()).Categories;
}

CategorySet* CDrillDown::GetDrillCategories(short variable) const {
    return &Mutable(*FindRecord(*DrillDowns, variable)).Categories;
}

short CDrillDown::GetCurrentDrillDown() const {
    const Drill* record = CurrentRecord();
    return record != nullptr ? record->Variable : -1;
}

short CDrillDown::GetCurrentDrillUp() const {
    const Drill* record = FindRecord(*DrillUps, CurrentUp);
    return record != nullptr ? record->Variable : 0;
}

std::string CDrillDown::GetCurrentVariableName() const {
    const Drill* record = CurrentRecord();
    return record != nullptr ? record->Name : std::string();
}

std::string CDrillDown::GetCurrentDrillUpName() const {
    const Drill* record = FindRecord(*DrillUps, CurrentUp);
    return record != nullptr ? record->Name : std::string();
}

int CDrillDown::GetCurrentVariableType() const {
    const Drill* record = CurrentRecord();
    return record != nullptr ? record->Type : 0;
}

int CDrillDown::GetCurrentMethod() const {
    const Drill* record = CurrentRecord();
    return record != nullptr ? record->Method : -1;
}

int CDrillDown::GetCurrentIsset() const {
    const Drill* record = CurrentRecord();
    return record != nullptr ? record->Isset : -1;
}

int CDrillDown::GetCurrentNU() const { return CurrentRecord()->NU; }

double CDrillDown::GetCurrentMCount() const { return CurrentRecord()->MCount; }

double* CDrillDown::GetUserInterv() const { return Mutable(*CurrentRecord()).UserInterv.data(); }

int CDrillDown::SetUserIntervals(const double* values, int count) {
    return Mutable(*CurrentRecord()).SetUserLimits(values, count);
}

int CDrillDown::GetDrillDownsContSize() const {
    return static_cast<int>(std::count_if(DrillDowns->begin(), DrillDowns->end(),
                                          [](const Drill& d) { return d.Type == 1; }));
}

int CDrillDown::NoMissingDrill() const {
    const bool onMissingRow = std::any_of(DrillUps->begin(), DrillUps->end(), [](const Drill& d) {
        return d.DrilledItem == static_cast<int32_t>(d.Categories.size());
    });
    return onMissingRow ? 0 : 1;
}

int CDrillDown::GetDrillMinMax(double& min, double& max) const {
    const Drill* record = CurrentRecord();
    return record != nullptr ? record->GetMinMax(min, max) : -1;
}

int CDrillDown::GetDrillMethod(int& type, int& n, int& atMinimum, double& step,
                               double& start) const {
    const Drill* record = CurrentRecord();
    return record != nullptr ? record->GetMethod(type, n, atMinimum, step, start) : -1;
}

int CDrillDown::AddValueTo(DrillSet& records, short variable, double value, short type,
                           double weight) {
    Mutable(*FindRecord(records, variable)).AddValue(value, type, weight, std::string());
    return 1;
}

int CDrillDown::SetDrillCategories(short variable, double value, short type, double weight) {
    return AddValueTo(*DrillDowns, variable, value, type, weight);
}

int CDrillDown::SetReviewCategories(short variable, double value, short type, double weight) {
    return AddValueTo(*Reviews, variable, value, type, weight);
}

int CDrillDown::SetDrillDescriptives(short variable, double min, double max, double mean,
                                     double ss) {
    return Mutable(*FindRecord(*DrillDowns, variable)).SetDescriptives(min, max, mean, ss, 0);
}

int CDrillDown::SetReviewDescriptives(short variable, double min, double max, double mean,
                                      double ss) {
    return Mutable(*FindRecord(*Reviews, variable)).SetDescriptives(min, max, mean, ss, 0);
}

namespace {
int StoreMissingCount(Drill& record, int missingN, double missingWeight, int n,
                      double weightedN) {
    record.MissingN = missingN;
    record.MCount = missingWeight;
    record.N = n;
    record.WeightedN = weightedN;
    return 1;
}
} // namespace

int CDrillDown::SetMissingCount(short variable, int missingN, double missingWeight, int n,
                                double weightedN) {
    return StoreMissingCount(Mutable(*FindRecord(*DrillDowns, variable)), missingN,
                             missingWeight, n, weightedN);
}

int CDrillDown::SetReviewMissingCount(short variable, int missingN, double missingWeight, int n,
                                      double weightedN) {
    return StoreMissingCount(Mutable(*FindRecord(*Reviews, variable)), missingN, missingWeight,
                             n, weightedN);
}

int CDrillDown::SetIsset(int variable, int value) {
    for (const Drill& record : *DrillDowns)
        if (record.Variable == variable)
            Mutable(record).Isset = static_cast<int16_t>(value);
    return 1;
}

namespace {
// Value categories are complete after a scan; interval categories still have to be counted.
void MarkCategoriesCounted(const Drill* record) {
    if (record != nullptr)
        Mutable(*record).Isset = record->Method == MethodDistinctValues ? 1 : 0;
}
} // namespace

int CDrillDown::SetCategoriesIsset(int variable) {
    MarkCategoriesCounted(FindRecord(*DrillDowns, variable));
    return 1;
}

int CDrillDown::SetReviewCategoriesIsset(int variable) {
    MarkCategoriesCounted(FindRecord(*Reviews, variable));
    return 1;
}

int CDrillDown::SetAllIsset(int value) {
    for (const Drill& record : *DrillDowns)
        Mutable(record).Isset = static_cast<int16_t>(value);
    return 1;
}
