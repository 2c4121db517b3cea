// SPDX-License-Identifier: MIT
#include "tools/kv/command_line.hpp"

#include <algorithm>
#include <functional>

#include "tools/kv/failure.hpp"
#include "tools/kv/suggestion.hpp"

namespace kvtool {

namespace {

using Matches = std::function<bool(const Option &)>;

const Option *find_in(std::span<const Option> options, const Matches &matches) {
    const auto found = std::find_if(options.begin(), options.end(), matches);
    return found != options.end() ? &*found : nullptr;
}

const Option *find_in(const ActionTable &table, const Matches &matches) {
    if (const Option *option = find_in(table.options, matches); option != nullptr) return option;
    for (const Action *action : table.actions) {
        if (const Option *option = find_in(action->options, matches); option != nullptr) return option;
    }
    return nullptr;
}

// As the tables of the action or of the subcommand have it, if these are known yet, else as any other has
// it: so the words after it are understood in either case.
const Option *find_option(const CommandLine &line, const Matches &matches) {
    const Option *option = line.action != nullptr ? find_in(line.action->options, matches) : nullptr;
    if (option == nullptr) option = find_in(common_options(), matches);
    if (option == nullptr && line.table != nullptr) option = find_in(*line.table, matches);
    for (const ActionTable *table : subcommands()) {
        if (option == nullptr) option = find_in(*table, matches);
    }
    return option;
}

bool is_option(std::string_view word) {
    if (word.size() < 2 || word[0] != '-') return false;
    return word[1] != '.' && (word[1] < '0' || word[1] > '9');  // "-5" and "-.5" are values
}

void take_long(CommandLine &line, std::string_view word) {
    const std::size_t equals = word.find('=');
    const std::string_view name = word.substr(0, equals);
    const Option *option = find_option(line, [&](const Option &known) { return known.name == name; });
    const bool has_value = equals != word.npos;
    line.options.push_back(
        {option, std::string(name), std::string(has_value ? word.substr(equals + 1) : ""), has_value});
}

// "-f", "-fFILE", "-qj".
void take_letters(CommandLine &line, std::string_view word) {
    for (std::size_t i = 1; i < word.size(); ++i) {
        const char letter = word[i];
        const Option *option =
            find_option(line, [&](const Option &known) { return known.letter == letter; });
        if (option == nullptr) {
            line.options.push_back(
                {nullptr, i == 1 ? std::string(word) : std::string("-") + letter, "", false});
            return;
        }
        CommandLine::Given given{option, std::string("-") + letter, "", false};
        if (!option->value.empty() && i + 1 < word.size()) {
            given.value = word.substr(word[i + 1] == '=' ? i + 2 : i + 1);
            given.has_value = true;
        }
        line.options.push_back(given);
        if (given.has_value) return;
    }
}

void take_operand(CommandLine &line, std::string_view word) {
    if (line.names.empty()) {
        line.names.emplace_back(word);
        line.table = find_subcommand(word);
        if (line.table != nullptr) line.action = line.table->only();
    } else if (line.names.size() == 1 && line.table != nullptr && line.action == nullptr) {
        line.names.emplace_back(word);
        line.action = line.table->find(word);
    } else {
        line.operands.emplace_back(word);
    }
}

std::vector<std::string> names_of(const std::vector<const Option *> &options) {
    std::vector<std::string> names;
    names.reserve(options.size());
    for (const Option *option : options) names.emplace_back(option->name);
    return names;
}

[[noreturn]] void fail_unknown_option(const std::string &command, const std::string &word,
                                      const std::vector<const Option *> &options) {
    std::string text = "there is no option '" + word + "'" + suggestion(word, names_of(options));
    if (text.find('?') == text.npos && !word.starts_with("--")) text += "; behind -- it is an operand";
    fail_usage(command, text);
}

void check_option(const std::string &command, const CommandLine::Given &given,
                  const std::vector<const Option *> &options) {
    const bool known =
        given.option != nullptr && std::any_of(options.begin(), options.end(), [&](const Option *option) {
            return option->name == given.option->name;
        });
    if (!known) fail_unknown_option(command, given.word, options);
    const Option &option = *given.option;
    if (option.value.empty() && given.has_value) fail_usage(command, given.word + " takes no value");
    if (!option.value.empty() && !given.has_value)
        fail_usage(command, given.word + " needs " + std::string(option.value));
    const std::vector<std::string_view> choices = words_of(option.choices);
    if (choices.empty() || std::find(choices.begin(), choices.end(), given.value) != choices.end()) return;
    std::string all;
    for (const std::string_view choice : choices) all.append(all.empty() ? "" : ", ").append(choice);
    fail_usage(command, given.word + " is one of " + all + ", not '" + given.value + "'" +
                            suggestion(given.value, {choices.begin(), choices.end()}));
}

void check_operands(const std::string &command, const CommandLine &line) {
    const Action &action = *line.action;
    const std::size_t count = line.operands.size();
    if (count >= action.least && count <= action.most) return;
    const std::vector<std::string> names = operand_names(action.operands, true);
    std::string form = "; the form is '" + command;
    if (!action.operands.empty()) form.append(" ").append(action.operands);
    form += "'";
    if (count < action.least)
        fail_usage(command, names[std::min(count, names.size() - 1)] + " is missing" + form);
    fail_usage(command, "'" + line.operands[action.most] + "' is a word too many" + form);
}

}  // namespace

bool CommandLine::has(std::string_view option) const {
    return std::any_of(options.begin(), options.end(), [&](const Given &given) {
        return given.option != nullptr && given.option->name == option;
    });
}

Arguments CommandLine::arguments() const {
    Arguments arguments;
    for (const Given &given : options) {
        if (given.option != nullptr) arguments.add_option(given.option->name, given.value);
    }
    for (const std::string &operand : operands) arguments.add_operand(operand);
    return arguments;
}

CommandLine take_apart(std::span<const char *const> words) {
    CommandLine line;
    for (const std::string_view word : words) {
        if (line.value_missing) {
            line.options.back().value = word;
            line.options.back().has_value = true;
            line.value_missing = false;
        } else if (line.ended || !is_option(word)) {
            take_operand(line, word);
        } else if (word == "--") {
            line.ended = true;
        } else {
            word.starts_with("--") ? take_long(line, word) : take_letters(line, word);
            const CommandLine::Given &given = line.options.back();
            line.value_missing =
                given.option != nullptr && !given.option->value.empty() && !given.has_value;
        }
    }
    return line;
}

std::vector<const Option *> options_of(const ActionTable &table, const Action &action) {
    std::vector<const Option *> all;
    for (const auto &options : {action.options, table.options, common_options()}) {
        for (const Option &option : options) all.push_back(&option);
    }
    return all;
}

Arguments complete_arguments(const CommandLine &line) {
    const std::string command = line.table->command_of(*line.action);
    const std::vector<const Option *> options = options_of(*line.table, *line.action);
    for (const CommandLine::Given &given : line.options) check_option(command, given, options);
    check_operands(command, line);
    return line.arguments();
}

}  // namespace kvtool
