// The mark of what the library's headers promise: everything else stays inside the shared object,
// and so do the private operations of exported classes.
#ifndef CPPUTIL_EXPORT_HPP
#define CPPUTIL_EXPORT_HPP

#define ZU_EXPORT __attribute__((visibility("default")))
#define ZU_NO_EXPORT __attribute__((visibility("hidden")))

#endif
