// SPDX-License-Identifier: MIT
// What the set-up is at, and what moves it on: two tables, drawn in docs/setup.md.

#pragma once

#include <iterator>

enum class state {
    looking,          ///< is there a cable?
    reading,          ///< is a network stored?
    joining_stored,   ///< before there is an access point
    opening,          ///< the access point
    waiting,          ///< for another try to open it
    surveying,        ///< the air, for the page
    serving,          ///< the page, for somebody to use it
    checking,         ///< is there a cable by now?
    retrying,         ///< the stored network, beside the access point
    joining,          ///< what the page asked for, beside the access point
    pressing,         ///< the router's button
    joining_obtained, ///< what the button gave and stored
    storing,          ///< the network that was joined
    undoing,          ///< a network that was not joined or stored
    leaving,          ///< shows that it worked
    closing,          ///< the access point
    connected,        ///< with no access point
    watching,         ///< is the network still there?
    looking_around,   ///< surveys the air while connected
    changing,         ///< to another network, with no access point
    keeping,          ///< stores that one
};

enum class event {
    good,         ///< what the state is about came out as hoped for
    bad,          ///< or not
    stale,        ///< nobody uses the page, and the stored network is to be tried again
    due,          ///< the state has lasted as long as it may
    survey_asked, ///< by the page, as are the two below
    join_asked,
    wps_asked,
};

/// What the camera does in a state: a wlanctl request, or nothing until it is due.
enum class task {
    rest,
    ask_status,
    read_store,
    join_stored,
    open_access_point,
    survey,
    join,
    press_button,
    store,
    disconnect,
    close_access_point,
};

/// Where the page can be reached.
enum class page_place { nowhere, access_point, network };

struct state_row {
    state is;
    const char* word; ///< for the page and the log
    task does;
    page_place page;
};

struct transition {
    state from;
    event on;
    state to;
};

constexpr state_row states[] = {
    {state::looking, "looking", task::ask_status, page_place::nowhere},
    {state::reading, "reading", task::read_store, page_place::nowhere},
    {state::joining_stored, "joining_stored", task::join_stored, page_place::nowhere},
    {state::opening, "opening", task::open_access_point, page_place::nowhere},
    {state::waiting, "waiting", task::rest, page_place::nowhere},
    {state::surveying, "surveying", task::survey, page_place::access_point},
    {state::serving, "serving", task::rest, page_place::access_point},
    {state::checking, "checking", task::ask_status, page_place::access_point},
    {state::retrying, "retrying", task::join_stored, page_place::access_point},
    {state::joining, "joining", task::join, page_place::access_point},
    {state::pressing, "pressing", task::press_button, page_place::access_point},
    {state::joining_obtained, "joining_obtained", task::join_stored, page_place::access_point},
    {state::storing, "storing", task::store, page_place::access_point},
    {state::undoing, "undoing", task::disconnect, page_place::access_point},
    {state::leaving, "leaving", task::rest, page_place::access_point},
    {state::closing, "closing", task::close_access_point, page_place::nowhere},
    {state::connected, "connected", task::rest, page_place::network},
    {state::watching, "watching", task::ask_status, page_place::network},
    {state::looking_around, "looking_around", task::survey, page_place::network},
    {state::changing, "changing", task::join, page_place::network},
    {state::keeping, "keeping", task::store, page_place::network},
};

constexpr transition transitions[] = {
    // A cable counts as connected; else the stored network; else the access point.
    {state::looking, event::good, state::connected},
    {state::looking, event::bad, state::reading},
    {state::reading, event::good, state::joining_stored},
    {state::reading, event::bad, state::opening},
    {state::joining_stored, event::good, state::connected},
    {state::joining_stored, event::bad, state::opening},
    {state::opening, event::good, state::surveying},
    {state::opening, event::bad, state::waiting},
    {state::waiting, event::due, state::looking},

    // The page is there, and what it asks for ends what the camera does by itself.
    {state::surveying, event::good, state::serving},
    {state::surveying, event::bad, state::serving},
    {state::surveying, event::join_asked, state::joining},
    {state::surveying, event::wps_asked, state::pressing},
    {state::serving, event::survey_asked, state::surveying},
    {state::serving, event::join_asked, state::joining},
    {state::serving, event::wps_asked, state::pressing},
    {state::serving, event::due, state::checking},
    {state::checking, event::good, state::closing},
    {state::checking, event::bad, state::serving},
    {state::checking, event::stale, state::retrying},
    {state::checking, event::survey_asked, state::surveying},
    {state::checking, event::join_asked, state::joining},
    {state::checking, event::wps_asked, state::pressing},
    {state::retrying, event::good, state::closing},
    {state::retrying, event::bad, state::undoing},
    {state::retrying, event::survey_asked, state::surveying},
    {state::retrying, event::join_asked, state::joining},
    {state::retrying, event::wps_asked, state::pressing},

    // A network is tried beside the access point, which goes once it has shown that it worked.
    {state::joining, event::good, state::storing},
    {state::joining, event::bad, state::undoing},
    {state::pressing, event::good, state::joining_obtained},
    {state::pressing, event::bad, state::serving},
    {state::joining_obtained, event::good, state::leaving},
    {state::joining_obtained, event::bad, state::undoing},
    {state::storing, event::good, state::leaving},
    {state::storing, event::bad, state::undoing},
    {state::undoing, event::good, state::serving},
    {state::undoing, event::bad, state::serving},
    {state::undoing, event::survey_asked, state::surveying},
    {state::undoing, event::join_asked, state::joining},
    {state::undoing, event::wps_asked, state::pressing},
    {state::leaving, event::due, state::closing},
    {state::closing, event::good, state::connected},
    {state::closing, event::bad, state::connected},

    // A network that goes for good is looked for from the beginning.
    {state::connected, event::due, state::watching},
    {state::connected, event::survey_asked, state::looking_around},
    {state::connected, event::join_asked, state::changing},
    {state::watching, event::good, state::connected},
    {state::watching, event::bad, state::looking},
    {state::watching, event::survey_asked, state::looking_around},
    {state::watching, event::join_asked, state::changing},
    {state::looking_around, event::good, state::connected},
    {state::looking_around, event::bad, state::connected},
    {state::looking_around, event::join_asked, state::changing},
    {state::changing, event::good, state::keeping},
    {state::changing, event::bad, state::joining_stored},
    {state::keeping, event::good, state::connected},
    {state::keeping, event::bad, state::joining_stored},
};

/// @return the state's row.
constexpr const state_row& row_of(state is) {
    for (const state_row& row : states) {
        if (row.is == is)
            return row;
    }
    return states[0]; // not reached: a test finds a row for each
}

/// @return what the event leads to, or null when the state does not heed it.
constexpr const transition* find_transition(state from, event on) {
    for (const transition& row : transitions) {
        if (row.from == from && row.on == on)
            return &row;
    }
    return nullptr;
}
