#pragma once

/// Runs a command line of the camera's system image through the shell and waits for it.
/// @return the status of system(); most callers go on whatever the program answered.
int run_program(const char* command_line);
