#include "trelundo/platform/uikit/layout/internal/Solver.h"

#include <tuple>
#include <utility>

namespace trelundo {

Solver::Constraint Solver::add(Rule const& rule) {
    Constraint handle{};
    if (freeConstraints_.empty()) {
        handle = static_cast<Constraint>(constraints_.size());
        constraints_.emplace_back();
    } else {
        handle = freeConstraints_.back();
        freeConstraints_.pop_back();
    }
    auto& constraint = constraints_[index(handle)];
    constraint.state = State::queued;
    constraint.takesPrecedence = rule.takesPrecedence;
    constraint.sequence = ++sequence_;
    constraint.constant = rule.constant;
    constraint.above = rule.above;
    constraint.below = rule.below;
    constraint.terms.assign(rule.terms.begin(), rule.terms.end());
    queue_.push_back(handle);
    if (constraint.isRequired()) hasRequiredChanged_ = true;
    return handle;
}

void Solver::remove(Constraint handle) {
    auto& constraint = constraints_[index(handle)];
    if (constraint.state == State::active) {
        takeOut(handle);
        if (constraint.isRequired()) hasRequiredChanged_ = true;
    }
    if (constraint.state == State::queued) std::erase(queue_, handle);
    if (constraint.state == State::refused) --refusedCount_;
    constraint.state = State::unused;
    freeConstraints_.push_back(handle);
}

void Solver::setConstant(Constraint handle, double constant) {
    auto& constraint = constraints_[index(handle)];
    double const delta = constant - constraint.constant;
    if (delta == 0) return;
    constraint.constant = constant;
    edited_ = true;
    if (constraint.isRequired()) hasRequiredChanged_ = true;
    if (constraint.state != State::active) return;
    // The marker stands for the distance of the sum from the constant: where it occurs, it is now measured
    // from elsewhere.
    auto const marker = constraint.marker();
    double const shift = marker == constraint.up ? delta : -delta;
    auto const moveRow = [this](RowIndex row, double amount) {
        expression(row).addConstant(amount);
        listIfInfeasible(row);
    };
    if (state(marker).row != none) return moveRow(state(marker).row, -shift);
    for (auto const row : state(marker).column) moveRow(row, expression(row).coefficientOf(marker) * shift);
}

void Solver::retryRefused() {
    if (!std::exchange(hasRequiredChanged_, false) || refusedCount_ == 0) return;
    for (std::size_t i = 0; i < constraints_.size(); ++i) {
        if (constraints_[i].state != State::refused) continue;
        constraints_[i].state = State::queued;
        queue_.push_back(static_cast<Constraint>(i));
    }
    refusedCount_ = 0;
}

/// Equalities come first, since they only eliminate variables; then higher priorities before lower ones,
/// which leaves the least for the simplex to improve.
void Solver::insertQueued(bool requiredOnes) {
    std::vector<std::pair<std::tuple<int, double, std::uint64_t>, Constraint>> batch;
    for (auto const handle : queue_) {
        auto const& constraint = constraints_[index(handle)];
        if (constraint.isRequired() != requiredOnes) continue;
        bool const isEquality = constraint.above == required && constraint.below == required;
        batch.push_back(
            {{isEquality ? 0 : 1, -std::max(constraint.above, constraint.below), constraint.sequence},
             handle});
    }
    if (batch.empty()) return;
    std::ranges::sort(batch);
    std::erase_if(queue_,
                  [&](auto handle) { return constraints_[index(handle)].isRequired() == requiredOnes; });
    for (auto const& [order, handle] : batch) insert(handle);
}

void Solver::insert(Constraint handle) {
    auto& constraint = constraints_[index(handle)];
    constraint.state = State::active;
    auto row = substituted(constraint);
    bool const isEquality = constraint.above == required && constraint.below == required;
    if (isEquality || constraint.above != required) {
        constraint.up = makeSymbol(isEquality ? Kind::dummy : Kind::slack, handle);
        row.addTo(constraint.up, -1);
    }
    if (constraint.below != required) {
        constraint.down = makeSymbol(Kind::slack, handle);
        row.addTo(constraint.down, 1);
    }
    auto const subject = chooseSubject(row, constraint);
    installRow(std::move(row), subject);
    if (constraint.up != none && !isEquality) addCost(constraint.up, constraint.above, 1);
    if (constraint.down != none) addCost(constraint.down, constraint.below, 1);
}

/// The sum less the constant, in terms of symbols that are not basic.
SolverRow Solver::substituted(ConstraintState const& constraint) {
    SolverRow row;
    row.constant = -constraint.constant;
    auto const add = [this](Symbol symbol, double coefficient) {
        if (dense_[index(symbol)] == 0) touched_.push_back(symbol);
        dense_[index(symbol)] += coefficient;
    };
    for (auto const& [variable, coefficient] : constraint.terms) {
        auto const basicRow = state(variable).row;
        if (basicRow == none) {
            add(variable, coefficient);
            continue;
        }
        row.constant += coefficient * expression(basicRow).constant;
        for (auto const& entry : expression(basicRow).entries())
            add(entry.symbol, coefficient * entry.coefficient);
    }
    row.addConstant(0);
    std::ranges::sort(touched_);
    for (auto const symbol : touched_) {
        // A symbol that cancelled and came back was noted twice; its sum is taken once.
        double const coefficient = std::exchange(dense_[index(symbol)], 0);
        if (std::abs(coefficient) >= SolverRow::zeroCoefficient) row.append(symbol, coefficient);
    }
    touched_.clear();
    return row;
}

Solver::Symbol Solver::chooseSubject(SolverRow const& row, ConstraintState const& constraint) const {
    if (auto const symbol = freeSubject(row); symbol != none) return symbol;
    auto const own = ownSubject(row, constraint);
    bool const isFree = own == constraint.up ? constraint.above == allowed && row.constant >= 0
                                             : constraint.below == allowed && row.constant <= 0;
    if (isFree) return own;
    auto const harmless = harmlessSubject(row);
    return harmless != none ? harmless : own;
}

/// An unrestricted variable in the fewest other rows.
Solver::Symbol Solver::freeSubject(SolverRow const& row) const {
    Symbol best = none;
    for (auto const& entry : row.entries()) {
        if (state(entry.symbol).kind != Kind::free) continue;
        if (best == none || state(entry.symbol).column.size() < state(best).column.size())
            best = entry.symbol;
    }
    return best;
}

/// A variable that can hold the constraint without making another row infeasible or the objective worse.
Solver::Symbol Solver::harmlessSubject(SolverRow const& row) const {
    Symbol best = none;
    for (auto const& entry : row.entries()) {
        auto const& candidate = state(entry.symbol);
        if (candidate.kind != Kind::nonNegative || row.constant / entry.coefficient > 0) continue;
        if (best != none && candidate.column.size() >= state(best).column.size()) continue;
        bool const touchesOnlyFreeRows = std::ranges::all_of(candidate.column, [this](RowIndex other) {
            return state(rows_[index(other)].basic).kind == Kind::free;
        });
        bool const hasCost = std::ranges::any_of(
            levels_, [&](Level const& level) { return level.cost.coefficientOf(entry.symbol) != 0; });
        if (touchesOnlyFreeRows && !hasCost) best = entry.symbol;
    }
    return best;
}

Solver::Symbol Solver::ownSubject(SolverRow const& row, ConstraintState const& constraint) {
    if (constraint.up == none) return constraint.down;
    if (constraint.down == none || row.constant > 0) return constraint.up;
    if (row.constant < 0) return constraint.down;
    return constraint.above == allowed ? constraint.up : constraint.down;
}

Solver::Level& Solver::level(double priority) {
    auto const found = std::ranges::lower_bound(levels_, priority, std::ranges::greater{}, &Level::priority);
    if (found != levels_.end() && found->priority == priority) return *found;
    return *levels_.insert(found, Level{priority, {}, 0});
}

void Solver::addCost(Symbol symbol, double priority, double sign) {
    if (priority == allowed) return;
    auto& target = level(priority);
    target.users += sign > 0 ? 1 : -1;
    if (state(symbol).row == none)
        target.cost.addTo(symbol, sign);
    else
        target.cost.add(expression(state(symbol).row), sign, scratch_);
    isSuboptimal_ = true;
}

void Solver::takeOut(Constraint handle) {
    auto& constraint = constraints_[index(handle)];
    bool const isEquality = constraint.above == required && constraint.below == required;
    if (constraint.up != none && !isEquality) addCost(constraint.up, constraint.above, -1);
    if (constraint.down != none) addCost(constraint.down, constraint.below, -1);
    auto row = state(constraint.marker()).row;
    // Of the two distances at most one is basic, and then no other row contains either.
    if (row == none && constraint.down != none) row = state(constraint.down).row;
    if (row == none) {
        row = rowToLeave(constraint.marker());
        if (row != none) pivot(row, constraint.marker());
    }
    if (row != none) dropRow(row);
    release(constraint);
    isSuboptimal_ = true;
}

/// The row in which a marker may become basic without making others infeasible: the dummies of redundant
/// equalities first, then the tightest restricted row, then any.
Solver::RowIndex Solver::rowToLeave(Symbol entering) const {
    RowIndex best = none;
    std::tuple<int, double, Symbol> bestRank;
    for (auto const row : state(entering).column) {
        auto const& candidate = rows_[index(row)];
        double const coefficient = candidate.expression.coefficientOf(entering);
        double const ratio = candidate.expression.constant / std::abs(coefficient);
        auto const kind = state(candidate.basic).kind;
        int const group = kind == Kind::dummy ? 0 : kind == Kind::free ? 3 : coefficient < 0 ? 1 : 2;
        std::tuple const rank{group, ratio, candidate.basic};
        if (best != none && rank >= bestRank) continue;
        best = row;
        bestRank = rank;
    }
    return best;
}

void Solver::release(ConstraintState& constraint) {
    for (auto* symbol : {&constraint.up, &constraint.down})
        if (*symbol != none) freeSymbol(std::exchange(*symbol, none));
    std::erase_if(levels_, [](Level const& level) { return level.users == 0; });
}

} // namespace trelundo
