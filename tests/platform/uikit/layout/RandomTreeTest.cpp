#include "tests/platform/uikit/layout/LayoutStage.h"
#include "trelundo/platform/uikit/layout/internal/LayoutEngine.h"

#include <random>

namespace trelundo {
namespace {

/// Grows, shrinks and changes a tree at random. Priorities are all different, so that one layout is the best.
class RandomTreeTest : public LayoutStage {
protected:
    struct Member {
        Ref<ContentView> view;
        std::vector<Ref<NSLayoutConstraint>> constraints;
    };

    int pick(int count) { return static_cast<int>(random() % static_cast<unsigned>(count)); }
    double points() { return pick(60); }
    UIView& anyView() { return members.empty() || pick(4) == 0 ? *root : *members[index()].view; }
    std::size_t index() { return static_cast<std::size_t>(pick(static_cast<int>(members.size()))); }

    void grow() {
        auto& parent = anyView();
        auto const sibling = parent.subviews().empty() ? nullptr : parent.subviews().back();
        Member member{add(parent, CGSize{points(), points()}), {}};
        auto const& view = member.view;
        for (auto const axis : {NSLayoutConstraintAxis::horizontal, NSLayoutConstraintAxis::vertical}) {
            view->setContentCompressionResistancePriority(700 + next(), axis);
            view->setContentHuggingPriority(200 + next(), axis);
        }
        if (pick(3) == 0) view->setWrapping();
        auto const start = sibling && pick(2) ? sibling->trailingAnchor() : parent.leadingAnchor();
        auto const top = pick(2) ? parent.safeAreaLayoutGuide()->topAnchor() : root->topAnchor();
        member.constraints = {
            (view->leadingAnchor() == start + points()).constraint(),
            (view->topAnchor() == top + points()).constraint(),
            (view->trailingAnchor() <= parent.trailingAnchor() - points()).at(760 + next()).constraint(),
            (view->heightAnchor() == view->widthAnchor() * 0.5 + points()).at(600 + next()).constraint(),
            (parent.widthAnchor() >= view->widthAnchor() + points()).at(300 + next()).constraint()};
        NSLayoutConstraint::activate(member.constraints);
        members.push_back(std::move(member));
    }
    void shrink() {
        auto const view = members[index()].view;
        view->removeFromSuperview();
        std::erase_if(members, [&](Member const& member) { return member.view->isDescendantOf(*view); });
        // What stood beside it needs a new place.
        for (auto& member : members) {
            if (member.constraints[0]->isActive()) continue;
            member.constraints[0] =
                (member.view->leadingAnchor() == member.view->superview()->leadingAnchor() + points())
                    .constraint();
            member.constraints[0]->setActive(true);
        }
    }
    void change() {
        auto& member = members[index()];
        auto const& constraint = member.constraints[static_cast<std::size_t>(pick(5))];
        bool const isOptional = constraint->priority() < UILayoutPriority::required;
        int const kind = pick(5);
        if (kind == 0) return member.view->resize({points(), points()});
        if (kind == 1) return root->setFrame({0, 0, 200 + points() * 5, 600});
        if (kind == 2 && isOptional) return constraint->setActive(!constraint->isActive());
        if (kind == 3 && isOptional) return constraint->setPriority(500 + next());
        constraint->setConstant(points());
    }
    double next() { return 1e-3 * ++priorities; }

    std::vector<CGRect> frames() {
        std::vector<CGRect> result;
        for (auto const& member : members) result.push_back(member.view->frame());
        return result;
    }

    std::mt19937 random;
    std::vector<Member> members;
    int priorities = 0;
};

TEST_F(RandomTreeTest, IncrementalLayoutEqualsLayoutFromNothing) {
    for (unsigned seed = 0; seed < 60; ++seed) {
        random.seed(seed);
        priorities = 0;
        for (int step = 0; step < 60; ++step) {
            int const kind = pick(10);
            if (members.empty() || (kind < 4 && members.size() < 25))
                grow();
            else if (kind == 4)
                shrink();
            else
                change();
            if (pick(3) != 0) continue;
            layout();
            if (pick(4) != 0) continue; // several incremental layouts before one from nothing
            auto const incremental = frames();
            LayoutEngine::of(*root).reset();
            root->setNeedsLayout();
            layout();
            auto const anew = frames();
            for (std::size_t i = 0; i < anew.size(); ++i)
                ASSERT_EQ(incremental[i], anew[i]) << "seed " << seed << ", step " << step << ", view " << i;
            ASSERT_TRUE(warnings.empty()) << warnings[0];
        }
        while (!root->subviews().empty()) root->subviews()[0]->removeFromSuperview();
        members.clear();
        EXPECT_TRUE(root->constraints().empty());
    }
}

} // namespace
} // namespace trelundo
