#pragma once

#include "trelundo/platform/uikit/layout/internal/SolverRow.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace trelundo {

/// Finds values for variables under linear constraints with priorities: the incremental simplex method of
/// Badros, Borning and Stuckey (2001), with one objective per priority so that a higher one is never traded
/// for lower ones. Adding, removing and editing only note what is to be done in the tableau; solve() brings
/// the values up to date. Equal sequences of calls give equal values.
class Solver {
public:
    using Variable = std::int32_t;
    using Constraint = std::int32_t;
    enum class Domain { any, nonNegative };
    struct Term {
        Variable variable;
        double coefficient;
    };
    static constexpr double required = 1000;
    static constexpr double allowed = 0;

    /// The sum of `terms` should be `constant`. Lying above or below it is forbidden (`required`), free
    /// (`allowed`) or costs its distance at a priority between the two.
    struct Rule {
        std::span<Term const> terms;
        double constant = 0;
        double above = required;
        double below = required;
        /// Others are refused rather than this one.
        bool takesPrecedence = false;
    };
    static Rule equal(std::span<Term const> terms, double constant, double priority = required) {
        return {terms, constant, priority, priority};
    }
    static Rule atLeast(std::span<Term const> terms, double constant, double priority = required) {
        return {terms, constant, allowed, priority};
    }
    static Rule atMost(std::span<Term const> terms, double constant, double priority = required) {
        return {terms, constant, priority, allowed};
    }

    /// Required constraints that cannot hold together. `refused` is left out until another required
    /// constraint changes, and then tried again.
    struct Conflict {
        Constraint refused;
        std::vector<Constraint> involved; // includes the refused one; ascending
        bool operator==(Conflict const&) const = default;
    };

    Variable addVariable(Domain domain);
    /// All constraints that mention it must have been removed.
    void removeVariable(Variable variable);
    Constraint add(Rule const& rule);
    void remove(Constraint handle);
    void setConstant(Constraint handle, double constant);

    /// Conflicts found by this call, in the order found.
    std::vector<Conflict> solve();
    /// Whether solve() has anything to do.
    bool isDirty() const;
    /// As of the last solve(). A variable that nothing determines is 0.
    double value(Variable variable) const {
        auto const row = symbols_[index(variable)].row;
        return row < 0 ? 0 : rows_[index(row)].expression.constant;
    }
    bool isRefused(Constraint constraint) const {
        return constraints_[index(constraint)].state == State::refused;
    }
    /// One line per row, for debugging.
    std::string dump() const;

private:
    using Symbol = SolverRow::Symbol;
    using RowIndex = std::int32_t;
    static constexpr Symbol none = -1;
    /// Coefficients smaller than this part of the largest in their row are what rounding leaves.
    static constexpr double residue = 1e-7;

    enum class Kind : std::uint8_t { unused, free, nonNegative, slack, dummy };
    struct SymbolState {
        Kind kind = Kind::unused;
        RowIndex row = none;          // where it is basic
        Constraint constraint = none; // whose slack or dummy it is
        std::vector<RowIndex> column; // the rows that contain it
    };
    struct Row {
        SolverRow expression;
        Symbol basic = none;
        bool isListed = false; // among the infeasible ones
    };
    struct Level {
        double priority;
        SolverRow cost;
        int users = 0;
    };
    enum class State : std::uint8_t { unused, queued, active, refused };
    struct ConstraintState {
        State state = State::unused;
        bool takesPrecedence = false;
        std::uint64_t sequence = 0;
        double constant = 0;
        double above = 0;
        double below = 0;
        Symbol up = none;   // how far the sum lies above; the dummy of an equality that must hold
        Symbol down = none; // how far below
        std::vector<Term> terms;
        Symbol marker() const { return up != none ? up : down; }
        bool isRequired() const { return above == required || below == required; }
    };

    template <class I> static std::size_t index(I i) { return static_cast<std::size_t>(i); }
    SymbolState& state(Symbol symbol) { return symbols_[index(symbol)]; }
    SymbolState const& state(Symbol symbol) const { return symbols_[index(symbol)]; }
    SolverRow& expression(RowIndex row) { return rows_[index(row)].expression; }

    // The tableau.
    Symbol makeSymbol(Kind kind, Constraint constraint);
    void freeSymbol(Symbol symbol);
    RowIndex takeRow();
    void dropRow(RowIndex row);
    void installRow(SolverRow expression, Symbol basic);
    void substitute(Symbol symbol, SolverRow const& value);
    void pivot(RowIndex row, Symbol entering);
    void listIfInfeasible(RowIndex row);
    bool isInfeasible(Row const& row) const;
    /// Whether the symbol of `entry` may become basic in a row whose largest coefficient is `largest`. To
    /// divide by what is small beside it would make rounding count.
    bool mayEnter(SolverRow::Entry const& entry, double largest) const {
        return state(entry.symbol).kind != Kind::dummy && std::abs(entry.coefficient) >= residue * largest;
    }

    // Constraints into and out of the tableau (SolverConstraints.cpp).
    void insertQueued(bool requiredOnes);
    void insert(Constraint handle);
    SolverRow substituted(ConstraintState const& constraint);
    Symbol chooseSubject(SolverRow const& row, ConstraintState const& constraint) const;
    Symbol freeSubject(SolverRow const& row) const;
    Symbol harmlessSubject(SolverRow const& row) const;
    static Symbol ownSubject(SolverRow const& row, ConstraintState const& constraint);
    void addCost(Symbol symbol, double priority, double sign);
    void takeOut(Constraint handle);
    RowIndex rowToLeave(Symbol entering) const;
    void release(ConstraintState& constraint);
    Level& level(double priority);
    void retryRefused();

    // Optimisation.
    void settle(std::vector<Conflict>& conflicts);
    void restoreFeasibility(std::vector<Conflict>& conflicts);
    RowIndex nextInfeasible();
    Symbol dualEntering(Row const& row, bool mindsCosts) const;
    bool costsLess(SolverRow::Entry const& a, SolverRow::Entry const& b) const;
    Conflict refuseOneOf(RowIndex row);
    void optimise();
    void optimiseLevel(std::size_t level);
    Symbol primalEntering(std::size_t level, bool first) const;
    RowIndex primalLeaving(Symbol entering) const;

    // What rounding did.
    bool holds(ConstraintState const& constraint) const;
    bool isConsistent() const;
    void startOver();

    std::vector<SymbolState> symbols_;
    std::vector<Row> rows_;
    std::vector<Level> levels_; // highest priority first
    std::vector<ConstraintState> constraints_;
    std::vector<Symbol> freeSymbols_;
    std::vector<RowIndex> freeRows_;
    std::vector<Constraint> freeConstraints_;
    std::vector<Constraint> queue_;
    std::vector<RowIndex> infeasible_;
    std::uint64_t sequence_ = 0;
    int refusedCount_ = 0;
    bool hasRequiredChanged_ = false; // since refused constraints were last tried
    bool isSuboptimal_ = false;
    bool edited_ = false;     // values may differ from those of the last solve()
    bool isDoubtful_ = false; // a pivot was so small that the values have to be checked
    std::vector<SolverRow::Entry> scratch_;
    std::vector<double> dense_;
    std::vector<Symbol> touched_;
};

} // namespace trelundo
