// SPDX-License-Identifier: MIT
// Security as people call it, and as the library takes it.

#include "security.h"

#include <algorithm>
#include <cctype>
#include <cstddef>

#include <CLI/CLI.hpp>

namespace {

struct auth_row {
    const char* word;
    auth_from_cam auth;
    enc_from_cam usual;
    unsigned int ciphers; ///< one bit for each cipher
};

constexpr unsigned int wpa_ciphers = 1U << ENC_TKIP | 1U << ENC_AES | 1U << ENC_TKIP_AES;

constexpr auth_row auths[] = {
    // word, value, usual cipher, possible ciphers
    {"open", AUTH_OPEN, ENC_NONE, 1U << ENC_NONE | 1U << ENC_WEP},
    {"shared", AUTH_SHARED, ENC_WEP, 1U << ENC_WEP},
    {"wep", AUTH_SHARED, ENC_WEP, 1U << ENC_WEP},
    {"wpapsk", AUTH_WPAPSK, ENC_TKIP, wpa_ciphers},
    {"wpa2psk", AUTH_WPA2PSK, ENC_AES, wpa_ciphers},
    {"mixed", AUTH_MIXED_PSK, ENC_TKIP_AES, wpa_ciphers},
};

struct enc_row {
    const char* word;
    enc_from_cam enc;
    auth_from_cam usual;
};

constexpr enc_row encs[] = {
    // word, value, usual authentication
    {"none", ENC_NONE, AUTH_OPEN},
    {"wep", ENC_WEP, AUTH_SHARED},
    {"tkip", ENC_TKIP, AUTH_WPAPSK},
    {"aes", ENC_AES, AUTH_WPA2PSK},
    {"tkipaes", ENC_TKIP_AES, AUTH_MIXED_PSK},
};

template <typename Row, std::size_t count>
std::vector<std::string> words_of(const Row (&rows)[count]) {
    std::vector<std::string> words;
    for (const Row& known : rows)
        words.emplace_back(known.word);
    return words;
}

template <typename Row, std::size_t count, typename Test>
const Row* find_row(const Row (&rows)[count], Test test) {
    const Row* found = std::find_if(rows, rows + count, test);
    return found == rows + count ? nullptr : found;
}

const auth_row* row_of(auth_from_cam auth) {
    return find_row(auths, [=](const auth_row& mode) { return mode.auth == auth; });
}

const enc_row* row_of(enc_from_cam enc) {
    return find_row(encs, [=](const enc_row& cipher) { return cipher.enc == enc; });
}

bool is_hex(const std::string& text) {
    return std::all_of(text.begin(), text.end(), [](unsigned char c) { return std::isxdigit(c); });
}

} // namespace

std::vector<std::string> auth_words() {
    return words_of(auths);
}

std::vector<std::string> enc_words() {
    return words_of(encs);
}

std::string word_of(auth_from_cam auth) {
    if (auth == AUTH_WPA2)
        return "wpa2"; // comes from WPS only: asked for by hand it would join as WPA
    const auth_row* row = row_of(auth);
    return row != nullptr ? row->word : std::to_string(auth);
}

std::string word_of(enc_from_cam enc) {
    const enc_row* row = row_of(enc);
    return row != nullptr ? row->word : std::to_string(enc);
}

security choose_security(const std::string& auth, const std::string& enc, bool has_key) {
    const enc_row* cipher = find_row(encs, [&](const enc_row& row) { return row.word == enc; });
    const auth_row* mode = find_row(auths, [&](const auth_row& row) { return row.word == auth; });
    if (mode == nullptr)
        mode = row_of(cipher != nullptr ? cipher->usual : has_key ? AUTH_WPA2PSK : AUTH_OPEN);
    if (cipher == nullptr)
        cipher = row_of(mode->usual);
    if ((mode->ciphers & 1U << cipher->enc) == 0) {
        throw CLI::ValidationError(std::string(mode->word) + " does not work with the cipher " +
                                   cipher->word + "; it is usually used with " +
                                   word_of(mode->usual));
    }
    return {mode->auth, cipher->enc};
}

std::string key_problem(enc_from_cam enc, const std::string& key) {
    const std::size_t length = key.size();
    if (std::any_of(key.begin(), key.end(), [](unsigned char c) { return std::iscntrl(c); }))
        return "a key holds no control characters, such as a line feed or a tab";
    if (enc == ENC_WEP) {
        const bool fits =
            length == 5 || length == 13 || ((length == 10 || length == 26) && is_hex(key));
        return fits ? "" : "a WEP key is 5 or 13 characters, or 10 or 26 hexadecimal digits";
    }
    const bool fits = (length >= 8 && length <= 63) || (length == 64 && is_hex(key));
    return fits ? "" : "a WPA key is 8 to 63 characters, or 64 hexadecimal digits";
}
