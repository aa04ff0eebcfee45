#pragma once

#include <algorithm> // IWYU pragma: keep
#include <cmath>
#include <cstdint>
#include <vector>

namespace trelundo {

/// A linear expression over the solver's symbols: constant + sum of coefficient x symbol. Entries are sorted
/// by symbol and never zero.
class SolverRow {
public:
    using Symbol = std::int32_t;
    struct Entry {
        Symbol symbol;
        double coefficient;
    };
    /// Smaller coefficients are what rounding leaves of a cancelled one.
    static constexpr double zeroCoefficient = 1e-9;
    /// So is what stays of a sum below this part of its terms.
    static constexpr double residue = 1e-11;

    /// a + b, and nothing where rounding alone keeps them from cancelling.
    static double sum(double a, double b, double zero) {
        double const sum = a + b;
        return std::abs(sum) < std::max(zero, residue * std::abs(a)) ? 0 : sum;
    }

    double constant = 0;

    std::vector<Entry> const& entries() const { return entries_; }

    double coefficientOf(Symbol symbol) const {
        auto const found = find(symbol);
        return found != entries_.end() && found->symbol == symbol ? found->coefficient : 0;
    }

    /// For building: symbols must come in rising order.
    void append(Symbol symbol, double coefficient) { entries_.push_back({symbol, coefficient}); }

    void addTo(Symbol symbol, double coefficient) {
        auto const found = entries_.begin() + (find(symbol) - entries_.cbegin());
        if (found == entries_.end() || found->symbol != symbol) {
            entries_.insert(found, {symbol, coefficient});
            return;
        }
        found->coefficient = sum(found->coefficient, coefficient, zeroCoefficient);
        if (found->coefficient == 0) entries_.erase(found);
    }

    double largestCoefficient() const {
        double largest = 0;
        for (auto const& entry : entries_) largest = std::max(largest, std::abs(entry.coefficient));
        return largest;
    }

    void erase(Symbol symbol) {
        auto const found = find(symbol);
        if (found != entries_.end() && found->symbol == symbol) entries_.erase(found);
    }

    /// Turns `0 = this` into `symbol = this`.
    void solveFor(Symbol symbol) {
        double const factor = -1 / coefficientOf(symbol);
        erase(symbol);
        constant *= factor;
        for (auto& entry : entries_) entry.coefficient *= factor;
    }

    /// Adds factor x other, leaving out `skipped`; reports which symbols come in or cancel out.
    template <class Inserted, class Removed>
    void add(SolverRow const& other, double factor, Symbol skipped, std::vector<Entry>& scratch,
             Inserted inserted, Removed removed) {
        scratch.clear();
        auto mine = entries_.cbegin();
        auto theirs = other.entries_.cbegin();
        while (mine != entries_.cend() || theirs != other.entries_.cend()) {
            bool const takeMine =
                theirs == other.entries_.cend() || (mine != entries_.cend() && mine->symbol < theirs->symbol);
            if (takeMine) {
                if (mine->symbol != skipped) scratch.push_back(*mine);
                ++mine;
            } else if (mine == entries_.cend() || theirs->symbol < mine->symbol) {
                if (double const product = factor * theirs->coefficient;
                    std::abs(product) >= zeroCoefficient) {
                    scratch.push_back({theirs->symbol, product});
                    inserted(theirs->symbol);
                }
                ++theirs;
            } else {
                double const both = sum(mine->coefficient, factor * theirs->coefficient, zeroCoefficient);
                if (both == 0)
                    removed(mine->symbol);
                else
                    scratch.push_back({mine->symbol, both});
                ++mine;
                ++theirs;
            }
        }
        entries_.swap(scratch);
        addConstant(factor * other.constant);
    }

    void add(SolverRow const& other, double factor, std::vector<Entry>& scratch, Symbol skipped = -1) {
        add(
            other, factor, skipped, scratch, [](Symbol) {}, [](Symbol) {});
    }

    void addConstant(double delta) { constant = sum(constant, delta, 1e-10); }

private:
    std::vector<Entry>::const_iterator find(Symbol symbol) const {
        return std::ranges::lower_bound(entries_, symbol, {}, &Entry::symbol);
    }

    std::vector<Entry> entries_;
};

} // namespace trelundo
