// The calling thread's stack as readable texts, with C++ names demangled.
//
// Part of the support layer; every cppUtil::err::Exception carries one. A trace has no lock: it
// belongs to one thread at a time. Taking one is safe on any thread.
#ifndef CPPUTIL_ERR_STACKTRACE_HPP
#define CPPUTIL_ERR_STACKTRACE_HPP

#include <string>
#include <vector>

#include "cppUtil/export.hpp"

namespace cppUtil::err {

class ZU_EXPORT StackTrace {
 public:
  // Walks the current stack and appends at most depth frame texts, innermost first; frames that the
  // trace already holds stay in front. The first one appended is the function that called getTrace.
  // A frame reads "module(name+offset) [address]"; where the platform knows no symbol, its text is
  // kept as it is. Throws std::bad_alloc only.
  void getTrace(unsigned int depth);

  // The frames, innermost first. The reference lives as long as the trace.
  const std::vector<std::string>& getFrames() const { return frames; }

 private:
  std::vector<std::string> frames;
};

}  // namespace cppUtil::err

#endif
