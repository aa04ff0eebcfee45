#include "trelundo/platform/uikit/layout/internal/Solver.h"

namespace trelundo {

namespace {

/// Costs and coefficients nearer to zero count as zero in the choice of a pivot.
constexpr double tolerance = 1e-9;
/// Points by which required constraints may miss each other through rounding.
constexpr double agreement = 1e-6;
/// After so many pivots the first candidate is taken instead of the best, which cannot cycle.
constexpr int patience = 200;

} // namespace

Solver::RowIndex Solver::nextInfeasible() {
    std::erase_if(infeasible_, [this](RowIndex row) {
        auto& listed = rows_[index(row)];
        if (isInfeasible(listed)) return false;
        listed.isListed = false;
        return true;
    });
    if (infeasible_.empty()) return none;
    return *std::ranges::min_element(infeasible_, {},
                                     [this](RowIndex row) { return rows_[index(row)].basic; });
}

/// The dual simplex: keeps the costs optimal while it makes every basic value feasible. When the costs are
/// not optimal anyway, it leaves them to optimise().
void Solver::restoreFeasibility(std::vector<Conflict>& conflicts) {
    int steps = 0;
    for (auto row = nextInfeasible(); row != none; row = nextInfeasible()) {
        auto const& violated = rows_[index(row)];
        bool const mindsCosts = !suboptimal_ && ++steps < patience;
        auto const entering = dualEntering(violated, mindsCosts);
        if (!mindsCosts) suboptimal_ = true;
        if (entering != none)
            pivot(row, entering);
        else if (std::abs(violated.expression.constant) < agreement)
            expression(row).constant = 0;
        else
            conflicts.push_back(refuseOneOf(row));
    }
}

Solver::Symbol Solver::dualEntering(Row const& row, bool mindsCosts) const {
    double const value = row.expression.constant;
    bool const isDummy = state(row.basic).kind == Kind::dummy;
    // At zero a dummy may leave either way, but the candidates that are compared must pull in one direction.
    double direction = value < 0 ? 1 : value > 0 ? -1 : 0;
    if (!isDummy) direction = 1;
    SolverRow::Entry const* best = nullptr;
    for (auto const& entry : row.expression.entries()) {
        if (!mayEnter(entry)) continue;
        if (direction == 0) direction = entry.coefficient > 0 ? 1 : -1;
        if (entry.coefficient * direction < 0) continue;
        if (!best || (mindsCosts && costsLess(entry, *best))) best = &entry;
    }
    return best ? best->symbol : none;
}

bool Solver::costsLess(SolverRow::Entry const& a, SolverRow::Entry const& b) const {
    for (auto const& level : levels_) {
        double const costA = level.cost.coefficientOf(a.symbol) / std::abs(a.coefficient);
        double const costB = level.cost.coefficientOf(b.symbol) / std::abs(b.coefficient);
        if (std::abs(costA - costB) > tolerance) return costA < costB;
    }
    return false;
}

/// Every constraint whose marker stands in the row takes part; the one that was added last and takes no
/// precedence is left out.
Solver::Conflict Solver::refuseOneOf(RowIndex row) {
    Conflict conflict{none, {}};
    auto const note = [&](Symbol symbol) {
        if (auto const owner = state(symbol).constraint; owner != none) conflict.involved.push_back(owner);
    };
    note(rows_[index(row)].basic);
    for (auto const& entry : expression(row).entries()) note(entry.symbol);
    std::ranges::sort(conflict.involved);
    auto const rank = [this](Constraint handle) {
        auto const& constraint = constraints_[index(handle)];
        return std::pair{!constraint.takesPrecedence, constraint.sequence};
    };
    conflict.refused = *std::ranges::max_element(conflict.involved, {}, rank);
    auto& refused = constraints_[index(conflict.refused)];
    if (rows_[index(row)].basic != refused.marker()) pivot(row, refused.marker());
    dropRow(row);
    release(refused);
    refused.state = State::refused;
    ++refusedCount_;
    suboptimal_ = true;
    return conflict;
}

/// One priority after the other: what a lower one may still move costs the higher ones nothing.
void Solver::optimise() {
    if (!std::exchange(suboptimal_, false)) return;
    for (std::size_t level = 0; level < levels_.size(); ++level) optimiseLevel(level);
}

void Solver::optimiseLevel(std::size_t level) {
    int steps = 0;
    for (;;) {
        auto const entering = primalEntering(level, ++steps > patience);
        if (entering == none) return;
        auto const row = primalLeaving(entering);
        if (row != none)
            pivot(row, entering);
        else
            levels_[level].cost.erase(entering); // costs cannot fall without end: a trace of rounding
    }
}

Solver::Symbol Solver::primalEntering(std::size_t level, bool first) const {
    SolverRow::Entry const* best = nullptr;
    for (auto const& entry : levels_[level].cost.entries()) {
        if (entry.coefficient > -tolerance || (best && entry.coefficient >= best->coefficient)) continue;
        if (state(entry.symbol).kind == Kind::dummy) continue;
        auto const higher = std::span{levels_}.first(level);
        if (std::ranges::any_of(higher, [&](Level const& other) {
                return other.cost.coefficientOf(entry.symbol) > tolerance;
            }))
            continue;
        best = &entry;
        if (first) break;
    }
    return best ? best->symbol : none;
}

Solver::RowIndex Solver::primalLeaving(Symbol entering) const {
    RowIndex best = none;
    double bestRatio = 0;
    for (auto const row : state(entering).column) {
        auto const& candidate = rows_[index(row)];
        if (state(candidate.basic).kind == Kind::free) continue;
        double const coefficient = candidate.expression.coefficientOf(entering);
        if (coefficient > -tolerance) continue;
        double const ratio = candidate.expression.constant / -coefficient;
        bool const isTie = best != none && std::abs(ratio - bestRatio) < tolerance;
        if (best != none && (isTie ? candidate.basic > rows_[index(best)].basic : ratio > bestRatio))
            continue;
        best = row;
        bestRatio = ratio;
    }
    return best;
}

} // namespace trelundo
