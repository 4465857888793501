#include "shared/SideWriter.hpp"

#include <CLI/CLI.hpp>
#include <iostream>

namespace zuconfig {

void SideWriter::define(CLI::App& command) {
  command.add_flag("-0,--null", isNull,
                   "Print records for scripts: sign, selector, line break, value, zero byte");
}

void SideWriter::start(const std::string& selector) const {
  if (!isNull) std::cout << selector << "\n";
}

void SideWriter::write(char sign, const std::string& selector, const std::string& value,
                       const std::string& place) const {
  if (isNull) {
    std::cout << sign << selector << '\n' << value << '\0';
    return;
  }
  std::cout << (sign == '-' ? colours.bad : colours.good) << sign << " "
            << (value.empty() ? "section" : escaped(value)) << colours.off << "  " << colours.dim
            << "(" << place << ")" << colours.off << "\n";
}

}  // namespace zuconfig
