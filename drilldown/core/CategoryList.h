#pragma once
// The categories of a record: an ordered set by Upper under RealLess, kept in one contiguous
// array with the Upper values beside it in an array of their own.
//
// A scan looks up a value in the categories of every categorical variable of every case.
// The lookup counts the categories whose Upper is RealLess than the value: that is the
// position of the first category not below it, the one a walk from the start would reach
// first, and counting over an array of doubles needs no branch per category, so it runs
// at the speed of the processor's vector units instead of the speed of its mispredictions.

#include <vector>

#include "../host/RealNumbers.h"

// How many of the n values are RealLess than `value`.
std::size_t CountRealLess(const double* values, std::size_t n, double value);
// How many of the n values are plainly less than `value`.
std::size_t CountLess(const double* values, std::size_t n, double value);

template <typename Category> class OrderedCategories {
public:
    using const_iterator = typename std::vector<Category>::const_iterator;
    using const_reverse_iterator = typename std::vector<Category>::const_reverse_iterator;

    const_iterator begin() const { return m_items.begin(); }
    const_iterator end() const { return m_items.end(); }
    const_reverse_iterator rbegin() const { return m_items.rbegin(); }
    const_reverse_iterator rend() const { return m_items.rend(); }
    std::size_t size() const { return m_items.size(); }
    bool empty() const { return m_items.empty(); }
    void clear() {
        m_items.clear();
        m_uppers.clear();
    }

    // The first category whose Upper is not RealLess than the value. A value that equals
    // an Upper exactly, as the codes of a categorical variable do, is that category: no two
    // Uppers are equal under the tolerance, so every Upper before it is RealLess than it.
    const_iterator lower_bound(double value) const {
        const std::size_t first = CountLess(m_uppers.data(), m_uppers.size(), value);
        if (first < m_uppers.size() && m_uppers[first] == value)
            return m_items.begin() + static_cast<std::ptrdiff_t>(first);
        return m_items.begin() + static_cast<std::ptrdiff_t>(CountBelow(value));
    }

    // Inserts a category unless one with an equal Upper stands already; like std::set, the
    // first one inserted stays.
    template <typename... Args> std::pair<const_iterator, bool> emplace(Args&&... args) {
        Category category(std::forward<Args>(args)...);
        const std::size_t at = CountBelow(category.Upper);
        if (at < m_items.size() && !RealLess(category.Upper, m_items[at].Upper))
            return {m_items.begin() + static_cast<std::ptrdiff_t>(at), false};
        m_uppers.insert(m_uppers.begin() + static_cast<std::ptrdiff_t>(at), category.Upper);
        const auto inserted = m_items.insert(m_items.begin() + static_cast<std::ptrdiff_t>(at),
                                             std::move(category));
        return {inserted, true};
    }

private:
    std::size_t CountBelow(double value) const {
        return CountRealLess(m_uppers.data(), m_uppers.size(), value);
    }

    std::vector<Category> m_items;
    std::vector<double> m_uppers;  // Upper of each category, in the same order
};
