#pragma once
// Putting together what the parts of a scan counted (CaseLoop.h). Each part counts into
// copies of the records; the copies of later parts are then merged into the first part's,
// in file order.

#include <array>
#include <bit>
#include <cstdint>

#include "../core/Drill.h"

// A copy of a record that one part of a scan counts values into.
//
// Counting a value means finding its category among up to 2,048; the values of a
// categorical variable are few and come again and again, so each part remembers, per value,
// where its category stood. Whole codes from 0 to 127, the usual values of a categorical
// variable, each keep the address of their category's count; other values share 128 places
// by a hash. The memory holds only while no category came or went: every insertion or
// overflow forgets it, and a full set is not remembered at all.
class PartRecord {
public:
    explicit PartRecord(Drill copy) : record(std::move(copy)) {}
    // What it remembers points into its own categories.
    PartRecord(const PartRecord&) = delete;
    PartRecord(PartRecord&&) noexcept = default;

    // Counts a value exactly as Drill::AddValue does, noting a set that overflowed.
    void AddValue(double value, int16_t kind, double weight) {
        const int code = WholeCode(value);
        if (code >= 0 && m_countOfCode[code] != nullptr) {
            *m_countOfCode[code] += weight;
            return;
        }
        if (code < 0) {
            const Seen& seen = m_seen[HashPlace(value)];
            if (seen.value == value && seen.generation == m_generation) {
                Mutable(*(record.Categories.begin() + seen.index)).Count += weight;
                return;
            }
        }
        AddUnseenValue(value, kind, weight, code);
    }

    // Values are counted through AddValue only: once the record is changed in any other way,
    // what was remembered no longer holds, and no more values may be counted.
    Drill record;
    bool overflowed = false;  // a value came while the set was full

private:
    static constexpr int Codes = 128;
    static constexpr std::size_t Places = 128;
    // A generation changes at most once per case counted, so 32 bits never wrap in one scan.
    struct Seen {
        double value;
        std::uint32_t generation = 0;  // 0: nothing remembered
        std::uint32_t index;
    };
    // The value as a whole code from 0 to 127, or -1 for any other value.
    static int WholeCode(double value) {
        if (value >= 0 && value < Codes) {
            const int code = static_cast<int>(value);
            if (code == value)
                return code;
        }
        return -1;
    }
    static std::size_t HashPlace(double value) {
        return std::bit_cast<std::uint64_t>(value) * 0x9E3779B97F4A7C15ull >> 57;
    }
    // Counts a value that nothing remembered, through the record, and remembers it.
    void AddUnseenValue(double value, int16_t kind, double weight, int code);

    std::uint32_t m_generation = 1;
    std::array<double*, Codes> m_countOfCode{};
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
