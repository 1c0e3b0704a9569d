#include "store/failure.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "store/value_text.h"

void store::fail_with_errno(const std::string& path, const char* doing) {
    throw failure(path + ": cannot " + doing + ": " + std::strerror(errno));
}

int store::answer(const std::function<void()>& request) {
    try {
        request();
        return 0;
    } catch (const std::exception& reason) {
        std::string line;
        for (const char byte : std::string(reason.what())) {
            append_printable(line, byte);
        }
        std::fputs((line + "\n").c_str(), stderr);
        return -1;
    }
}
