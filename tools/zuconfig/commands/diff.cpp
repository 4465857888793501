// zuconfig diff: what two effective configurations do not have in common, by selector.
#include <iostream>

#include "commands/Command.hpp"
#include "shared/Comparison.hpp"
#include "shared/Loader.hpp"
#include "shared/Secrets.hpp"
#include "shared/SideWriter.hpp"

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
                    const SideWriter& writer)
      : files(files), secrets(secrets), a(a), b(b), writer(writer) {}

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
    if (!isDifferent && !writer.isNull) {
      std::cout << writer.colours.bold << "--- " << a.file << "\n+++ " << b.file
                << writer.colours.off << "\n";
    }
    isDifferent = true;
    writer.start(selector);
  }

  void print(char sign, const std::string& selector, const std::string& value,
             const Origins::Origin& origin) const {
    writer.write(sign, selector, value, files.shown(origin));
  }

  const FileNames& files;
  const Secrets& secrets;
  const Side& a;
  const Side& b;
  const SideWriter& writer;
};

struct Diff {
  static constexpr const char* name = "diff";
  static constexpr const char* summary = "Print what differs between two configurations";

  void define(CLI::App& command) {
    load.define(command);
    programs.define(command);
    writer.define(command);
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
    DifferencePrinter printer(loader.getNames(), secrets, a, b, writer);
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
  SideWriter writer;
  std::string fileA;
  std::string fileB;
};

}  // namespace

void addDiff(CLI::App& app, Chosen& chosen) {
  addCommand<Diff>(app, chosen);
}

}  // namespace zuconfig
