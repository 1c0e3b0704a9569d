// SPDX-License-Identifier: MIT
// What becomes of a file that is to be started: whether the loader puts libvcamera.so between the
// program and libc. Nothing here allocates, as programs are also started between vfork() and exec.

#pragma once

#include <climits>

struct program_file {
    char path[PATH_MAX]; // what the kernel starts: the file, or the interpreter that its #! line
                         // names
    bool is_interpreter;
    int error; // with which the kernel refuses it, or 0
    const char*
        obstacle; // what keeps the library out of it, following "it "; null when nothing does
};

void examine_program(const char* path, program_file& result);

/// Finds a program as execvp() does: a name without a slash in the folders of PATH.
/// @return whether it was found; errno says why not.
bool find_program(const char* name, char (&path)[PATH_MAX]);

/// Prints why a program is not started, in one line.
void print_obstacle(const char* name, const program_file& file);

/// @return the path of the loader that runs this process.
const char* loader();
