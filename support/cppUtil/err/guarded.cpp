#include "cppUtil/err/guarded.hpp"

#include <cutil/cutil.h>

#include "cppUtil/err/Exception.hpp"

namespace cppUtil::err {

namespace {

Exception translated(cu_GenericCode code, const Place& place) {
  return Exception(code, 0, place.file, place.function, place.line, "");
}

}  // namespace

void rethrowTranslated(const Place& place) {
  try {
    throw;
  } catch (const Exception&) {
    throw;
  } catch (const std::exception& e) {
    throw translated(CU_EXCEPTION, place) << e.what();
  } catch (const char* text) {
    throw translated(CU_UNKNOWN_EXCEPTION, place) << text;
  } catch (...) {
    throw translated(CU_UNKNOWN_EXCEPTION, place);
  }
}

}  // namespace cppUtil::err
