#pragma once
// The records of the analysis: one Drill per chosen variable, holding its counts and
// moments in the current subset, how it is cut into categories, and the categories.
//
// Records live in std::set<Drill> ordered by Order, categories in an ordered set of their own
// (CategoryList.h) by Upper under RealLess. Both hand out const elements; the fields that are
// not sort keys are changed through Mutable(), which is sound because such a change never
// moves an element, and renumbering Order always keeps the relative order of the records.

#include <array>
#include <cstdint>
#include <set>
#include <string>

#include "CategoryList.h"

#include "../host/RealNumbers.h"

// Categorisation methods.
enum DrillMethod : int32_t {
    MethodDistinctValues = 0,  // one category per distinct value
    MethodExactIntervals = 1,  // exactly ExactN intervals centred on Min and Max
    MethodNeatIntervals = 2,   // about NeatN intervals with neat limits
    MethodFixedStep = 3,       // intervals of width Step
    MethodIntegerValues = 4,   // one category per distinct whole value
    MethodUserLimits = 5,      // intervals between the user's limits
};

// Value categories hold at most this many entries; one more value turns the record to
// neat intervals.
inline constexpr std::size_t MaxValueCategories = 2048;

// A fixed step that would cut the range into more intervals than this is refused, with a
// message: no one reads such a table, and a step this fine may not even move the limit.
inline constexpr double MaxStepIntervals = 10000;

// The most limits a record can hold for method 5.
inline constexpr int MaxUserLimits = 100;

class Categories {
public:
    Categories(int32_t kind, double count, double upper, std::string name, double lower)
        : Kind(kind), Count(count), Upper(upper), Name(std::move(name)), Lower(lower) {}

    // Ordered by Upper under RealLess.
    bool operator<(const Categories& other) const { return RealLess(Upper, other.Upper); }

    int32_t Kind;      // 1 for an interval; for a distinct value the variable's Type
    double Count;      // weighted number of cases of the current subset in the category
    double Upper;      // the interval's upper limit, or the distinct value: the sort key
    std::string Name;  // the label
    double Lower;      // the interval's lower limit; for a distinct value the value
};

// Categories in ascending order of Upper.
using CategorySet = OrderedCategories<Categories>;

class Drill {
public:
    Drill(int16_t variable, int16_t type, int16_t order, std::string name);

    bool operator<(const Drill& other) const { return Order < other.Order; }
    bool operator>(const Drill& other) const { return Order > other.Order; }
    bool operator==(const Drill& other) const { return Order == other.Order; }

    // -1 without cases, 0 with one, else sqrt(SS / (N - 1)).
    double StdDev() const;
    void SetMethod(int32_t method, int32_t n, int32_t atMinimum, double step, double start);
    // Gives Method; n is ExactN for method 1 and NeatN otherwise.
    int32_t GetMethod(int32_t& type, int32_t& n, int32_t& atMinimum, double& step,
                      double& start) const;
    int GetMinMax(double& min, double& max) const;
    int SetDescriptives(double min, double max, double mean, double ss, int32_t n);
    // Stores the first `count` limits; the caller keeps count within MaxUserLimits.
    int SetUserLimits(const double* limits, int count);

    // Category construction.
    int ClearCategories();
    int Categorise();
    // Counts one case into the value categories: 0 the set overflowed and the record
    // turned to neat intervals, 1 a new category, 2 an existing one.
    int AddValue(double value, int16_t kind, double weight, const std::string& name);
    int AddToInterval(double value, double weight);
    int ResetCounts();

    // The interval builders. Each first empties the set.
    int BuildExactIntervals();  // method 1: 0 when Max < Min, -1 when ExactN < 1
    int BuildNeatIntervals();   // method 2: 0 when Max < Min
    int BuildStepIntervals();   // method 3: 0 when the step cannot cut the range
    int BuildUserIntervals();   // method 5: 0 without limits

    int16_t Variable;
    int16_t Type;
    std::string Name;
    int32_t N = 0;
    double WeightedN = 0;
    int32_t MissingN = 0;
    double MCount = 0;
    double Min = 0;
    double Max = 0;
    double Mean = 0;
    double SS = 0;
    int32_t Method;
    int32_t ExactN = 10;
    int32_t NeatN = 10;
    double Step = 1.0;
    double Start = 0.0;
    int32_t AtMinimum = 1;
    std::array<double, MaxUserLimits> UserInterv{};
    int32_t NU = 0;
    int16_t Isset = 0;
    int16_t Order;
    int32_t DrilledItem = -1;
    CategorySet Categories;

private:
    void InsertInterval(double lower, double upper, double count, std::string name);
    int StartRangeIntervals();
    void InsertUpperClosedIntervals(double lower, double width, double top);
};

// Write access to an element of a set whose sort key is left alone.
template <typename T> T& Mutable(const T& element) { return const_cast<T&>(element); }

using DrillSet = std::set<Drill>;
