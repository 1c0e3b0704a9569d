#include "realtek/daemon.h"

#include "util/console_trace.h"
#include "util/debug_level.h"
#include "util/program.h"

void start_daemon(wext& radio, const daemon_commands& commands) {
    const bool foreground = (static_cast<unsigned int>(radio.debug_level) & debug_mask) != 0;
    const char* command = foreground ? commands.foreground : commands.background;
    radio.console = open_console();
    trace(radio.console, radio.debug_flag, "%s", command);
    run_program(command);
}
