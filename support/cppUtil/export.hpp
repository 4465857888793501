// The mark of what the library's headers promise: everything else stays inside the shared object.
#ifndef CPPUTIL_EXPORT_HPP
#define CPPUTIL_EXPORT_HPP

#define ZU_EXPORT __attribute__((visibility("default")))

#endif
