// Settings that follow their files while the program runs.
//
//   Live<Gateway> live("gateway.xml", {}, true);  // loads; throws as bind::read does
//   live.onChange<&Gateway::broker>([](const Broker& before, const Broker& after) { ... });
//   pollfd waited{live.fd(), POLLIN, 0};          // in the program's own loop
//   const Live<Gateway>::Result result = live.poll();
//
// A file that cannot be used changes nothing: what was in force stays, and poll tells why. Nothing
// happens outside of poll; there is no thread. docs/live.md tells the rest.
//
// Threads: a Live belongs to the thread that polls it, except for get, and for Readers, which other
// threads make and use. Each reading of the files is a load, and loads of a process must not
// overlap: see xml::create. The function that describes the struct must be known where Live is
// used.
#ifndef SERVICE_UTIL_CONFIG_LIVE_HPP
#define SERVICE_UTIL_CONFIG_LIVE_HPP

#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "service/util/config/live/Engine.hpp"

namespace service::util::config {

namespace live::internal {

template <class S>
std::shared_ptr<void> make() {
  return std::make_shared<S>();
}

// How the snapshots of a Live are held.
template <class S>
struct Kind {
  using Pointer = std::shared_ptr<const S>;
  using Argument = const S&;
  static Pointer of(const Snapshot& snapshot) {
    return std::static_pointer_cast<const S>(snapshot);
  }
  static Argument argument(const Snapshot& snapshot) {
    return *static_cast<const S*>(snapshot.get());
  }
  static constexpr Followed followed = {sizeof(Followed), &bind::internal::structOf<S>, make<S>};
};

template <>
struct Kind<IConfig> {
  using Pointer = IConfigPtr;
  using Argument = IConfigPtr;
  static Pointer of(const Snapshot& snapshot) {
    return std::static_pointer_cast<IConfig>(std::const_pointer_cast<void>(snapshot));
  }
  static Argument argument(const Snapshot& snapshot) { return of(snapshot); }
  static constexpr Followed followed = {sizeof(Followed), nullptr, nullptr};
};

// What Live and its Options take for a check, as the library holds it.
template <class S, class Function>
Check checkOf(Function check) {
  return [check = std::move(check)](const Snapshot& now, const Snapshot& next,
                                    std::vector<xml::Problem>& problems) {
    check(Kind<S>::argument(now), Kind<S>::argument(next), problems);
  };
}

}  // namespace live::internal

// S: a struct with a description (bind/Fields.hpp), or IConfig for the plain configuration, which
// nobody may change.
template <class S>
class Live {
  using Kind = live::internal::Kind<S>;

 public:
  using Pointer = typename Kind::Pointer;  // std::shared_ptr<const S>, or IConfigPtr

  // UNCHANGED: there is nothing to do. CHANGED: something else is in force now, or waits for a
  // restart. REFUSED: the files are another set than before and cannot be used.
  using Outcome = live::internal::Outcome;
  static constexpr Outcome UNCHANGED = Outcome::UNCHANGED;
  static constexpr Outcome CHANGED = Outcome::CHANGED;
  static constexpr Outcome REFUSED = Outcome::REFUSED;

  // A setting that is another one than before.
  using Change = live::Change;

  // problems: why the files are refused; otherwise what a reading warns of, and what the functions
  // that are told of changes have thrown. changes: what the files say otherwise than before.
  using Result = live::internal::Result;

  // What holds from the first load on. Each operation answers with the options themselves.
  class Options {
   public:
    // Keeps the texts that are in force in that file, with secrets, readable for the user of the
    // process alone. It is taken when the files cannot be used at the start.
    Options& keepLastGood(const std::string& path) {
      return set([&] { held.keepLastGood(path); });
    }

    // Settings of the command line. Not for IConfig.
    Options& overrides(const bind::Overrides& overrides) {
      static_assert(!std::is_same_v<S, IConfig>, "a plain configuration has no overrides");
      return set([&] { held.overrides(overrides); });
    }

    // As Live::onCheck; in the first load now and next are the same.
    template <class Function>
    Options& onCheck(Function check) {
      return set([&] { held.onCheck(live::internal::checkOf<S>(std::move(check))); });
    }

    // How often to look at the files without a sign that they changed: 5 s unless given. Throws
    // code 5 when it is not more than none.
    Options& slowPoll(std::chrono::nanoseconds time) {
      return set([&] { held.slowPoll(time); });
    }

    // For the library.
    const live::internal::Choices& get() const { return held; }

   private:
    template <class Set>
    Options& set(const Set& set) {
      set();
      return *this;
    }

    live::internal::Choices held;
  };

  // Loads file as xml::create does and binds it as bind::read does, and throws what they throw;
  // warnings are logged. Code 4 when the system has no descriptor left, 5 when the files do not
  // stop to change.
  Live(const std::string& file, const xml::SchemeList& schemes, bool validate)
      : Live(file, schemes, validate, Options()) {}
  Live(const std::string& file, const xml::SchemeList& schemes, bool validate,
       const Options& options)
      : engine(Kind::followed, file, schemes, validate, options.get()) {}
  Live(const Live&) = delete;
  Live& operator=(const Live&) = delete;

  // Becomes readable when poll should be called. It is the same all the time, and only to be waited
  // for.
  int fd() const { return engine.fd(); }

  // Reads the files when they have changed and come to rest, and does all that follows from that.
  // Does not wait. Throws std::bad_alloc only.
  Result poll() { return engine.poll(); }

  // What is in force, which never changes. Any thread.
  Pointer get() const { return Kind::of(engine.published()->get()); }

  // Why the files are not in force; empty when they are. Until the next poll.
  const std::vector<xml::Problem>& problems() const { return engine.problems(); }

  // The settings that are to change with a restart: before is in force, after in the files. Until
  // the next poll.
  const std::vector<Change>& needsRestart() const { return engine.needsRestart(); }

  // Of IConfig: where its values came from. Until the next poll.
  const xml::Origins& origins() const {
    static_assert(std::is_same_v<S, IConfig>, "only a plain configuration has origins");
    return engine.origins();
  }

  // check(const S& now, const S& next, std::vector<xml::Problem>& problems) looks at what will be
  // in force, and refuses it with a problem that is an error, or by an exception. Of IConfig it
  // gets IConfigPtrs. All checks are called, in the order in which they were given.
  template <class Function>
  void onCheck(Function check) {
    engine.onCheck(live::internal::checkOf<S>(std::move(check)));
  }

  // call(const M& before, const M& after) is called after a change of that member, a field of the
  // description of S, and not when its values are equal. Throws code 5 when it is no field.
  template <auto Member, class Function>
  void onChange(Function call) {
    using M = typename bind::internal::Member<decltype(Member)>::Type;
    constexpr M S::*member = Member;
    engine.onChange(bind::internal::offsetOf(member),
                    [call = std::move(call)](const live::internal::Snapshot& before,
                                             const live::internal::Snapshot& after) {
                      call(Kind::argument(before).*member, Kind::argument(after).*member);
                    });
  }

  // Of IConfig: call(const std::vector<Change>&) is called after every change.
  template <class Function>
  void onChange(Function call) {
    static_assert(std::is_same_v<S, IConfig>, "name the member: onChange<&S::member>");
    engine.onChange(std::function<void(const std::vector<Change>&)>(std::move(call)));
  }

  // What is in force, for a thread that asks often: costs a look at a counter. Belongs to one
  // thread, and may outlive the Live, whose last snapshot it then has.
  class Reader {
   public:
    // May be made on any thread while live exists.
    explicit Reader(const Live& live) : published(live.engine.published()) { renew(); }

    // Valid until the next call.
    const Pointer& get() {
      if (published->version.load(std::memory_order_acquire) != version) renew();
      return snapshot;
    }

   private:
    void renew() {
      version = published->version.load(std::memory_order_acquire);
      snapshot = Kind::of(published->get());
    }

    std::shared_ptr<const live::internal::Published> published;
    std::uint32_t version = 0;
    Pointer snapshot;
  };

 private:
  live::internal::Engine engine;
};

}  // namespace service::util::config

#endif
