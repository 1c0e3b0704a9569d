// SPDX-License-Identifier: MIT
// Being asked to end in the midst of a request.

#pragma once

/// From here on the signals that would end the command (SIGHUP, SIGINT, SIGQUIT, SIGTERM) ask it
/// to, so that what was started can be stopped.
void take_ending_signals();

/// They end a process again, as they do by default: for a child.
void release_ending_signals();

bool asked_to_end();

/// Becomes readable when the command is asked to end.
int ending_descriptor();

/// Waits, less when the command is asked to end.
void pause_ms(int milliseconds);
