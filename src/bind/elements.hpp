// Fillers and viewers of containers that do what they are made of.
#ifndef SRC_BIND_ELEMENTS_HPP
#define SRC_BIND_ELEMENTS_HPP

#include "service/util/config/bind/tables.hpp"

namespace service::util::config::bind::internal {

template <class Fill>
class Filling final : public Filler {
 public:
  explicit Filling(const Fill& doFill) : doFill(doFill) {}
  const void* fill(void* element) override { return doFill(element); }

 private:
  const Fill& doFill;
};

template <class View>
class Viewing final : public Viewer {
 public:
  explicit Viewing(const View& doView) : doView(doView) {}
  void view(const void* element) override { doView(element); }

 private:
  const View& doView;
};

}  // namespace service::util::config::bind::internal

#endif
