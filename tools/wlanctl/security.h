// SPDX-License-Identifier: MIT
// Security as people call it, and as the library takes it.

#pragma once

#include <string>
#include <vector>

#include "libwlan/settings.h"

struct security {
    auth_from_cam auth;
    enc_from_cam enc;
};

/// The words for --auth and --enc.
std::vector<std::string> auth_words();
std::vector<std::string> enc_words();

/// @return the word for a value, or its number when it has none.
std::string word_of(auth_from_cam auth);
std::string word_of(enc_from_cam enc);

/// Fills in what was left out: an empty word takes what usually goes with the other one, and two
/// empty words are WPA2 with AES when there is a key, else an open network.
/// @throws CLI::ValidationError for a cipher that the authentication cannot work with.
security choose_security(const std::string& auth, const std::string& enc, bool has_key);

/// @return what is wrong with a key, empty when nothing is.
std::string key_problem(enc_from_cam enc, const std::string& key);
