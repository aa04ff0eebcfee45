#include "fuzz/Fuzzer.h"
#include "trelundo/platform/uikit/layout/internal/Solver.h"

#include <cmath>
#include <map>

namespace trelundo {

namespace {

/// Adds, removes and edits as the input says, and checks each solution against the constraints it keeps.
class Session {
public:
    explicit Session(std::string_view input)
        : rest_(input) {
        for (int i = 0; i < variableCount; ++i) variables_.push_back(solver_.addVariable(domain(i)));
    }

    void run() {
        while (!rest_.empty()) {
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

    /// A small number from the input; zero when it has ended.
    int below(int limit) {
        if (rest_.empty()) return 0;
        auto const byte = static_cast<unsigned char>(rest_.front());
        rest_.remove_prefix(1);
        return byte % limit;
    }

    void step() {
        auto const action = below(4);
        if (action == 0 && !kept_.empty()) return remove();
        if (action == 1 && !kept_.empty()) return edit();
        if (kept_.size() < mostConstraints) add();
    }

    double priority() {
        static constexpr double priorities[] = {Solver::required, Solver::allowed, 750, 250, 249.5};
        return priorities[below(5)];
    }

    void add() {
        Kept rule{.terms = {}, .constant = constant(), .above = priority(), .below = priority()};
        for (auto count = 1 + below(4); count > 0; --count)
            rule.terms.push_back(
                {variables_[static_cast<std::size_t>(below(variableCount))], (below(9) - 4) / 2.0});
        auto const handle = solver_.add({.terms = rule.terms,
                                         .constant = rule.constant,
                                         .above = rule.above,
                                         .below = rule.below,
                                         .takesPrecedence = below(8) == 0});
        kept_[handle] = std::move(rule);
    }

    std::map<Solver::Constraint, Kept>::iterator any() {
        return std::next(kept_.begin(), below(static_cast<int>(kept_.size())));
    }
    double constant() { return (below(201) - 100) * 4.0; }

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
            fuzz::require(std::isfinite(value));
            fuzz::require(domain(i) == Solver::Domain::any || value >= -tolerance);
        }
        for (auto const& [handle, rule] : kept_) fuzz::require(solver_.isRefused(handle) || holds(rule));
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
    std::string_view rest_;
    Solver solver_;
    std::vector<Solver::Variable> variables_;
    std::map<Solver::Constraint, Kept> kept_;
};

} // namespace

void fuzz::run(std::string_view input) { Session{input}.run(); }

} // namespace trelundo
