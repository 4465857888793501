// zuconfig dump: the whole configuration for programs.
#include <iostream>
#include <optional>

#include "commands/Command.hpp"
#include "shared/Loader.hpp"
#include "shared/Secrets.hpp"
#include "shared/text.hpp"
#include "shared/writers.hpp"
#include "write/writeXml.hpp"

namespace zuconfig {

namespace {

// The name that a dump of file gives itself, whatever bytes are in that of the file.
std::string rootName(const std::string& file) {
  if (file == "-") return "stdin";
  const std::string base = printable(file.substr(file.rfind('/') + 1));
  const std::size_t dot = base.rfind('.');
  return validUtf8(dot == 0 ? base : base.substr(0, dot));
}

struct Dump {
  static constexpr const char* name = "dump";
  static constexpr const char* summary = "Print everything for other programs";

  void define(CLI::App& command) {
    load.define(command);
    programs.define(command);
    command.add_option("--format", format, "xml, json, paths (the default) or sh")
        ->type_name("FORMAT")
        ->check(CLI::IsMember({"xml", "json", "paths", "sh"}));
    command.add_option("--prefix", prefix, "Start of the variables of sh; config_ by default")
        ->type_name("PREFIX");
    command.add_flag("-0,--null", isNull,
                     "With paths: end each entry with a zero byte, and its selector with a line "
                     "break; nothing is escaped");
    defineFile(command, file);
  }

  ExitCode run() const {
    if (isNull && format != "paths") throw Failure(USAGE, "-0 goes with --format paths only");
    if (prefix && format != "sh") throw Failure(USAGE, "--prefix goes with --format sh only");
    Loader loader(load);
    const IConfigPtr config = loadMasked(loader, programs, file);
    if (format == "xml") {
      service::util::config::write::writeXml(std::cout, config, rootName(file));
    } else if (format == "json") {
      writeJson(std::cout, config);
    } else if (format == "sh") {
      writeShell(std::cout, config, prefix.value_or("config_"));
    } else {
      writePaths(std::cout, config, isNull);
    }
    return FINE;
  }

 private:
  LoadOptions load;
  ProgramOptions programs;
  std::string format = "paths";
  std::optional<std::string> prefix;
  bool isNull = false;
  std::string file;
};

}  // namespace

void addDump(CLI::App& app, Chosen& chosen) {
  addCommand<Dump>(app, chosen);
}

}  // namespace zuconfig
