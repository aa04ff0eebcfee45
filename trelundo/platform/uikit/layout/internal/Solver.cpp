#include "trelundo/platform/uikit/layout/internal/Solver.h"

#include <fmt/core.h>

#include <utility>

namespace trelundo {

namespace {

/// Points by which a basic value may fall below zero before the row counts as infeasible.
constexpr double infeasibility = 1e-8;

/// Costs and coefficients nearer to zero count as zero in the choice of a pivot.
constexpr double tolerance = 1e-9;
/// Points by which required constraints may miss each other through rounding.
constexpr double agreement = 1e-6;
/// Pivots smaller than this part of the largest coefficient in their row may have spoilt the values.
constexpr double doubt = 1e-4;
/// Parts of its terms by which a kept constraint may be missed.
constexpr double accuracy = 1e-7;
/// After so many pivots the first candidate is taken instead of the best, which cannot cycle.
constexpr int patience = 200;

} // namespace

Solver::Variable Solver::addVariable(Domain domain) {
    return makeSymbol(domain == Domain::any ? Kind::free : Kind::nonNegative, none);
}

void Solver::removeVariable(Variable variable) {
    if (state(variable).row != none) dropRow(state(variable).row);
    freeSymbol(variable);
}

Solver::Symbol Solver::makeSymbol(Kind kind, Constraint constraint) {
    Symbol symbol = none;
    if (freeSymbols_.empty()) {
        symbol = static_cast<Symbol>(symbols_.size());
        symbols_.emplace_back();
        dense_.push_back(0);
    } else {
        symbol = freeSymbols_.back();
        freeSymbols_.pop_back();
    }
    state(symbol).kind = kind;
    state(symbol).constraint = constraint;
    return symbol;
}

/// Rounding may have left traces of a symbol that nothing uses any more.
void Solver::freeSymbol(Symbol symbol) {
    for (auto const row : state(symbol).column) expression(row).erase(symbol);
    for (auto& level : levels_) level.cost.erase(symbol);
    state(symbol).column.clear();
    state(symbol).kind = Kind::unused;
    freeSymbols_.push_back(symbol);
}

Solver::RowIndex Solver::takeRow() {
    if (freeRows_.empty()) {
        rows_.emplace_back();
        return static_cast<RowIndex>(rows_.size() - 1);
    }
    auto const row = freeRows_.back();
    freeRows_.pop_back();
    return row;
}

void Solver::dropRow(RowIndex row) {
    auto& dropped = rows_[index(row)];
    for (auto const& entry : dropped.expression.entries()) std::erase(state(entry.symbol).column, row);
    state(dropped.basic).row = none;
    dropped.basic = none;
    dropped.expression = {};
    freeRows_.push_back(row);
}

/// `expression` = 0 is solved for `basic`, which leaves all other rows.
void Solver::installRow(SolverRow expression, Symbol basic) {
    expression.solveFor(basic);
    substitute(basic, expression);
    auto const row = takeRow();
    for (auto const& entry : expression.entries()) state(entry.symbol).column.push_back(row);
    rows_[index(row)].expression = std::move(expression);
    rows_[index(row)].basic = basic;
    state(basic).row = row;
    listIfInfeasible(row);
}

void Solver::substitute(Symbol symbol, SolverRow const& value) {
    auto column = std::move(state(symbol).column);
    state(symbol).column.clear();
    for (auto const row : column) {
        auto& target = expression(row);
        target.add(
            value, target.coefficientOf(symbol), symbol, scratch_,
            [&](Symbol inserted) { state(inserted).column.push_back(row); },
            [&](Symbol removed) { std::erase(state(removed).column, row); });
        listIfInfeasible(row);
    }
    for (auto& level : levels_) {
        double const cost = level.cost.coefficientOf(symbol);
        if (cost != 0) level.cost.add(value, cost, scratch_, symbol);
    }
}

/// `entering` becomes basic in `row`, whose basic symbol becomes zero.
void Solver::pivot(RowIndex row, Symbol entering) {
    auto const leaving = rows_[index(row)].basic;
    auto solved = std::move(expression(row));
    expression(row) = {};
    if (std::abs(solved.coefficientOf(entering)) < doubt * solved.largestCoefficient()) isDoubtful_ = true;
    solved.addTo(leaving, -1);
    solved.solveFor(entering);
    std::erase(state(entering).column, row);
    substitute(entering, solved);
    state(leaving).row = none;
    state(leaving).column.push_back(row);
    state(entering).row = row;
    rows_[index(row)].basic = entering;
    expression(row) = std::move(solved);
    listIfInfeasible(row);
}

/// The dummy of an equality must be zero, and out of the basis unless only other dummies determine it.
bool Solver::isInfeasible(Row const& row) const {
    if (row.basic == none) return false;
    switch (state(row.basic).kind) {
    case Kind::free:
        return false;
    case Kind::dummy:
        return row.expression.constant != 0 ||
               std::ranges::any_of(row.expression.entries(),
                                   [&, largest = row.expression.largestCoefficient()](auto const& entry) {
                                       return mayEnter(entry, largest);
                                   });
    default:
        return row.expression.constant < -infeasibility;
    }
}

void Solver::listIfInfeasible(RowIndex row) {
    auto& candidate = rows_[index(row)];
    if (candidate.isListed || !isInfeasible(candidate)) return;
    candidate.isListed = true;
    infeasible_.push_back(row);
}

bool Solver::isDirty() const {
    return edited_ || !queue_.empty() || !infeasible_.empty() || isSuboptimal_ ||
           (hasRequiredChanged_ && refusedCount_ > 0);
}

std::vector<Solver::Conflict> Solver::solve() {
    std::vector<Conflict> conflicts;
    if (!isDirty()) return conflicts;
    edited_ = false;
    retryRefused();
    settle(conflicts);
    if (std::exchange(isDoubtful_, false) && !isConsistent()) {
        startOver();
        settle(conflicts);
    }
    return conflicts;
}

void Solver::settle(std::vector<Conflict>& conflicts) {
    insertQueued(true);
    restoreFeasibility(conflicts);
    insertQueued(false);
    optimise();
}

std::string Solver::dump() const {
    std::string text;
    auto const append = [&text](SolverRow const& row) {
        text += fmt::format("{:g}", row.constant);
        for (auto const& entry : row.entries())
            text += fmt::format(" {:+g} s{}", entry.coefficient, entry.symbol);
        text += '\n';
    };
    for (auto const& row : rows_) {
        if (row.basic == none) continue;
        text += fmt::format("s{} = ", row.basic);
        append(row.expression);
    }
    for (auto const& level : levels_) {
        text += fmt::format("cost at {:g}: ", level.priority);
        append(level.cost);
    }
    return text;
}

// The simplex method.

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
        bool const mindsCosts = !isSuboptimal_ && ++steps < patience;
        auto const entering = dualEntering(violated, mindsCosts);
        if (!mindsCosts) isSuboptimal_ = true;
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
    double const largest = row.expression.largestCoefficient();
    SolverRow::Entry const* best = nullptr;
    for (auto const& entry : row.expression.entries()) {
        if (!mayEnter(entry, largest)) continue;
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
    isSuboptimal_ = true;
    return conflict;
}

/// One priority after the other: what a lower one may still move costs the higher ones nothing.
void Solver::optimise() {
    if (!std::exchange(isSuboptimal_, false)) return;
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

// What rounding did.

bool Solver::holds(ConstraintState const& constraint) const {
    double excess = -constraint.constant;
    double scale = 1 + std::abs(constraint.constant);
    for (auto const& [variable, coefficient] : constraint.terms) {
        double const part = coefficient * value(variable);
        excess += part;
        scale += std::abs(part);
    }
    return (constraint.above != required || excess <= accuracy * scale) &&
           (constraint.below != required || excess >= -accuracy * scale);
}

bool Solver::isConsistent() const {
    auto const isInRange = [this](Row const& row) {
        return row.basic == none || state(row.basic).kind == Kind::free ||
               row.expression.constant >= -infeasibility;
    };
    return std::ranges::all_of(rows_, isInRange) &&
           std::ranges::all_of(constraints_, [this](ConstraintState const& constraint) {
               return constraint.state != State::active || holds(constraint);
           });
}

/// Forgets the tableau and puts every constraint that is kept into the queue again.
void Solver::startOver() {
    levels_.clear();
    rows_.clear();
    freeRows_.clear();
    infeasible_.clear();
    for (auto& symbol : symbols_) {
        symbol.row = none;
        symbol.column.clear();
    }
    for (std::size_t i = 0; i < constraints_.size(); ++i) {
        auto& constraint = constraints_[i];
        if (constraint.state != State::active) continue;
        release(constraint);
        constraint.state = State::queued;
        queue_.push_back(static_cast<Constraint>(i));
    }
}

} // namespace trelundo
