// SPDX-License-Identifier: MIT
// The commands of wlanctl.

#pragma once

/// @file
/// The commands, one file each. Every one adds itself to the command line; when it is the one that
/// was asked for, it fills `result` or throws: CLI::ParseError for wrong usage, `failure`
/// otherwise.

#include "answer.h"

namespace CLI {
class App;
}

void add_adapter_command(CLI::App& wlanctl, answer& result);
void add_bbp_command(CLI::App& wlanctl, answer& result);
void add_doctor_command(CLI::App& wlanctl, answer& result);
void add_mode_commands(CLI::App& wlanctl, answer& result);
void add_status_command(CLI::App& wlanctl, answer& result);
void add_store_command(CLI::App& wlanctl, answer& result);
void add_survey_command(CLI::App& wlanctl, answer& result);
void add_watch_command(CLI::App& wlanctl, answer& result);
void add_wps_command(CLI::App& wlanctl, answer& result);
