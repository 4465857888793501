// zuconfig diff: what two effective configurations do not have in common, by selector.
#include <iostream>

#include "commands/Command.hpp"
#include "shared/Comparison.hpp"
#include "shared/Loader.hpp"
#include "shared/Secrets.hpp"
#include "shared/text.hpp"

namespace zuconfig {

namespace {

struct Side {
  std::string file;
  IConfigPtr config;
  Origins origins;
};

class DifferencePrinter : public ComparisonVisitor {
 public:
  DifferencePrinter(const FileNames& files, const Secrets& secrets, const Side& a, const Side& b,
                    bool isNull)
      : files(files), secrets(secrets), a(a), b(b), isNull(isNull) {}

  void value(const Compared& at, const std::string& valueA, const std::string& valueB) override {
    if (at.inA != nullptr && at.inB != nullptr && valueA == valueB) return;
    start(at.path);
    if (at.inA != nullptr) {
      print('-', at.path, secrets.shown(at.inA, at.name, valueA),
            a.origins.of(at.inA, at.name, at.index));
    }
    if (at.inB != nullptr) {
      print('+', at.path, secrets.shown(at.inB, at.name, valueB),
            b.origins.of(at.inB, at.name, at.index));
    }
  }

  void enterSection(const Compared& at) override {
    if (at.inA != nullptr && at.inB != nullptr) return;
    const std::string selector = at.path + ".";
    start(selector);
    if (at.inA != nullptr) print('-', selector, "", a.origins.ofSection(at.inA, at.name, at.index));
    if (at.inB != nullptr) print('+', selector, "", b.origins.ofSection(at.inB, at.name, at.index));
  }

  bool isDifferent = false;

 private:
  void start(const std::string& selector) {
    if (!isDifferent && !isNull) {
      std::cout << colours.bold << "--- " << a.file << "\n+++ " << b.file << colours.off << "\n";
    }
    isDifferent = true;
    if (!isNull) std::cout << selector << "\n";
  }

  // A section has no value.
  void print(char sign, const std::string& selector, const std::string& value,
             const Origins::Origin& origin) const {
    if (isNull) {
      std::cout << sign << selector << '\n' << value << '\0';
      return;
    }
    std::cout << (sign == '-' ? colours.bad : colours.good) << sign << " "
              << (value.empty() ? "section" : escaped(value)) << colours.off << "  " << colours.dim
              << "(" << files.shown(origin) << ")" << colours.off << "\n";
  }

  const FileNames& files;
  const Secrets& secrets;
  const Side& a;
  const Side& b;
  const bool isNull;
  const Colours colours;
};

struct Diff {
  static constexpr const char* name = "diff";
  static constexpr const char* summary = "Print what differs between two configurations";

  void define(CLI::App& command) {
    load.define(command);
    programs.define(command);
    command.add_flag("-0,--null", isNull,
                     "Print records for scripts: sign, selector, line break, value, zero byte");
    command.add_option("A", fileA, "A configuration file; - is standard input")->required();
    command.add_option("B", fileB, "Another one")->required();
  }

  ExitCode run() const {
    Loader loader(load);
    const Programs judges(programs);
    Secrets secrets(judges, loader.getSources());
    Side a;
    Side b;
    read(loader, judges, secrets, fileA, a);
    read(loader, judges, secrets, fileB, b);
    DifferencePrinter printer(loader.getNames(), secrets, a, b, isNull);
    compare(a.config, b.config, printer);
    return printer.isDifferent ? NO : FINE;
  }

 private:
  static void read(Loader& loader, const Programs& judges, Secrets& secrets,
                   const std::string& file, Side& side) {
    side.file = shownArgument(file);
    side.config = loader.load(file, side.origins);
    secrets.add(judges.judge(side.config, side.origins), side.config, side.origins);
  }

  LoadOptions load;
  ProgramOptions programs;
  bool isNull = false;
  std::string fileA;
  std::string fileB;
};

}  // namespace

void addDiff(CLI::App& app, Chosen& chosen) {
  addCommand<Diff>(app, chosen);
}

}  // namespace zuconfig
