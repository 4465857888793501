/*
 * The C utility library: error registry, error record, text objects, file names, search paths, log.
 *
 * It is the lowest layer; everything above reaches it through the adapters in support/. This header
 * is plain C. A library that replaces the bundled one keeps the rules below in the functions that
 * it supplies; platform/README.md lists those that it must.
 *
 *  1. A function that can fail returns 0 on success and otherwise an error code: the module number
 *     in bits 31..24, the number within the module in bits 23..0. The library's own codes are the
 *     generic ones, module 0 (enum cu_GenericCode).
 *  2. A call that fails fills the error record of the calling thread before it returns. The record
 *     stays as it is until the next failing call on that thread. Output arguments of a failed call
 *     are left untouched.
 *  3. Nothing is thrown across this interface. Running out of memory is CU_OUT_OF_MEMORY.
 *  4. Text arguments are NUL-terminated byte strings and are copied. A null pointer where text or a
 *     handle is needed is CU_MISSING_ARGUMENT, with a description that names the argument.
 *  5. Handles belong to the caller until the matching delete call, which sets the variable to null.
 *  6. Threads: the registry, the logger and search paths may be used by several threads at once;
 *     error records are per thread; a text object may be read by several threads while none changes
 *     it. Deleting a handle must not overlap with any other use of it.
 *  7. Processes: a child of fork may go on using all of it, whatever the other threads of its
 * parent did at that moment; only text objects that they were changing are lost to it.
 */
#ifndef CUTIL_CUTIL_H
#define CUTIL_CUTIL_H

#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>

#pragma GCC visibility push(default)
#ifdef __cplusplus
extern "C" {
#endif

/* ---- Error registry ------------------------------------------------------------------------- */

/* The codes of module 0, which every module may use. */
enum cu_GenericCode {
  CU_OK = 0,
  CU_MISSING_ARGUMENT = 1, /* an argument is missing or empty */
  CU_OUT_OF_MEMORY = 2,
  CU_FILE_NOT_FOUND = 3,
  CU_SYSTEM_FAILURE = 4,   /* an operating-system call failed; its error number is in the record */
  CU_INVALID_ARGUMENT = 5, /* an argument has a value that is not allowed */
  CU_EXCEPTION = 6,        /* a C++ standard exception was caught */
  CU_UNKNOWN_EXCEPTION = 7 /* any other C++ exception was caught */
};

/* Answers with a text about a code: never null, owned by the module, never freed. */
typedef const char* (*cu_ErrorText)(uint32_t code);

/* What a module tells the registry. All pointers must stay valid for the life of the process; both
 * functions take the full code, never return null and may be called from any thread. */
typedef struct cu_Resolver {
  const char* moduleName;      /* "serviceUtilConfig" for example */
  cu_ErrorText getName;        /* one word in capitals */
  cu_ErrorText getDescription; /* one line */
} cu_Resolver;

/* Registers the texts of a module, replacing what was registered for it before. localBits is the
 * number of low-order bits that hold the module-local number; only 24 is supported.
 * CU_INVALID_ARGUMENT: module is 0 or above 255, or localBits is not 24. CU_MISSING_ARGUMENT: one
 * of the resolver's pointers is null. May be called from static initialisers and destructors. */
uint32_t cu_SetResolver(uint32_t module, cu_Resolver resolver, uint32_t localBits);

/* Short name ("NOT_FOUND"), one-line description and module name of a code. Never null; a code that
 * nobody knows gets a text that says so. The text is owned by its module and is never freed. */
const char* cu_GetErrorName(uint32_t code);
const char* cu_GetErrorDescription(uint32_t code);
const char* cu_GetErrorModule(uint32_t code);

/* ---- Error record --------------------------------------------------------------------------- */

/* What is known of a failed call. */
typedef struct cu_ErrorLocation cu_ErrorLocation;

/* The record of the last failed call on this thread; never null, empty before the first failure.
 * It is owned by the library; it and the texts read from it are valid on this thread until the next
 * failing call. A long description is cut; a null location reads as an empty record. */
const cu_ErrorLocation* cu_getErrorLocation(void);
int cu_Error_getSystemErrorCode(const cu_ErrorLocation* location); /* errno value; 0 when none */
const char* cu_Error_getFileName(const cu_ErrorLocation* location);
const char* cu_Error_getFunctionName(const cu_ErrorLocation* location);
int cu_Error_getLineNumber(const cu_ErrorLocation* location);
const char* cu_Error_getDescription(const cu_ErrorLocation* location);

/* ---- Text objects --------------------------------------------------------------------------- */

/* A text that grows as needed, for functions that store text. */
typedef struct cu_String cu_String;

/* Creates an empty text object. capacity: bytes to reserve in advance, 0 for none. */
uint32_t cu_String_new(cu_String** text, size_t capacity);
/* The text, owned by the object, valid until it is changed or deleted; "" for a null handle. */
const char* cu_String_get(const cu_String* text);
/* Puts a copy of value in the place of the text. */
uint32_t cu_String_set(cu_String* text, const char* value);
/* Frees the object and sets *text to null. */
uint32_t cu_String_delete(cu_String** text);

/* ---- File names ----------------------------------------------------------------------------- */

/* Stores the directory part of fileName, as POSIX dirname gives it: "/a/b" -> "/a", "/a" -> "/",
 * "a/b/" -> "a", "a" -> ".", "" -> ".". */
uint32_t cu_Filename_getPath(const char* fileName, cu_String* path);

/* ---- Search paths --------------------------------------------------------------------------- */

/* An ordered list of directories. The empty directory stands for the current one at the time of a
 * look-up, as in PATH. Entries are kept as they were given, duplicates included. */
typedef struct cu_SearchPath cu_SearchPath;

/* Makes a path without entries. */
uint32_t cu_SearchPath_new(cu_SearchPath** path);
/* A path of its own with the entries that path has at this moment, which stay the same while they
 * are counted and read. */
uint32_t cu_SearchPath_copy(cu_SearchPath* path, cu_SearchPath** copy);
/* Frees the path and sets *path to null. */
uint32_t cu_SearchPath_delete(cu_SearchPath** path);

/* What a function that has no memory to make a path answers in its place: no path, but a handle
 * with which every call fails with CU_OUT_OF_MEMORY. Never null, always the same. */
cu_SearchPath* cu_SearchPath_outOfMemory(void);

/* Finds the first directory that holds a regular file called name that this process may read, and
 * stores the file's name in file: absolute (made so against the current directory), otherwise
 * exactly directory, "/" unless directory ends in one, and name, with no ".." collapsed and no link
 * resolved. A name with a directory part is joined to each entry; an absolute name is looked at by
 * itself; the empty name is not found. Links are followed; a directory, FIFO, socket or device is
 * no match. Not finding the file is no failure: *found is false and file is left untouched. */
uint32_t cu_SearchPath_find(cu_SearchPath* path, const char* name, bool* found, cu_String* file);

/* Inserts a directory at the front. Whoever prepends must remove the same directory later, also
 * when the prepend failed for want of memory: that remove then answers *removed = false and leaves
 * alone an equal entry that was on the path before. Clearing the path in between forgets this. */
uint32_t cu_SearchPath_prepend(cu_SearchPath* path, const char* directory);
/* Adds a directory at the end. */
uint32_t cu_SearchPath_append(cu_SearchPath* path, const char* directory);
/* Takes out the first entry that equals directory byte by byte, so that nested pairs of prepend and
 * remove balance; *removed tells whether one was taken out. Needs no memory. */
uint32_t cu_SearchPath_remove(cu_SearchPath* path, const char* directory, bool* removed);
/* Takes out all entries. */
uint32_t cu_SearchPath_clear(cu_SearchPath* path);
/* Stores the number of entries. */
uint32_t cu_SearchPath_count(cu_SearchPath* path, size_t* count);
/* Stores entry index, 0 being the front. CU_INVALID_ARGUMENT: index is not below the count. */
uint32_t cu_SearchPath_get(cu_SearchPath* path, size_t index, cu_String* directory);

/* ---- Log ------------------------------------------------------------------------------------ */

/* From what ends a program to what only its developers read. */
enum cu_LogLevel { CU_FATAL = 0, CU_ERROR = 1, CU_WARNING = 2, CU_INFO = 3, CU_DEBUG = 4 };

/* Receives each message that passes the threshold, on the thread that logs and as it was logged.
 * message is valid during the call only. It must not throw, and must not log or change the
 * callback: both then fail with CU_SYSTEM_FAILURE, EDEADLK. */
typedef void (*cu_LogCallback)(uint32_t level, const char* message, void* userData);

/* Writes a message when level is not above the threshold. By default it goes to standard error as
 * one line ("info: text\n"), safe from several threads, with control characters and those that turn
 * the direction of writing escaped ("\n", "\x1b", "\u202e"). Lines are written whole or not at all:
 * a message that standard error does not take is dropped. Where standard error never waits and
 * takes only the beginning of a line, the rest goes out before the next line. A reader that went
 * away raises no SIGPIPE: logging does not make a service fail. errno is left as it was, and the
 * thread is not cancelled meanwhile. CU_INVALID_ARGUMENT: level is above CU_DEBUG.
 * CU_SYSTEM_FAILURE: called by the callback. */
uint32_t cu_Logger_log(uint32_t level, const char* message);

/* The threshold: messages of a level above it are dropped. It starts as the value of the
 * environment variable ZU_LOG_LEVEL when that is a digit from 0 to 4, otherwise as CU_WARNING; the
 * variable is read on first use, and not at all by a program that has more rights than its caller
 * (setuid). CU_INVALID_ARGUMENT: level is above CU_DEBUG. */
uint32_t cu_Logger_setThreshold(uint32_t level);
uint32_t cu_Logger_getThreshold(void);

/* Installs a callback in the place of standard error; null puts standard error back. After it has
 * returned, the previous callback is running on no thread and will not be called again.
 * CU_SYSTEM_FAILURE: called by the callback. */
uint32_t cu_Logger_setCallback(cu_LogCallback callback, void* userData);

#ifdef __cplusplus
}
#endif
#pragma GCC visibility pop

#endif
