// The translation boundary: whatever a guarded step throws leaves it as cppUtil::err::Exception.
//
// An Exception passes unchanged; a std::exception becomes code 6 with its what() as the message, a
// C string code 7 with that text, anything else code 7 without a message. Hidden.
#ifndef CPPUTIL_ERR_GUARDED_HPP
#define CPPUTIL_ERR_GUARDED_HPP

namespace cppUtil::err {

// Where a guard stands; translated exceptions carry this place.
struct Place {
  const char* file;
  const char* function;
  int line;
};

// Translates the exception being handled; to be called in a handler only.
[[noreturn]] void rethrowTranslated(const Place& place);

// Runs step and answers with its result.
template <class Step>
decltype(auto) guarded(const Place& place, const Step& step) {
  try {
    return step();
  } catch (...) {
    rethrowTranslated(place);
  }
}

// Guards the steps of one function, each with the line that it is called at as its place.
class Guard {
 public:
  constexpr Guard(const char* sourceFile, const char* signature)
      : file(sourceFile), function(signature) {}

  template <class Step>
  decltype(auto) operator()(const Step& step, int line = __builtin_LINE()) const {
    return guarded({file, function, line}, step);
  }

 private:
  const char* file;
  const char* function;
};

}  // namespace cppUtil::err

#endif
