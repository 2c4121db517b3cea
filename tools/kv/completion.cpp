// SPDX-License-Identifier: MIT
#include "tools/kv/completion.hpp"

#include <algorithm>
#include <iostream>

#include "tools/kv/command_line.hpp"
#include "tools/kv/failure.hpp"
#include "tools/kv/files.hpp"

namespace kvtool {

namespace {

// Prints the candidates that begin with what has been typed of the word.
class Offers {
  public:
    Offers(std::string word, std::string before) : word_(std::move(word)), before_(std::move(before)) {}

    void add(std::string_view candidate, std::string_view meaning = {}) const {
        if (!candidate.starts_with(word_) || candidate.find_first_of("\n\t") != candidate.npos) return;
        std::cout << before_ << candidate;
        if (!meaning.empty()) std::cout << '\t' << meaning;
        std::cout << '\n';
    }
    const std::string &word() const { return word_; }

  private:
    std::string word_;
    std::string before_;  // what the shell takes for a part of the word: "--file="
};

void offer_subcommands(const Offers &offers) {
    for (const ActionTable *table : subcommands()) offers.add(table->name(), table->summary);
}

void offer_actions(const Offers &offers, const ActionTable &table) {
    for (const Action *action : table.actions) {
        if (!action->name.empty()) offers.add(action->name, action->summary);
    }
}

void offer_options(const Offers &offers, const CommandLine &line) {
    std::vector<const Option *> options;
    if (line.action != nullptr) {
        options = options_of(*line.table, *line.action);
    } else {
        if (line.table != nullptr) {
            for (const Option &option : line.table->options) options.push_back(&option);
        }
        for (const Option &option : common_options()) options.push_back(&option);
    }
    for (const Option *option : options) offers.add(option->name, option->help);
}

void offer_kind(const Offers &offers, std::string_view kind, const CommandLine &line) {
    if (kind == "FILE" || kind == "SOURCE" || kind == "DESTINATION") {
        std::cout << "@files\n";
    } else if (kind == "DIR") {
        std::cout << "@directories\n";
    } else if (line.table != nullptr && line.table->offer != nullptr) {
        const Arguments arguments = line.arguments();
        if (line.table->prepare != nullptr) line.table->prepare("kv complete", arguments);
        for (const std::string &candidate : line.table->offer(kind, offers.word(), arguments)) {
            offers.add(candidate);
        }
    }
}

void offer_value(const Offers &offers, const Option &option, const CommandLine &line) {
    for (const std::string_view choice : words_of(option.choices)) offers.add(choice);
    if (option.choices.empty()) offer_kind(offers, option.value, line);
}

// A file may stand before the operands of an action that has --file.
void offer_operand_of(const Offers &offers, const CommandLine &line) {
    std::vector<std::string> kinds = operand_names(line.action->operands);
    if (kinds.size() > 1 && line.action->operands.find("[FILE]") != std::string_view::npos) {
        if (line.operands.empty() && !line.has("--file")) offer_kind(offers, kinds[0], line);
        if (line.operands.empty() || line.has("--file") || !is_file(line.operands[0]))
            kinds.erase(kinds.begin());
    }
    const std::size_t place = std::min(line.operands.size(), kinds.size() - 1);
    if (!kinds.empty()) offer_kind(offers, kinds[place], line);
}

void offer_operand(const Offers &offers, const CommandLine &line) {
    if (line.names.empty()) {
        offer_subcommands(offers);
        offers.add("help", "describe a subcommand or an action");
    } else if (line.names[0] == "help") {
        const ActionTable *table = line.operands.empty() ? nullptr : find_subcommand(line.operands[0]);
        if (line.operands.empty()) offer_subcommands(offers);
        if (table != nullptr && line.operands.size() == 1) offer_actions(offers, *table);
    } else if (line.table != nullptr && line.action == nullptr) {
        if (line.names.size() == 1) offer_actions(offers, *line.table);
    } else if (line.action != nullptr && line.operands.size() < line.action->most) {
        offer_operand_of(offers, line);
    }
}

void offer_all(const std::string &word, const CommandLine &line) {
    if (line.value_missing) {
        offer_value({word, ""}, *line.options.back().option, line);
        return;
    }
    if (line.ended || !word.starts_with('-')) {
        offer_operand({word, ""}, line);
        return;
    }
    const std::size_t equals = word.find('=');
    if (equals == word.npos) {
        offer_options({word, ""}, line);
        return;
    }
    const char *const option = word.c_str();
    const CommandLine given = take_apart(std::span(&option, 1));
    if (given.options.empty() || given.options[0].option == nullptr) return;
    offer_value({word.substr(equals + 1), word.substr(0, equals + 1)}, *given.options[0].option, line);
}

}  // namespace

int run_completion(std::span<const char *const> words) {
    if (words.empty()) return kDone;
    try {
        offer_all(words.back(), take_apart(words.first(words.size() - 1)));
    } catch (const Failure &) {  // a file that cannot be read offers nothing
    }
    return kDone;
}

}  // namespace kvtool
