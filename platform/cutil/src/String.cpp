#include "String.hpp"

#include <memory>

#include "Call.hpp"

namespace {

using cutil::Call;
using cutil::guarded;

constexpr const char* unit = "platform/cutil/String";

}  // namespace

uint32_t cu_String_new(cu_String** text, size_t capacity) {
  const Call call(unit, __func__);
  return guarded(call, [&] {
    if (text == nullptr) return call.missing("text");
    auto created = std::make_unique<cu_String>();
    created->value.reserve(capacity);
    *text = created.release();
    return cutil::success;
  });
}

const char* cu_String_get(const cu_String* text) {
  return text == nullptr ? "" : text->value.c_str();
}

uint32_t cu_String_set(cu_String* text, const char* value) {
  const Call call(unit, __func__);
  return guarded(call, [&] {
    if (text == nullptr) return call.missing("text");
    if (value == nullptr) return call.missing("value");
    text->value = value;
    return cutil::success;
  });
}

uint32_t cu_String_delete(cu_String** text) {
  const Call call(unit, __func__);
  return guarded(call, [&] {
    if (text == nullptr) return call.missing("text");
    if (*text == nullptr) return call.missing("*text");
    delete *text;
    *text = nullptr;
    return cutil::success;
  });
}
