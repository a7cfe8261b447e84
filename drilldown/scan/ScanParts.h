#pragma once
// Putting together what the parts of a scan counted (CaseLoop.h). Each part counts into
// copies of the records; the copies of later parts are then merged into the first part's,
// in file order.

#include <array>
#include <bit>
#include <cstdint>
#include <string>

#include "../core/Drill.h"

// A copy of a record that one part of a scan counts values into.
//
// Counting a value means finding its category among up to 2,048; the values of a
// categorical variable are few and come again and again, so each part remembers, per value,
// where its category stood. Whole codes from 0 to 127, the usual values of a categorical
// variable, each have a place of their own there, so that they never push each other out;
// other values share the places by a hash. The memory holds only while no category came or
// went: every insertion or overflow starts a new generation, and a full set is not
// remembered at all.
class PartRecord {
public:
    explicit PartRecord(Drill copy) : record(std::move(copy)) {}

    // Counts a value exactly as Drill::AddValue does, noting a set that overflowed.
    void AddValue(double value, int16_t kind, double weight) {
        Seen& seen = m_seen[PlaceOf(value)];
        if (seen.value == value && seen.generation == m_generation) {
            Mutable(*(record.Categories.begin() + seen.index)).Count += weight;
            return;
        }
        const int added = record.AddValue(value, kind, weight, NoName());
        if (added == 0)
            overflowed = true;
        if (added != 2)
            ++m_generation;
        // A full set does not survive the next value, so nothing is remembered in it.
        const CategorySet& categories = record.Categories;
        if (added != 0 && categories.size() < MaxValueCategories)
            seen = {value, m_generation,
                    static_cast<std::uint32_t>(categories.lower_bound(value) - categories.begin())};
    }

    Drill record;
    bool overflowed = false;  // a value came while the set was full

private:
    static constexpr std::size_t Places = 128;
    // A generation changes at most once per case counted, so 32 bits never wrap in one scan.
    struct Seen {
        double value;
        std::uint32_t generation = 0;  // 0: nothing remembered
        std::uint32_t index;
    };
    static std::size_t PlaceOf(double value) {
        if (value >= 0 && value < Places) {
            const int code = static_cast<int>(value);
            if (code == value)
                return static_cast<std::size_t>(code);
        }
        return std::bit_cast<std::uint64_t>(value) * 0x9E3779B97F4A7C15ull >> 57;
    }
    static const std::string& NoName() {
        static const std::string none;
        return none;
    }

    std::uint32_t m_generation = 1;
    std::array<Seen, Places> m_seen{};
};

// Adds the value categories of a later part into `into`: counts add up where a value is in
// both, a new value is inserted. A set that overflowed in either part, or holds more values
// than a set may, turns the record to neat intervals with no categories, as one pass would.
// False when only one pass can give the result of the rules: two values close enough for
// the tolerant comparison to have joined them, or a set exactly full, which one more value
// in one pass would have overflowed.
bool MergeValueCategories(PartRecord& into, const PartRecord& later);

// Adds the counts of a later part into the same intervals of `into`.
void MergeIntervalCounts(Drill& into, const Drill& later);
