#include <iostream>
#include <string>

#include "command/CommandLine.h"

namespace command {
namespace {

/// What the shells run to complete a word. Zsh runs it too, in its emulation of bash's completion.
/// Of values that commas separate, $last is completed, $before stays.
/// @COMMANDS@ finds the command that the words before name; @VALUES@ completes an option's value;
/// @WORDS@ sets what else may come. Where nothing is offered the shell offers names of files.
constexpr const char* kScript = R"(_stowline() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]} command= words= at
  local last=${current##*,}
  local before=${current%"$last"}
  COMPREPLY=()
  for ((at = 1; at < COMP_CWORD; at++)); do
    case "$command/${COMP_WORDS[at]}" in
@COMMANDS@    esac
  done
  case "$command/$previous" in
@VALUES@  esac
  case "$command" in
@WORDS@  esac
  COMPREPLY=($(compgen -W "$words" -- "$current"))
}
complete -o default -F _stowline stowline
)";

/// The parts of the script.
struct Parts {
  std::string commands;
  std::string values;
  std::string words;
};

/// Returns the words that an option takes, of its type "TEXT:{one,two}"; "" for any.
std::string choicesOf(const CLI::Option& option) {
  const std::string type = option.get_type_name();
  const std::size_t begin = type.find('{');
  if (begin == std::string::npos) return "";
  std::string choices = type.substr(begin + 1, type.find('}', begin) - begin - 1);
  for (char& character : choices) {
    if (character == ',') character = ' ';
  }
  return choices;
}

/// Adds what completes the words of `app`, the command named by `path`, and of its own commands.
void addCommand(Parts& parts, CLI::App& app, const std::string& path) {
  std::string words;
  std::string takes_files;
  for (CLI::App* command : app.get_subcommands({})) {
    const std::string below = path.empty() ? command->get_name() : path + "-" + command->get_name();
    words += command->get_name() + " ";
    parts.commands += "      " + path + "/" + command->get_name() + ") command=" + below + " ;;\n";
    addCommand(parts, *command, below);
  }
  for (const CLI::Option* option : app.get_options()) {
    const std::string choices = choicesOf(*option);
    if (option->get_positional() && choices.empty()) takes_files = "[[ $current == -* ]] && ";
    if (option->get_positional()) words += choices + " ";
    for (const std::string& name : option->get_lnames()) {
      words += "--" + name + " ";
      if (option->get_items_expected_max() == 0) continue;
      parts.values += "    " + path + "/--" + name + ") ";
      if (!choices.empty()) {
        const bool is_list = option->get_delimiter() == ',';
        parts.values += "COMPREPLY=($(compgen -W \"" + choices + "\" " +
                        (is_list ? "-P \"$before\" -- \"$last\"" : "-- \"$current\"") + ")); ";
      }
      parts.values += "return ;;\n";
    }
  }
  parts.words += "    \"" + path + "\") " + takes_files + "words=\"" + words + "\" ;;\n";
}

void replace(std::string& text, const std::string& what, const std::string& with) {
  text.replace(text.find(what), what.size(), with);
}

}  // namespace

void printCompletion(CLI::App& stowline, const std::string& shell) {
  Parts parts;
  addCommand(parts, stowline, "");
  std::string script = kScript;
  replace(script, "@COMMANDS@", parts.commands);
  replace(script, "@VALUES@", parts.values);
  replace(script, "@WORDS@", parts.words);
  if (shell == "zsh") std::cout << "autoload -U +X bashcompinit && bashcompinit\n";
  std::cout << script;
}

}  // namespace command
