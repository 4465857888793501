// The mark of what the library's headers promise: everything else stays inside the shared object,
// and so do the private operations of exported classes.
#ifndef CPPUTIL_EXPORT_HPP
#define CPPUTIL_EXPORT_HPP

// Of a class, or of a function outside of one: the library exports it.
#define ZU_EXPORT __attribute__((visibility("default")))
// Of a private operation in an exported class: the library keeps it to itself.
#define ZU_NO_EXPORT __attribute__((visibility("hidden")))

#endif
