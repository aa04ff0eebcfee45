#include "trelundo/platform/uikit/layout/internal/Solver.h"

#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <random>

namespace trelundo {
namespace {

using Term = Solver::Term;

/// A few variables with constraints in words, so that the tests read as formulas.
class Problem {
public:
    explicit Problem(int count, Solver::Domain domain = Solver::Domain::any) {
        for (int i = 0; i < count; ++i) solver.addVariable(domain);
    }
    Solver::Constraint equal(std::vector<Term> terms, double constant, double priority = 1000) {
        return solver.add(Solver::equal(terms, constant, priority));
    }
    Solver::Constraint atLeast(std::vector<Term> terms, double constant, double priority = 1000) {
        return solver.add(Solver::atLeast(terms, constant, priority));
    }
    Solver::Constraint atMost(std::vector<Term> terms, double constant, double priority = 1000) {
        return solver.add(Solver::atMost(terms, constant, priority));
    }
    double operator[](int i) const { return solver.value(i); }

    Solver solver;
};

TEST(SolverTest, FreeVariablesMayBeNegativeAndLengthsMayNot) {
    Problem p(1);
    auto const length = p.solver.addVariable(Solver::Domain::nonNegative);
    p.equal({{0, 1}}, -20);
    p.equal({{length, 1}, {0, -1}}, 0, 500);
    EXPECT_TRUE(p.solver.solve().empty());
    EXPECT_DOUBLE_EQ(p[0], -20);
    EXPECT_DOUBLE_EQ(p.solver.value(length), 0);
}

TEST(SolverTest, HigherPriorityIsNeverTradedForAnyNumberOfLowerOnes) {
    for (double const higher : {999.999, 750.001, 500.0, 1.5}) {
        Problem p(1);
        for (int i = 0; i < 200; ++i) p.equal({{0, 1}}, 1000, higher - 0.0005);
        p.equal({{0, 1}}, 0, higher);
        p.solver.solve();
        EXPECT_NEAR(p[0], 0, 1e-6) << higher;
    }
}

TEST(SolverTest, ConflictLeavesTheLatestOutNamesAllAndKeepsTheRest) {
    Problem p(3, Solver::Domain::nonNegative);
    auto const a = p.equal({{0, 1}}, 100);
    auto const b = p.equal({{1, 1}, {0, -1}}, 20);
    p.equal({{2, 1}}, 7);
    auto const c = p.equal({{1, 1}}, 200);
    auto const conflicts = p.solver.solve();
    ASSERT_EQ(conflicts.size(), 1u);
    EXPECT_EQ(conflicts[0].refused, c);
    EXPECT_EQ(conflicts[0].involved, (std::vector{a, b, c}));
    EXPECT_TRUE(p.solver.isRefused(c));
    EXPECT_DOUBLE_EQ(p[1], 120);
    EXPECT_DOUBLE_EQ(p[2], 7);
    EXPECT_TRUE(p.solver.solve().empty());

    p.solver.remove(b); // what it conflicted with has gone
    EXPECT_TRUE(p.solver.solve().empty());
    EXPECT_FALSE(p.solver.isRefused(c));
    EXPECT_DOUBLE_EQ(p[1], 200);
    EXPECT_DOUBLE_EQ(p[0], 100);
}

TEST(SolverTest, EditsThatBecomeImpossibleAreRefusedAndComeBack) {
    Problem p(2, Solver::Domain::nonNegative);
    auto const outer = p.equal({{0, 1}}, 100);
    auto const inset = p.equal({{0, 1}, {1, -1}}, 32);
    EXPECT_TRUE(p.solver.solve().empty());
    EXPECT_DOUBLE_EQ(p[1], 68);
    p.solver.setConstant(outer, 0); // a length cannot be -32
    auto const conflicts = p.solver.solve();
    ASSERT_EQ(conflicts.size(), 1u);
    EXPECT_EQ(conflicts[0].refused, inset);
    p.solver.setConstant(outer, 50);
    EXPECT_TRUE(p.solver.solve().empty());
    EXPECT_DOUBLE_EQ(p[1], 18);
}

TEST(SolverTest, RedundantEqualitiesMayChangeTogetherButNotApart) {
    Problem p(1);
    auto const a = p.equal({{0, 1}}, 5);
    auto const b = p.equal({{0, 2}}, 10);
    EXPECT_TRUE(p.solver.solve().empty());
    p.solver.setConstant(a, 8);
    p.solver.setConstant(b, 16);
    EXPECT_TRUE(p.solver.solve().empty());
    EXPECT_DOUBLE_EQ(p[0], 8);
    p.solver.remove(a);
    EXPECT_TRUE(p.solver.solve().empty());
    EXPECT_DOUBLE_EQ(p[0], 8);
    p.equal({{0, 1}}, 9);
    EXPECT_EQ(p.solver.solve().size(), 1u);
    EXPECT_DOUBLE_EQ(p[0], 8);
}

// Random problems, compared with the best corner that can be found by trying them all.

struct Definition {
    std::vector<double> coefficients;
    double constant;
    int relation; // -1, 0, 1
    double priority;
};

struct RandomProblem {
    std::size_t variables;
    std::vector<Definition> definitions;
};

RandomProblem randomProblem(std::mt19937& random, std::size_t variables, std::size_t count) {
    auto const pick = [&](int low, int high) {
        return std::uniform_int_distribution<int>(low, high)(random);
    };
    static constexpr std::array priorities{1000.0, 999.5, 750.0, 250.0, 250.0, 49.0};
    RandomProblem problem{variables, {}};
    for (std::size_t i = 0; i < count; ++i) {
        Definition definition{std::vector<double>(variables), static_cast<double>(pick(-4, 12)), pick(-1, 1),
                              priorities[static_cast<std::size_t>(pick(0, 5))]};
        for (auto& coefficient : definition.coefficients) coefficient = pick(-2, 2);
        problem.definitions.push_back(definition);
    }
    return problem;
}

double violation(Definition const& definition, std::vector<double> const& point) {
    double sum = -definition.constant;
    for (std::size_t i = 0; i < point.size(); ++i) sum += definition.coefficients[i] * point[i];
    if (definition.relation < 0) return std::max(sum, 0.0);
    return definition.relation > 0 ? std::max(-sum, 0.0) : std::abs(sum);
}

/// Total deviation by falling priority, required first.
using Cost = std::map<double, double, std::greater<>>;
Cost costOf(RandomProblem const& problem, std::vector<double> const& point, std::vector<bool> const& counts) {
    Cost cost{{1000.0, 0.0}};
    for (std::size_t i = 0; i < problem.definitions.size(); ++i)
        if (counts[i]) cost[problem.definitions[i].priority] += violation(problem.definitions[i], point);
    return cost;
}

bool isLess(Cost const& a, Cost const& b) {
    for (auto const& [priority, value] : a)
        if (std::abs(value - b.at(priority)) > 1e-6) return value < b.at(priority);
    return false;
}

std::optional<std::vector<double>> intersection(std::vector<std::vector<double>> rows) {
    std::size_t const n = rows.size();
    for (std::size_t column = 0; column < n; ++column) {
        auto const best = std::max_element(
            rows.begin() + static_cast<std::ptrdiff_t>(column), rows.end(),
            [column](auto const& a, auto const& b) { return std::abs(a[column]) < std::abs(b[column]); });
        if (std::abs((*best)[column]) < 1e-9) return std::nullopt;
        std::swap(rows[column], *best);
        for (std::size_t row = 0; row < n; ++row) {
            if (row == column) continue;
            double const factor = rows[row][column] / rows[column][column];
            for (std::size_t i = column; i <= n; ++i) rows[row][i] -= factor * rows[column][i];
        }
    }
    std::vector<double> point(n);
    for (std::size_t i = 0; i < n; ++i) point[i] = rows[i][n] / rows[i][i];
    return point;
}

/// The best of all points where as many boundaries meet as there are variables; these are not negative.
Cost bestCost(RandomProblem const& problem, std::vector<bool> const& counts) {
    std::vector<std::vector<double>> boundaries;
    for (auto const& definition : problem.definitions) {
        boundaries.push_back(definition.coefficients);
        boundaries.back().push_back(definition.constant);
    }
    for (std::size_t i = 0; i < problem.variables; ++i) {
        boundaries.emplace_back(problem.variables + 1);
        boundaries.back()[i] = 1;
    }
    std::optional<Cost> best;
    std::vector<int> chosen(boundaries.size());
    std::fill_n(chosen.begin(), problem.variables, 1);
    do {
        std::vector<std::vector<double>> rows;
        for (std::size_t i = 0; i < boundaries.size(); ++i)
            if (chosen[i]) rows.push_back(boundaries[i]);
        auto const point = intersection(rows);
        if (!point || std::ranges::any_of(*point, [](double v) { return v < -1e-9; })) continue;
        auto const cost = costOf(problem, *point, counts);
        if (!best || isLess(cost, *best)) best = cost;
    } while (std::ranges::prev_permutation(chosen).found);
    return *best;
}

struct Loaded {
    Solver solver;
    std::vector<Solver::Constraint> handles;

    explicit Loaded(RandomProblem const& problem) {
        for (std::size_t i = 0; i < problem.variables; ++i) solver.addVariable(Solver::Domain::nonNegative);
        for (auto const& definition : problem.definitions) handles.push_back(add(definition));
    }
    Solver::Constraint add(Definition const& definition) {
        std::vector<Term> terms;
        for (std::size_t i = 0; i < definition.coefficients.size(); ++i)
            terms.push_back({static_cast<Solver::Variable>(i), definition.coefficients[i]});
        return solver.add(
            definition.relation < 0   ? Solver::atMost(terms, definition.constant, definition.priority)
            : definition.relation > 0 ? Solver::atLeast(terms, definition.constant, definition.priority)
                                      : Solver::equal(terms, definition.constant, definition.priority));
    }
    std::vector<double> point(RandomProblem const& problem) const {
        std::vector<double> values;
        for (std::size_t i = 0; i < problem.variables; ++i)
            values.push_back(solver.value(static_cast<Solver::Variable>(i)));
        return values;
    }
    std::vector<bool> counted() const {
        std::vector<bool> result;
        for (auto const handle : handles) result.push_back(!solver.isRefused(handle));
        return result;
    }
    void expectOptimal(RandomProblem const& problem, std::string const& what) {
        auto const counts = counted();
        auto const found = point(problem);
        auto const cost = costOf(problem, found, counts);
        EXPECT_NEAR(cost.at(1000), 0, 1e-6) << what;
        for (double const value : found) EXPECT_GE(value, -1e-6) << what;
        EXPECT_FALSE(isLess(bestCost(problem, counts), cost)) << what << '\n' << solver.dump();
    }
};

TEST(SolverTest, RandomChangesStepByStepStayOptimal) {
    for (unsigned seed = 0; seed < 100; ++seed) {
        std::mt19937 random(seed + 5000);
        auto problem = randomProblem(random, 2 + seed % 2, 3 + seed % 6);
        Loaded loaded(problem);
        for (int step = 0; step < 60; ++step) {
            auto const i = random() % problem.definitions.size();
            if (random() % 3 == 0) {
                problem.definitions[i] = randomProblem(random, problem.variables, 1).definitions[0];
                loaded.solver.remove(loaded.handles[i]);
                loaded.handles[i] = loaded.add(problem.definitions[i]);
            } else {
                problem.definitions[i].constant = static_cast<double>(random() % 20) - 5;
                loaded.solver.setConstant(loaded.handles[i], problem.definitions[i].constant);
            }
            if (random() % 2 == 0) continue; // several changes before one solution
            loaded.solver.solve();
            loaded.expectOptimal(problem, "seed " + std::to_string(seed) + ", step " + std::to_string(step));
            if (HasFailure()) return;
        }
    }
}

} // namespace
} // namespace trelundo
