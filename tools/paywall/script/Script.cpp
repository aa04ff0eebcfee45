#include "tools/paywall/script/Script.h"

#include "tools/paywall/Failure.h"
#include "tools/paywall/output/Suggestion.h"

#include <algorithm>
#include <array>
#include <fmt/core.h>

namespace trelundo::paywall {

namespace {

/// A step's form, for checking before anything runs.
struct StepForm {
    std::string_view command;
    std::size_t minimum; // arguments
    std::size_t maximum;
    std::string_view usage;
};

constexpr std::size_t unlimited = 1000;
constexpr std::array forms{
    StepForm{"tap", 1, 1, "tap NAME or tap \"visible text\""},
    StepForm{"press", 1, 1, "press NAME"},
    StepForm{"release", 1, 1, "release NAME"},
    StepForm{"drag", 3, 3, "drag NAME DX DY"},
    StepForm{"alert", 1, 1, "alert \"action\""},
    StepForm{"advance", 1, 1, "advance SECONDS"},
    StepForm{"store", 1, 3, "store next|restore|approve|decline|interrupt|resume|promote ..."},
    StepForm{"can-make-payments", 1, 1, "can-make-payments on|off"},
    StepForm{"rotate", 1, 1, "rotate portrait|landscape"},
    StepForm{"appearance", 1, 1, "appearance light|dark"},
    StepForm{"snapshot", 1, 1, "snapshot FILE.png"},
    StepForm{"describe", 1, 1, "describe FILE.json"},
    StepForm{"expect", 1, unlimited, "expect KIND KEY=VALUE ..."},
    StepForm{"set", 1, 1, "set NAME=VALUE"},
    StepForm{"host", 2, 2, "host promote yes|no"},
    StepForm{"cover", 0, 0, "cover"},
    StepForm{"uncover", 0, 0, "uncover"},
    StepForm{"dismiss", 0, 0, "dismiss"},
};

/// Takes a line apart word by word.
class Tokenizer {
public:
    Tokenizer(std::string_view line, std::string const& place)
        : rest_(line)
        , place_(place) {}

    std::vector<Step::Word> words() {
        std::vector<Step::Word> words;
        for (skipBlanks(); !rest_.empty() && rest_.front() != '#'; skipBlanks()) words.push_back(word());
        return words;
    }

private:
    void skipBlanks() { rest_.remove_prefix(std::min(rest_.find_first_not_of(" \t\r"), rest_.size())); }

    Step::Word word() {
        Step::Word word{.text = {}, .isQuoted = rest_.front() == '"'};
        while (!rest_.empty() && std::string_view{" \t\r"}.find(rest_.front()) == std::string_view::npos) {
            if (rest_.front() == '"')
                quoted(word.text);
            else
                take(word.text);
        }
        return word;
    }

    void quoted(std::string& text) {
        rest_.remove_prefix(1);
        while (!rest_.empty() && rest_.front() != '"') {
            if (rest_.front() == '\\' && rest_.size() > 1)
                escaped(text);
            else
                take(text);
        }
        if (rest_.empty()) failInput(place_ + ": a quoted text has no end");
        rest_.remove_prefix(1);
    }

    void escaped(std::string& text) {
        rest_.remove_prefix(1);
        text += rest_.front() == 'n' ? '\n' : rest_.front();
        rest_.remove_prefix(1);
    }

    void take(std::string& text) {
        text += rest_.front();
        rest_.remove_prefix(1);
    }

    std::string_view rest_;
    std::string const& place_;
};

std::vector<std::string> names() {
    std::vector<std::string> all;
    for (auto const& form : forms) all.emplace_back(form.command);
    return all;
}

void check(Step const& step) {
    auto const form = std::ranges::find(forms, step.command, &StepForm::command);
    if (form == forms.end())
        failInput(fmt::format("{}: unknown step \"{}\"{}", step.place, step.command,
                              suggestion(step.command, names())));
    if (step.arguments.size() < form->minimum || step.arguments.size() > form->maximum)
        failInput(fmt::format("{}: the form is: {}", step.place, form->usage));
}

} // namespace

std::vector<Step> parseScript(std::string_view text, std::string const& fileName) {
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (text.starts_with(byteOrderMark)) text.remove_prefix(byteOrderMark.size());
    std::vector<Step> steps;
    int number = 0;
    while (!text.empty()) {
        auto const end = std::min(text.find('\n'), text.size());
        auto const place = fmt::format("{}:{}", fileName, ++number);
        auto words = Tokenizer{text.substr(0, end), place}.words();
        text.remove_prefix(std::min(end + 1, text.size()));
        if (words.empty()) continue;
        Step step{
            .place = place, .command = words.front().text, .arguments = {words.begin() + 1, words.end()}};
        check(step);
        steps.push_back(std::move(step));
    }
    return steps;
}

} // namespace trelundo::paywall
