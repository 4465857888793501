#include "bind/Description.hpp"

#include <algorithm>
#include <iterator>

#include "bind/Reported.hpp"
#include "service/util/config/bind/internal/survey.hpp"

namespace service::util::config::bind {

namespace internal {

namespace {

// The bound or unit as a number of the setting's kind; nothing when it is of another kind.
std::optional<Number> inKind(const Limit& limit, const ValueRules& rules) {
  Number number = Number::whole(limit.isNegative, limit.magnitude);
  if (limit.isFloating) number = Number::floatingOf(limit.floating);
  if (rules.isFloating && !number.isFloating) {
    const auto magnitude = static_cast<long double>(number.magnitude);
    number = Number::floatingOf(number.isNegative ? -magnitude : magnitude);
  }
  if (number.isFloating != rules.isFloating) return std::nullopt;
  switch (rules.kind) {
    case Kind::INTEGER:
    case Kind::FLOATING:
      return limit.unit == Limit::NONE ? std::make_optional(number) : std::nullopt;
    case Kind::DURATION:
      if (limit.unit != Limit::TIME) return std::nullopt;
      return inUnit(rules, number, {"", limit.numerator, limit.denominator});
    case Kind::BYTES:
      return limit.unit == Limit::SIZE ? std::make_optional(number) : std::nullopt;
    default:
      return std::nullopt;
  }
}

template <class List>
void sortByName(List& list) {
  std::sort(list.begin(), list.end(), [](const auto& a, const auto& b) { return a.name < b.name; });
}

}  // namespace

const Description& Row::below() const {
  return stored != nullptr ? *stored : member.holder->structure->fields().get();
}

const Row& Row::key() const {
  const auto& rows = below().rows;
  const auto isKey = [&](const auto& row) {
    if (!row->isSetting()) return false;
    return stored != nullptr ? row->name == described->key : row->member.offset == keyMember.offset;
  };
  return **std::find_if(rows.begin(), rows.end(), isKey);
}

void Description::index() {
  for (std::size_t i = 0; i < rows.size(); ++i) {
    auto& names = rows[i]->isSetting() ? settings : sections;
    names.push_back({rows[i]->name, i, false});
    for (const std::string& former : rows[i]->formerNames) names.push_back({former, i, true});
  }
  sortByName(settings);
  sortByName(sections);
  ranks.resize(rows.size());
  std::uint32_t rank = 0;
  for (const auto* names : {&settings, &sections}) {
    for (const Name& name : *names) {
      if (!name.isFormer) ranks[name.row] = rank++;
    }
  }
}

const Description::Name* Description::find(bool isSetting, const std::string& name) const {
  const auto& list = isSetting ? settings : sections;
  const auto found = std::lower_bound(
      list.begin(), list.end(), name,
      [](const Name& entry, const std::string& wanted) { return entry.name < wanted; });
  return found == list.end() || found->name != name ? nullptr : &*found;
}

std::vector<std::string> Description::names() const {
  std::vector<std::string> names;
  for (const auto& row : rows) names.push_back(row->name);
  return names;
}

}  // namespace internal

using internal::Limit;
using internal::Row;

namespace {

// Every Field is made as one.
Row& rowOf(Field& field) {
  return static_cast<Row&>(field);
}

}  // namespace

Field& Field::make(const char* name, std::uint32_t offset, const internal::Holder& holder,
                   const std::type_info& owner) {
  const auto row = std::make_shared<Row>();
  row->form = holder.form;
  row->name = name;
  row->member = {offset, &holder, &owner};
  row->isOptional = holder.shape == internal::Holder::OPTIONAL;
  if (holder.type != nullptr) row->value = internal::ValueRules(*holder.type);
  row->unclaimed = row;
  return *row;
}

Field& Field::required() {
  rowOf(*this).isRequired = true;
  return *this;
}

Field& Field::about(const char* text) {
  rowOf(*this).text = text;
  return *this;
}

Field& Field::range(int least, int greatest) {
  return limits(Limit::of(least), Limit::of(greatest));
}

Field& Field::limits(const Limit& least, const Limit& greatest) {
  Row& row = rowOf(*this);
  row.value.least = internal::inKind(least, row.value);
  row.value.greatest = internal::inKind(greatest, row.value);
  if (!row.value.least || !row.value.greatest) {
    row.value.least.reset();
    row.value.greatest.reset();
    row.faults.emplace_back("its type and its range do not go together");
  } else if (*row.value.greatest < *row.value.least) {
    row.faults.emplace_back("no value is in its range");
  }
  return *this;
}

Field& Field::formerly(const char* name) {
  rowOf(*this).formerNames.emplace_back(name);
  return *this;
}

Field& Field::needsRestart() {
  rowOf(*this).isForStart = true;
  return *this;
}

Field& Field::env(const char* variable) {
  rowOf(*this).variable = variable;
  return *this;
}

Field& Field::bare(const Limit& unit) {
  Row& row = rowOf(*this);
  const bool isTime = unit.unit == Limit::TIME;
  std::optional<internal::Unit> one;
  if (row.value.hasUnit() && !unit.isFloating && !unit.isNegative && unit.magnitude > 0 &&
      unit.magnitude <= INT32_MAX && isTime == (row.value.kind == internal::Kind::DURATION)) {
    one = internal::multiple(static_cast<std::int64_t>(unit.magnitude),
                             {"", unit.numerator, unit.denominator});
  }
  if (one && internal::printUnit(row.value, *one)) {
    row.value.bareUnit = one;
  } else {
    row.faults.emplace_back("its type and its bare unit do not go together");
  }
  return *this;
}

Field& Field::example(const char* text) {
  rowOf(*this).sample = text;
  return *this;
}

Field& Field::count(std::uint32_t least, std::uint32_t most) {
  Row& row = rowOf(*this);
  if (!row.isSeveral()) row.faults.emplace_back("only a list or sections have a count");
  if (least > most) row.faults.emplace_back("no count is in its range");
  row.least = least;
  row.most = most;
  return *this;
}

Field& Field::keyed(std::uint32_t offset, const std::type_info& type, const std::type_info& owner) {
  rowOf(*this).isKeyed = true;
  rowOf(*this).keyMember = {offset, &type, &owner};
  return *this;
}

Field& Field::open() {
  rowOf(*this).isOpen = true;
  return *this;
}

Fields::Fields(std::initializer_list<internal::FieldHandle> fields)
    : description(std::make_shared<internal::Description>()) {
  for (const internal::FieldHandle& handle : fields) {
    const auto row = rowOf(*handle.field).shared_from_this();
    row->unclaimed.reset();
    description->rows.push_back(row);
  }
  description->index();
}

Fields::Fields(const Fields&) = default;
Fields& Fields::operator=(const Fields&) = default;
Fields::~Fields() = default;

Fields& Fields::open() {
  description->isOpen = true;
  return *this;
}

Fields& Fields::envPrefix(const char* prefix) {
  description->variablePrefix = prefix;
  return *this;
}

Fields& Fields::addCheck(const std::type_info& type, std::shared_ptr<const void> check,
                         void (*run)(const void* check, const void* object, Report& report)) {
  description->checks.push_back({&type, std::move(check), run});
  return *this;
}

}  // namespace service::util::config::bind
