#include "trelundo/platform/uikit/layout/internal/Solver.h"

#include <fmt/core.h>

namespace trelundo {

namespace {

/// Points by which a basic value may fall below zero before the row counts as infeasible.
constexpr double infeasibility = 1e-8;

} // namespace

Solver::Variable Solver::addVariable(Domain domain) {
    return makeSymbol(domain == Domain::any ? Kind::free : Kind::nonNegative, none);
}

void Solver::removeVariable(Variable variable) {
    if (state(variable).row != none) dropRow(state(variable).row);
    freeSymbol(variable);
}

Solver::Symbol Solver::makeSymbol(Kind kind, Constraint constraint) {
    Symbol symbol;
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
void Solver::installRow(SolverRow solved, Symbol basic) {
    solved.solveFor(basic);
    substitute(basic, solved);
    auto const row = takeRow();
    for (auto const& entry : solved.entries()) state(entry.symbol).column.push_back(row);
    rows_[index(row)].expression = std::move(solved);
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
                                   [this](auto const& entry) { return mayEnter(entry); });
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
    return edited_ || !queue_.empty() || !infeasible_.empty() || suboptimal_ ||
           (requiredChanged_ && refusedCount_ > 0);
}

std::vector<Solver::Conflict> Solver::solve() {
    std::vector<Conflict> conflicts;
    if (!isDirty()) return conflicts;
    edited_ = false;
    retryRefused();
    insertQueued(true);
    restoreFeasibility(conflicts);
    insertQueued(false);
    optimise();
    return conflicts;
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

} // namespace trelundo
