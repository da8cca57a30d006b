#include "command/CommandLine.h"

#include <memory>
#include <string>

#include "command/Commands.h"
#include "command/scheduled/ScheduledBackup.h"
#ifdef STOWLINE_STAND_IN
#include "desk/protocol/Word.h"
#include "desk/tree/ReceiverTree.h"
#endif

namespace command {
namespace {

/// Raises CLI::RequiredError for the first of `options` that was not given. Unlike the library's
/// own check it comes after that of unknown options, so that a mistyped one is named.
void require(std::initializer_list<const CLI::Option*> options) {
  for (const CLI::Option* option : options) {
    if (option->count() == 0) throw CLI::RequiredError(option->get_name());
  }
}

#ifdef STOWLINE_STAND_IN
/// Adds the options --receiver, which it returns, and --no-enclosure.
CLI::Option* addReceiverOptions(CLI::App& command, TreeOptions& receiver,
                                const std::string& description) {
  CLI::Option* dir = command.add_option("--receiver", receiver.dir, description)->type_name("DIR");
  command
      .add_flag("--no-enclosure", receiver.no_enclosure,
                "where the system gives no namespaces, as root: let what runs in the receiver get "
                "out of it")
      ->needs(dir);
  return dir;
}

void addReceiverOptions(CLI::App& command, TreeOptions& receiver) {
  addReceiverOptions(command, receiver,
                     "a receiver tree; by default the receiver that this runs on");
}

struct ReceiverOptions {
  std::filesystem::path dir;
  std::string model = "solo2";
};

void addReceiver(CLI::App& stowline) {
  const auto options = std::make_shared<ReceiverOptions>();
  CLI::App* receiver = stowline.add_subcommand("receiver", "Lay out or flash a receiver tree.");
  receiver->require_subcommand(0, 1);
  receiver->callback([receiver] {
    if (receiver->get_subcommands().empty()) {
      throw CLI::ValidationError("name a command: receiver new or receiver flash");
    }
  });

  CLI::App* lay_out = receiver->add_subcommand(
      "new", "Lay out a receiver that has been in use, in a new or empty directory.");
  CLI::Option* new_dir = lay_out->add_option("DIR", options->dir, "the directory");
  lay_out->add_option("--model", options->model, "the receiver's model")
      ->check(CLI::IsMember(desk::models()))
      ->capture_default_str();
  lay_out->callback([=] {
    require({new_dir});
    desk::layOut(options->dir, options->model);
  });

  CLI::App* flash = receiver->add_subcommand(
      "flash", "Put the receiver back to factory state; what is below /media stays.");
  CLI::Option* flash_dir = flash->add_option("DIR", options->dir, "the receiver's directory");
  flash->callback([=] {
    require({flash_dir});
    desk::flash(options->dir);
  });
}

void addDesk(CLI::App& stowline) {
  const auto options = std::make_shared<DeskOptions>();
  CLI::App* desk = stowline.add_subcommand(
      "desk",
      "Open the main menu on a stand-in receiver: on this terminal, where ? shows the keys, in a\n"
      "browser, or by a script.");
  CLI::Option* receiver = addReceiverOptions(*desk, options->receiver, "the receiver's directory");
  desk->add_option("--menu", options->menu, "the flavour of the main menu")
      ->check(CLI::IsMember({"backup", "restore"}))
      ->capture_default_str();
  CLI::Option* play =
      desk->add_option("--play", options->words, "the keys to press, in order, without a terminal")
          ->type_name("WORDS")
          ->check([](const std::string& script) {
            try {
              desk::parseWords(script);
              return std::string();
            } catch (const desk::UnknownWord& error) {
              return std::string(error.what());
            }
          });
  desk->add_option("--frames", options->frames, "how --play prints frames")
      ->check(CLI::IsMember({"text", "json"}))
      ->capture_default_str()
      ->needs(play);
  CLI::Option* pictures =
      desk->add_option(
              "--pictures", options->pictures,
              "write every frame into this directory as the television would show it, in SVG")
          ->type_name("DIR")
          ->needs(play);
  CLI::Option* web =
      desk->add_option("--web", options->port,
                       "open the menu in a browser: print the address of a page on this port, on "
                       "any free one without PORT")
          ->type_name("[PORT]")
          ->expected(0, 1)
          ->check(CLI::Range(0, 65535))
          ->excludes(play);
  desk->add_option("--translations", options->translations,
                   "show the module's texts in another language, by a catalogue of msgfmt")
      ->type_name("FILE.mo");
  CLI::Option* skin = desk->add_option("--skin", options->skin, "the skin of --web and --pictures")
                          ->type_name("FILE");
  desk->add_option("--theme", options->theme, "the colours of the terminal")
      ->check(CLI::IsMember({"plain", "dark", "light"}))
      ->excludes(play)
      ->excludes(web);
  desk->add_option("--record", options->record,
                   "append every frame on the terminal to this file, as JSON")
      ->type_name("FILE")
      ->excludes(play)
      ->excludes(web);
  desk->add_option("--log", options->log, "append the module's log lines to this file")
      ->type_name("FILE");
  desk->add_option("--trace", options->trace, "append every shell command to this file")
      ->type_name("FILE");
  desk->callback([=] {
    require({receiver});
    if (skin->count() > 0 && web->count() + pictures->count() == 0) {
      throw CLI::RequiresError("--skin", "--web or --pictures");
    }
    options->front_end = play->count() > 0  ? FrontEnd::script
                         : web->count() > 0 ? FrontEnd::browser
                                            : FrontEnd::terminal;
    runDesk(*options);
  });
}
#else
void addReceiverOptions(CLI::App& /*command*/, TreeOptions& /*receiver*/) {}
#endif

void addAuto(CLI::App& stowline) {
  const auto options =
      std::make_shared<AutoOptions>(AutoOptions{.receiver = {}, .jobs = scheduled::jobNames()});
  CLI::App* scheduled = stowline.add_subcommand(
      "auto",
      "Write a scheduled backup, read it again, and delete the oldest ones only when all is well.");
  addReceiverOptions(*scheduled, options->receiver);
  scheduled->add_option("--jobs", options->jobs, "what to back up")
      ->delimiter(',')
      ->check(CLI::IsMember(scheduled::jobNames()))
      ->capture_default_str();
  scheduled->add_flag("--json", options->json, "print JSON");
  scheduled->add_flag("--quiet", options->quiet, "print nothing but what has failed");
  scheduled->callback([=] { runAuto(*options); });
}

void addDoctor(CLI::App& stowline) {
  const auto options = std::make_shared<DoctorOptions>();
  CLI::App* doctor = stowline.add_subcommand(
      "doctor", "Look whether a receiver can back itself up and be restored.");
  addReceiverOptions(*doctor, options->receiver);
  doctor->add_flag("--json", options->json, "print JSON");
  doctor->add_flag("--quiet", options->quiet, "print only what is not well");
  doctor->callback([=] { runDoctor(*options); });
}

void addList(CLI::App& stowline) {
  const auto options = std::make_shared<ListOptions>();
  CLI::App* list = stowline.add_subcommand(
      "list", "List the backups on a medium, and what a receiver's restore list makes of them.");
  CLI::Option* medium =
      list->add_option("MEDIUM", options->medium, "the medium's directory, such as /media/hdd");
  list->add_option(
      "--model", options->model,
      "the receiver's model; by default that of the receiver this runs on, if it is one");
  list->add_flag("--json", options->json, "print JSON");
  list->callback([=] {
    require({medium});
    runList(*options);
  });
}

void addShow(CLI::App& stowline) {
  const auto options = std::make_shared<ShowOptions>();
  CLI::App* show = stowline.add_subcommand(
      "show", "Show what an archive holds, and what a restore of it would do on a receiver.");
  CLI::Option* file = show->add_option("FILE", options->file, "the archive");
  CLI::Option* against =
      show->add_option(
              "--against", options->receiver,
              "the directory of the receiver's files, \"/\" on a receiver; it is only read")
          ->type_name("DIR");
  show->add_flag("--diff", options->diff, "show the differences of text files, too")
      ->needs(against);
  show->add_flag("--json", options->json, "print JSON");
  show->add_flag("--quiet", options->quiet, "show no progress");
  show->callback([=] {
    require({file});
    runShow(*options);
  });
}

void addVerify(CLI::App& stowline) {
  const auto options = std::make_shared<VerifyOptions>();
  CLI::App* verify = stowline.add_subcommand(
      "verify", "Read backups to their end and say whether they can be restored without harm.");
  CLI::Option* files = verify->add_option("FILE", options->files, "the backups");
  verify->add_flag("--json", options->json, "print JSON");
  verify->add_flag("--quiet", options->quiet, "print only what is not sound, and no progress");
  verify->callback([=] {
    require({files});
    runVerify(*options);
  });
}

void addCompletion(CLI::App& stowline) {
  const auto shell = std::make_shared<std::string>();
  CLI::App* completion = stowline.add_subcommand(
      "completion", "Print what completes this command's words in a shell, to be sourced there.");
  CLI::Option* option =
      completion->add_option("SHELL", *shell, "the shell")->check(CLI::IsMember({"bash", "zsh"}));
  completion->callback([=, &stowline] {
    require({option});
    printCompletion(stowline, *shell);
  });
}

}  // namespace

void addCommands(CLI::App& stowline) {
#ifdef STOWLINE_STAND_IN
  addReceiver(stowline);
  addDesk(stowline);
#endif
  addAuto(stowline);
  addDoctor(stowline);
  addList(stowline);
  addShow(stowline);
  addVerify(stowline);
  addCompletion(stowline);
}

}  // namespace command
