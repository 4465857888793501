#include <unordered_map>

#include "bind/elements.hpp"
#include "live/Settings.hpp"

namespace service::util::config::live {

using namespace bind::internal;

namespace {

void keep(const Description& description, const void* now, void* next, bool isAll);

void keepSection(const Row& row, const void* now, void* next, bool isAll) {
  const Holder& holder = *row.member.holder;
  if (holder.shape == Holder::PLAIN) return keep(row.below(), now, next, isAll);
  const void* from = holder.value(now);
  if (isAll && from == nullptr) return holder.clear(next);
  void* to = isAll ? holder.engage(next) : const_cast<void*>(holder.value(next));
  if (from != nullptr && to != nullptr) keep(row.below(), from, to, isAll);
}

void copySections(const Row& row, const void* now, void* next) {
  row.member.holder->clear(next);
  const auto copy = [&](const void* from) {
    const auto fill = [&](void* to) {
      keep(row.below(), from, to, true);
      return row.isKeyed ? row.key().in(to) : nullptr;
    };
    Filling filling(fill);
    row.member.holder->append(next, filling);
  };
  Viewing viewing(copy);
  row.member.holder->each(now, viewing);
}

// Elements are the same by their key, or else by their place.
void keepSections(const Row& row, const void* now, void* next) {
  std::unordered_map<std::string, const void*> known;
  const auto nameOf = [&](const void* element, std::size_t index) {
    return row.isKeyed ? keyOf(row, element) : std::to_string(index);
  };
  std::size_t index = 0;
  const auto note = [&](const void* element) { known.emplace(nameOf(element, index++), element); };
  Viewing noting(note);
  row.member.holder->each(now, noting);
  index = 0;
  const auto keepOne = [&](const void* element) {
    const auto same = known.find(nameOf(element, index++));
    if (same == known.end()) return;
    keep(row.below(), same->second, const_cast<void*>(element), false);
  };
  Viewing keeping(keepOne);
  row.member.holder->each(next, keeping);
}

void keep(const Description& description, const void* now, void* next, bool isAll) {
  for (const auto& row : description.rows) {
    const bool isKept = isAll || row->isForStart;
    const void* from = row->in(now);
    void* to = row->in(next);
    if (row->form == Holder::SECTION) {
      keepSection(*row, from, to, isKept);
    } else if (!isKept && row->form == Holder::SECTIONS) {
      keepSections(*row, from, to);
    } else if (isKept && row->form == Holder::SECTIONS) {
      copySections(*row, from, to);
    } else if (isKept) {
      row->member.holder->assign(to, from);
    }
  }
}

}  // namespace

void keepForStart(const Description& description, const void* now, void* next) {
  keep(description, now, next, false);
}

}  // namespace service::util::config::live
