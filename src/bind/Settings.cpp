#include "service/util/config/bind/Settings.hpp"

#include <cutil/cutil.h>

#include <filesystem>

#include "bind/Findings.hpp"
#include "bind/Reader.hpp"
#include "bind/Store.hpp"
#include "cppUtil/err/Exception.hpp"
#include "cppUtil/internal/Character.hpp"
#include "cppUtil/internal/text.hpp"
#include "service/util/config/bind.hpp"
#include "service/util/config/xml/create.hpp"

namespace service::util::config::bind {

namespace {

using cppUtil::err::Exception;
using cppUtil::internal::Character;

constexpr const char* exportSignature =
    "std::string service::util::config::bind::Settings::toXml(const std::string&) const";
constexpr const char* loadSignature =
    "Settings service::util::config::bind::Settings::load(const std::string&)";

// As a document holds it.
std::string escapedXml(const std::string& text) {
  std::string escaped;
  for (std::size_t at = 0; at < text.size();) {
    const Character character(text.data() + at, text.size() - at);
    if (!character.isValid() || character.code == 0xFFFE || character.code == 0xFFFF) {
      throw Exception(CU_INVALID_ARGUMENT, 0, "src/bind", exportSignature, __LINE__,
                      "no document can hold " + cppUtil::internal::quoted(text));
    }
    switch (text[at]) {
      case '&':
        escaped += "&amp;";
        break;
      case '<':
        escaped += "&lt;";
        break;
      case '>':
        escaped += "&gt;";
        break;
      case '"':
        escaped += "&quot;";
        break;
      default:
        escaped.append(text, at, character.length);
    }
    at += character.length;
  }
  return escaped;
}

// The properties of what is described by row, which differ from those of a default one.
void write(std::string& xml, const internal::Description& description, const void* object,
           const void* initial, const std::string& indent) {
  for (const auto& row : description.rows) {
    if (!row->isSetting()) continue;
    const auto texts = internal::textsOf(*row, object);
    if (!row->isRequired && texts == internal::textsOf(*row, initial)) continue;
    for (const std::string& text : texts) {
      xml += indent + "<property name=\"" + row->name + "\">" + escapedXml(text) + "</property>\n";
    }
  }
}

}  // namespace

Settings Settings::of(const internal::Struct& type, const void* object) {
  internal::requireSound(type, object);
  const auto store = std::make_shared<internal::Store>();
  store->exported = internal::exportedFrom(type, object);
  internal::build(*store, [&](std::size_t number, const std::string& message) {
    throw Exception(CU_INVALID_ARGUMENT, 0, "src/bind", exportSignature, __LINE__,
                    store->exported.settings[number].path + ": " + message);
  });
  return Settings(store);
}

Settings Settings::load(const std::string& file) {
  xml::Origins origins;
  const IConfigPtr config = xml::create(std::filesystem::absolute(file), {}, false, origins);
  const auto store = std::make_shared<internal::Store>();
  const internal::Precedence precedence(&origins);
  internal::Findings findings(precedence);
  std::vector<xml::Problem> problems;
  if (auto exported = read<internal::Exported>(config, origins, problems); problems.empty()) {
    store->exported = std::move(*exported);
    internal::build(*store, [&](std::size_t number, const std::string& message) {
      const auto origin = origins.ofSection(config, "setting", static_cast<std::uint32_t>(number));
      const internal::Place place = {{origin.file->path, origin.line, origin.column}, origin.file};
      findings.add(xml::Severity::ERROR, "bad-description", store->exported.settings[number].path,
                   message, place);
    });
    findings.take(problems);
  }
  if (!problems.empty()) internal::refuse(problems, loadSignature);
  return Settings(store);
}

std::string Settings::toXml(const std::string& name) const {
  std::string xml =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<config xmlns=\"urn:zu:util:config\" name=\"" +
      escapedXml(name) + "\" version=\"1.0\">\n";
  const Fields form = describe(Is<internal::Exported>());
  const Fields settingForm = describe(Is<internal::Described>());
  const internal::Exported initial;
  write(xml, form.get(), &store->exported, &initial, "    ");
  const internal::Described initialSetting;
  for (const internal::Described& setting : store->exported.settings) {
    xml += "    <section name=\"setting\">\n";
    write(xml, settingForm.get(), &setting, &initialSetting, "        ");
    xml += "    </section>\n";
  }
  return xml + "</config>\n";
}

bool Settings::check(const IConfigPtr& config, const xml::Origins& origins,
                     const Overrides& overrides, std::vector<xml::Problem>& problems,
                     const Options& options) const {
  std::vector<internal::Survey> surveys;
  return internal::judge({*this}, config, origins, overrides, options, problems, surveys);
}

}  // namespace service::util::config::bind
