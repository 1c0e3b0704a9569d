// SPDX-License-Identifier: MIT
// What happens while a request is carried out.

#include "progress.h"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <string>

#include "diagnostics.h"
#include "escape.h"

namespace {

progress_form shown_as = progress_form::none;
bool on_terminal = false; // whether a line stands there

/// What a person reads. Where a field is named, its value follows the text.
constexpr struct sentence {
    const char* event;
    const char* text;
    const char* field;
    const char* rest;
} sentences[] = {
    {"waiting", "Waiting for another wlanctl, process ", "pid", " ..."},
    {"busy", "The driver is busy; trying again ...", nullptr, ""},
    {"scanning", "Listening for networks ...", nullptr, ""},
    {"heard", "Heard it on channel ", "channel", " ..."},
    {"configuring", "Setting the radio up ...", nullptr, ""},
    {"associating", "Joining ", "ssid", " ..."},
    {"associated", "Linked to ", "bssid", " ..."},
    {"attempt_failed", "That try failed: ", "reason", "; trying again ..."},
    {"address", "Waiting for an address ...", nullptr, ""},
    {"press", "Press the router's WPS button; waiting for up to ", "seconds", " s."},
    {"wps", "Press the router's WPS button. ", "status", ""},
    {"fallback", "Not joined. Starting the stored access point ...", nullptr, ""},
};

void print_sentence(const char* event, const answer& fields) {
    const auto* found =
        std::find_if(std::begin(sentences), std::end(sentences),
                     [event](const sentence& known) { return known.event == std::string(event); });
    if (found == std::end(sentences))
        return;
    const std::string value = found->field == nullptr ? "" : fields.at(found->field).cell();
    std::fprintf(diagnostics::messages(), "\r\033[K%s%s%s", found->text, value.c_str(),
                 found->rest);
    std::fflush(diagnostics::messages());
    on_terminal = true;
}

} // namespace

void show_progress(progress_form form) {
    shown_as = form;
}

progress_form shown_progress() {
    return shown_as;
}

bool tell_progress(const char* event, const answer& fields) {
    if (shown_as == progress_form::none)
        return true;
    answer line = {{"event", event}};
    for (const auto& [name, value] : fields.fields())
        line.set(name, value);
    line.escape_texts();
    if (shown_as == progress_form::terminal) {
        print_sentence(event, line);
        return true;
    }
    return diagnostics::answers() != nullptr &&
           std::fprintf(diagnostics::answers(), "%s\n", line.json_line().c_str()) > 0 &&
           std::fflush(diagnostics::answers()) == 0;
}

void tell_warning(const std::string& text) {
    if (shown_as == progress_form::json) {
        tell_progress("warning", {{"text", text}});
        return;
    }
    clear_progress();
    std::fprintf(diagnostics::messages(), "wlanctl: warning: %s\n", escape(text).c_str());
}

void clear_progress() {
    if (on_terminal) {
        std::fputs("\r\033[K", diagnostics::messages());
        std::fflush(diagnostics::messages()); // before the answer, which has a stream of its own
    }
    on_terminal = false;
}
