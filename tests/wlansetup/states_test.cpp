// SPDX-License-Identifier: MIT
// The tables of wlansetup's states: what has to hold whatever rows they have.

#include <iterator>
#include <set>

#include <gtest/gtest.h>

#include "states.h"

namespace {

std::set<state> reached_from(state from) {
    std::set<state> reached = {from};
    for (std::size_t before = 0; before != reached.size();) {
        before = reached.size();
        for (const transition& row : transitions) {
            if (reached.count(row.from) != 0)
                reached.insert(row.to);
        }
    }
    return reached;
}

/// Where a camera that is left alone gets to, when everything from then on has one result.
state left_alone(state from, event result) {
    for (int step = 0; step < 20; ++step) {
        const bool rests = row_of(from).does == task::rest;
        const transition* found = find_transition(from, rests ? event::due : result);
        if (from == state::connected || from == state::serving || found == nullptr)
            return from;
        from = found->to;
    }
    return from;
}

TEST(states_test, has_one_row_for_each_state) {
    std::set<state> rows;
    for (const state_row& row : states) {
        EXPECT_TRUE(rows.insert(row.is).second) << row.word;
        EXPECT_EQ(row_of(row.is).is, row.is);
    }
    EXPECT_EQ(rows.size(), static_cast<std::size_t>(state::keeping) + 1);
}

TEST(states_test, says_each_thing_once) {
    for (const transition& row : transitions)
        EXPECT_EQ(find_transition(row.from, row.on), &row) << row_of(row.from).word;
}

TEST(states_test, leaves_no_state_without_a_way_on) {
    for (const state_row& row : states) {
        SCOPED_TRACE(row.word);
        const bool rests = row.does == task::rest;
        EXPECT_EQ(find_transition(row.is, event::due) != nullptr, rests);
        EXPECT_EQ(find_transition(row.is, event::good) != nullptr, !rests);
        EXPECT_EQ(find_transition(row.is, event::bad) != nullptr, !rests);
        EXPECT_EQ(reached_from(row.is).size(), std::size(states)) << "a state is out of reach";
    }
}

// What the page asked for is carried out while an event of the server is: it must not end the server.
TEST(states_test, keeps_the_page_when_it_asks) {
    for (const transition& row : transitions) {
        if (row.on == event::join_asked || row.on == event::survey_asked || row.on == event::wps_asked) {
            EXPECT_EQ(row_of(row.from).page, row_of(row.to).page) << row_of(row.from).word;
            EXPECT_NE(row_of(row.to).page, page_place::nowhere) << row_of(row.to).word;
        }
    }
}

TEST(states_test, goes_from_the_access_point_only_when_connected) {
    for (const transition& row : transitions) {
        const bool leaves =
            row_of(row.from).page == page_place::access_point && row_of(row.to).page != page_place::access_point;
        EXPECT_EQ(leaves, row.to == state::closing) << row_of(row.from).word;
        if (leaves) {
            EXPECT_TRUE(row.on == event::good || row.from == state::leaving) << row_of(row.from).word;
        }
    }
}

TEST(states_test, comes_to_rest_where_it_should) {
    const struct {
        state from;
        event result;
        state to;
    } rows[] = {
        {state::looking, event::good, state::connected}, {state::surveying, event::bad, state::serving},
        {state::joining, event::good, state::connected}, {state::joining, event::bad, state::serving},
        {state::storing, event::bad, state::serving},    {state::pressing, event::good, state::connected},
        {state::pressing, event::bad, state::serving},   {state::retrying, event::good, state::connected},
        {state::retrying, event::bad, state::serving},   {state::changing, event::good, state::connected},
    };
    for (const auto& row : rows)
        EXPECT_EQ(row_of(left_alone(row.from, row.result)).word, row_of(row.to).word) << row_of(row.from).word;
}

} // namespace
