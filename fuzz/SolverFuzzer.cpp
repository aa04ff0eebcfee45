#include "trelundo/platform/uikit/layout/internal/Solver.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <vector>

namespace {

using trelundo::Solver;

/// Small numbers from the input; zeros when it has ended.
class Input {
public:
    Input(std::uint8_t const* data, std::size_t size)
        : data_(data)
        , end_(data + size) {}
    bool isAtEnd() const { return data_ == end_; }
    int below(int limit) { return isAtEnd() ? 0 : *data_++ % limit; }

private:
    std::uint8_t const* data_;
    std::uint8_t const* end_;
};

/// Adds, removes and edits as the input says, and checks each solution against the constraints it keeps.
class Session {
public:
    explicit Session(Input input)
        : input_(input) {
        for (int i = 0; i < variableCount; ++i) variables_.push_back(solver_.addVariable(domain(i)));
    }

    void run() {
        while (!input_.isAtEnd()) {
            step();
            check();
        }
    }

private:
    struct Kept {
        std::vector<Solver::Term> terms;
        double constant, above, below;
    };
    static constexpr int variableCount = 10;
    static constexpr std::size_t mostConstraints = 60;

    static Solver::Domain domain(int i) { return i % 2 ? Solver::Domain::nonNegative : Solver::Domain::any; }

    void step() {
        auto const action = input_.below(4);
        if (action == 0 && !kept_.empty()) return remove();
        if (action == 1 && !kept_.empty()) return edit();
        if (kept_.size() < mostConstraints) add();
    }

    double priority() {
        static constexpr double priorities[] = {Solver::required, Solver::allowed, 750, 250, 249.5};
        return priorities[input_.below(5)];
    }

    void add() {
        Kept rule{.terms = {}, .constant = constant(), .above = priority(), .below = priority()};
        for (auto count = 1 + input_.below(4); count > 0; --count)
            rule.terms.push_back({variables_[static_cast<std::size_t>(input_.below(variableCount))],
                                  (input_.below(9) - 4) / 2.0});
        auto const handle = solver_.add({.terms = rule.terms,
                                         .constant = rule.constant,
                                         .above = rule.above,
                                         .below = rule.below,
                                         .takesPrecedence = input_.below(8) == 0});
        kept_[handle] = std::move(rule);
    }

    std::map<Solver::Constraint, Kept>::iterator any() {
        return std::next(kept_.begin(), input_.below(static_cast<int>(kept_.size())));
    }
    double constant() { return (input_.below(201) - 100) * 4.0; }

    void remove() {
        auto const it = any();
        solver_.remove(it->first);
        kept_.erase(it);
    }

    void edit() {
        auto const it = any();
        it->second.constant = constant();
        solver_.setConstant(it->first, it->second.constant);
    }

    void check() {
        solver_.solve();
        for (int i = 0; i < variableCount; ++i) {
            auto const value = solver_.value(variables_[static_cast<std::size_t>(i)]);
            if (!std::isfinite(value)) std::abort();
            if (domain(i) == Solver::Domain::nonNegative && value < -tolerance) std::abort();
        }
        for (auto const& [handle, rule] : kept_)
            if (!solver_.isRefused(handle) && !holds(rule)) std::abort();
    }

    bool holds(Kept const& rule) const {
        double sum = 0, scale = 1;
        for (auto const& term : rule.terms) {
            sum += term.coefficient * solver_.value(term.variable);
            scale += std::abs(term.coefficient * solver_.value(term.variable));
        }
        auto const excess = sum - rule.constant;
        return (rule.above != Solver::required || excess <= tolerance * scale) &&
               (rule.below != Solver::required || excess >= -tolerance * scale);
    }

    static constexpr double tolerance = 1e-5;
    Input input_;
    Solver solver_;
    std::vector<Solver::Variable> variables_;
    std::map<Solver::Constraint, Kept> kept_;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    Session{{data, size}}.run();
    return 0;
}
