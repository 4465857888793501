/*
 * The locator library: the process-wide search path on which configuration files are found.
 *
 * It is plain C and stands on the C utility library. A library that replaces the bundled one must
 * supply the one function below; where the directories come from is its own choice.
 */
#ifndef LOCATOR_LOCATOR_H
#define LOCATOR_LOCATOR_H

#include <cutil/cutil.h>

#pragma GCC visibility push(default)
#ifdef __cplusplus
extern "C" {
#endif

/* The process-wide configuration search path. It is made on first use and lives as long as the
 * process; the caller never deletes it, and may read and change it with the cu_SearchPath calls
 * from any thread. Never null: without memory to make it, the answer is
 * cu_SearchPath_outOfMemory(), and a later call tries again.
 *
 * It starts as the directories in the environment variable ZU_CONFIG_PATH, separated by colons (an
 * empty part is the current directory), when that variable is set, be it to the empty text.
 * Otherwise it is the current directory, $XDG_CONFIG_HOME (by default $HOME/.config), each of
 * $XDG_CONFIG_DIRS (by default /etc/xdg), and /etc; relative XDG directories are ignored, and empty
 * XDG variables count as unset. Later changes of the environment have no effect.
 *
 * A program that has more rights than its caller (setuid) takes neither the environment nor the
 * current directory from it: its path starts as /etc/xdg and /etc. */
cu_SearchPath* getConfigLocator(void);

#ifdef __cplusplus
}
#endif
#pragma GCC visibility pop

#endif
