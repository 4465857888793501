// zuconfig schema: the grammar of all configuration files, or what is made of the settings of one
// program, for editors, manuals and those who write its files.
#include <iostream>

#include "commands/Command.hpp"
#include "schema/formats.hpp"
#include "service/util/config/grammar/getGrammar.hpp"
#include "shared/Programs.hpp"
#include "shared/text.hpp"

namespace zuconfig {

namespace {

struct Schema {
  static constexpr const char* name = "schema";
  static constexpr const char* summary =
      "Print the grammar of configuration files, or what a program's may hold";

  void define(CLI::App& command) {
    auto* program = command.add_option(
        "--for", options.programs,
        "Print what holds for a program: its name, or the file that describes its settings");
    command
        .add_option(
            "--as", format,
            "rng: a RELAX NG grammar; md: a table in Markdown; man: a manual page; example: "
            "a file with all settings")
        ->check(CLI::IsMember({"rng", "md", "man", "example"}))
        ->needs(program)
        ->type_name("FORMAT");
    command
        .add_option("--at", at, "With rng and example: for files that are included in this section")
        ->needs(program)
        ->type_name("PATH");
    program->expected(1)->type_name("PROGRAM");
  }

  ExitCode run() const {
    if (options.programs.empty()) {
      const std::vector<char> grammar = service::util::config::grammar::getGrammar();
      std::cout.write(grammar.data(), static_cast<std::streamsize>(grammar.size())) << "\n";
      return FINE;
    }
    const Programs programs(options);
    const Program& program = programs.get().front();
    return write(Outline(program.settings), program.name);
  }

 private:
  ExitCode write(const Outline& outline, const std::string& program) const {
    const Entry& section = outline.section(at);
    if (!at.empty() && (format == "md" || format == "man")) {
      throw Failure(USAGE, "--at is for --as rng and --as example");
    }
    if (format == "md") {
      writeMarkdown(std::cout, outline, program);
    } else if (format == "man") {
      writeManual(std::cout, outline, program);
    } else if (format == "example") {
      for (const std::string& path : writeExample(std::cout, outline, section, program)) {
        std::cerr << "zuconfig: " << printable(path)
                  << " is required, and its program tells no example: fill it in\n";
      }
    } else {
      writeRelaxNg(std::cout, outline, section);
    }
    return FINE;
  }

  ProgramOptions options;
  std::string format = "rng";
  std::string at;
};

}  // namespace

void addSchema(CLI::App& app, Chosen& chosen) {
  addCommand<Schema>(app, chosen);
}

}  // namespace zuconfig
