#include "trelundo/platform/uikit/layout/internal/Solver.h"
#include "trelundo/platform/graphics/Geometry.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
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
    double x = 0, y = 0, constant = 0, priority = 0;
    int relation = 0; // -1 at most, 1 at least

    /// How far a point lies on the wrong side.
    double violationAt(CGPoint point) const {
        double const sum = x * point.x + y * point.y - constant;
        return relation < 0 ? std::max(sum, 0.0) : relation > 0 ? std::max(-sum, 0.0) : std::abs(sum);
    }
};

std::optional<CGPoint> intersection(Definition const& a, Definition const& b) {
    double const determinant = a.x * b.y - a.y * b.x;
    if (std::abs(determinant) < 1e-9) return std::nullopt;
    return CGPoint{(a.constant * b.y - a.y * b.constant) / determinant,
                   (a.x * b.constant - a.constant * b.x) / determinant};
}

/// Total deviation by falling priority, required first.
using Cost = std::map<double, double, std::greater<>>;

bool isLess(Cost const& a, Cost const& b) {
    for (auto const& [priority, value] : a)
        if (std::abs(value - b.at(priority)) > 1e-6) return value < b.at(priority);
    return false;
}

/// Two lengths under constraints that change at random.
class RandomProblem {
public:
    explicit RandomProblem(unsigned seed)
        : random_(seed) {
        for (unsigned i = 0; i < 3 + seed % 6; ++i) {
            definitions_.push_back(anyDefinition());
            handles_.push_back(added(definitions_.back()));
        }
    }

    void change() {
        auto const i = random_() % definitions_.size();
        if (pick(0, 2) == 0) {
            lengths_.solver.remove(handles_[i]);
            definitions_[i] = anyDefinition();
            handles_[i] = added(definitions_[i]);
        } else {
            definitions_[i].constant = pick(-5, 14);
            lengths_.solver.setConstant(handles_[i], definitions_[i].constant);
        }
    }

    void expectOptimal() {
        lengths_.solver.solve();
        CGPoint const found{lengths_[0], lengths_[1]};
        auto const cost = costAt(found);
        EXPECT_NEAR(cost.at(Solver::required), 0, 1e-6);
        EXPECT_GE(std::min(found.x, found.y), -1e-6);
        EXPECT_FALSE(isLess(bestCost(), cost)) << lengths_.solver.dump();
    }

private:
    int pick(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random_); }

    Definition anyDefinition() {
        static constexpr std::array priorities{1000.0, 999.5, 750.0, 250.0, 250.0, 49.0};
        return {static_cast<double>(pick(-2, 2)), static_cast<double>(pick(-2, 2)),
                static_cast<double>(pick(-4, 12)), priorities[static_cast<std::size_t>(pick(0, 5))],
                pick(-1, 1)};
    }
    Solver::Constraint added(Definition const& definition) {
        auto const add = definition.relation < 0   ? &Problem::atMost
                         : definition.relation > 0 ? &Problem::atLeast
                                                   : &Problem::equal;
        return (lengths_.*add)({{0, definition.x}, {1, definition.y}}, definition.constant,
                               definition.priority);
    }
    /// Of the constraints that the solver keeps.
    Cost costAt(CGPoint point) const {
        Cost cost{{Solver::required, 0.0}};
        for (std::size_t i = 0; i < definitions_.size(); ++i)
            if (!lengths_.solver.isRefused(handles_[i]))
                cost[definitions_[i].priority] += definitions_[i].violationAt(point);
        return cost;
    }
    /// The best of all points where two boundaries meet; lengths are not negative.
    Cost bestCost() const {
        auto boundaries = definitions_;
        boundaries.push_back({.x = 1});
        boundaries.push_back({.y = 1});
        std::optional<Cost> best;
        for (auto const& first : boundaries)
            for (auto const& second : boundaries) {
                auto const corner = intersection(first, second);
                if (!corner || std::min(corner->x, corner->y) < -1e-9) continue;
                if (auto const cost = costAt(*corner); !best || isLess(cost, *best)) best = cost;
            }
        return *best;
    }

    std::mt19937 random_;
    Problem lengths_{2, Solver::Domain::nonNegative};
    std::vector<Definition> definitions_;
    std::vector<Solver::Constraint> handles_;
};

TEST(SolverTest, RandomChangesStepByStepStayOptimal) {
    for (unsigned seed = 0; seed < 150 && !HasFailure(); ++seed) {
        RandomProblem problem(seed + 5000);
        for (int step = 0; step < 60; ++step) {
            SCOPED_TRACE("seed " + std::to_string(seed) + ", step " + std::to_string(step));
            problem.change();
            if (step % 3 != 1) problem.expectOptimal(); // at times several changes before one solution
        }
    }
}

} // namespace
} // namespace trelundo
