#include "cli/Arguments.h"

#include "cli/CommandTable.h"
#include "places/PrintableText.h"

#include <algorithm>

namespace {

/// Reads the words from left to right.
class Parser {
public:
    Parser(const CommandInfo& command, const std::vector<std::string>& words)
        : m_command(command), m_words(words) {}

    Arguments Parse() {
        while (m_next < m_words.size() && !m_arguments.Has(Option::Help)) {
            const std::string& word = m_words[m_next++];
            if (word == "--") {
                m_arguments.operands.insert(m_arguments.operands.end(), Next(), m_words.end());
                break;
            }
            if (word.starts_with("--")) {
                TakeLongOption(word);
            } else if (word.starts_with("-") && word != "-") {
                TakeLetters(word);
            } else {
                m_arguments.operands.push_back(word);
            }
        }
        return m_arguments;
    }

private:
    std::vector<std::string>::const_iterator Next() const {
        return m_words.begin() + static_cast<std::ptrdiff_t>(m_next);
    }

    // The command's own options whose names begin so; one alone when it is the whole name.
    std::vector<const OptionInfo*> Candidates(const std::string& name) const {
        std::vector<const OptionInfo*> found;
        for (const OptionInfo& option : Options()) {
            if (std::ranges::find(m_command.options, option.option) == m_command.options.end()) {
                continue;
            }
            if (option.name == name) {
                return {&option};
            }
            if (std::string(option.name).starts_with(name)) {
                found.push_back(&option);
            }
        }
        return found;
    }

    void TakeLongOption(const std::string& word) {
        const std::string name = word.substr(0, word.find('='));
        const std::vector<const OptionInfo*> candidates = Candidates(name);
        if (candidates.empty()) {
            throw UsageError("unknown option '" + Printable(name) + "'");
        }
        if (candidates.size() > 1) {
            throw UsageError("'" + name + "' may mean " + candidates[0]->name + " or " +
                             candidates[1]->name);
        }
        const OptionInfo& option = *candidates.front();
        if (option.value == nullptr) {
            if (name != word) {
                throw UsageError(std::string("option '") + option.name + "' takes no value");
            }
            Add(option, "");
        } else if (name != word) {
            Add(option, word.substr(name.size() + 1));
        } else if (m_next == m_words.size()) {
            throw UsageError(std::string("option '") + option.name +
                             "' needs a value: " + option.value);
        } else {
            Add(option, m_words[m_next++]);
        }
    }

    // Several options of one letter each; none of them takes a value.
    void TakeLetters(const std::string& word) {
        for (std::size_t i = 1; i < word.size(); ++i) {
            const std::vector<const OptionInfo*> candidates =
                Candidates(std::string("-") + word[i]);
            if (candidates.size() != 1 || std::string(candidates[0]->name).size() != 2) {
                throw UsageError("unknown option '" + Printable(word) + "'");
            }
            Add(*candidates.front(), "");
        }
    }

    void Add(const OptionInfo& option, const std::string& value) {
        m_arguments.options[option.option] = value;
    }

    const CommandInfo& m_command;
    const std::vector<std::string>& m_words;
    std::size_t m_next = 0;
    Arguments m_arguments;
};

} // namespace

Arguments ParseArguments(const CommandInfo& command, const std::vector<std::string>& words) {
    Arguments arguments = Parser(command, words).Parse();
    if (arguments.Has(Option::Help)) {
        return arguments;
    }
    if (arguments.operands.size() < command.leastOperands) {
        throw UsageError("missing operand");
    }
    if (arguments.operands.size() > command.mostOperands) {
        throw UsageError("extra operand '" + Printable(arguments.operands[command.mostOperands]) +
                         "'");
    }
    return arguments;
}
