// SPDX-License-Identifier: MIT
// Watching a MediaTek adapter join: its driver tells of a link only.

#pragma once

#include <utility>

#include "watch.h"

class mediatek_watch : public watch {
public:
    mediatek_watch(target target, bool address) : target_(std::move(target)), address_(address) {}

    sight look() override;
    setback give_up() override;
    int last_words() const override { return survey_seconds; }

private:
    static constexpr int survey_seconds = 5;

    target target_;
    bool address_;
    bool linked_ = false;
};
