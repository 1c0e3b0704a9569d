# Puts the page together and makes a C++ source of it, with a policy that names its style and script by their hashes.
# usage: cmake -D PAGE=folder -D TEXTS=file -D STYLE=file -D OUTPUT=file -P embed.cmake

cmake_minimum_required(VERSION 3.16)

set(alphabet ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/)

# The base64 form of a text's SHA-256, as a policy has it.
function(hash_of text result)
    string(SHA256 digits "${text}")
    set(digits "${digits}00") # 33 octets: eleven times three
    set(hash "")
    foreach(group RANGE 10)
        math(EXPR at "${group} * 6")
        string(SUBSTRING ${digits} ${at} 6 octets)
        foreach(shift 18 12 6 0)
            math(EXPR index "(0x${octets} >> ${shift}) & 63")
            string(SUBSTRING ${alphabet} ${index} 1 character)
            string(APPEND hash ${character})
        endforeach()
    endforeach()
    string(SUBSTRING ${hash} 0 43 hash)
    set(${result} "'sha256-${hash}='" PARENT_SCOPE)
endfunction()

file(READ ${PAGE}/page.html page)
file(READ ${PAGE}/page.css style)
file(READ ${PAGE}/page.js script)
file(READ ${TEXTS} texts)
if(STYLE)
    file(READ ${STYLE} more)
    string(APPEND style "${more}")
endif()
hash_of("${style}" style_hash)
hash_of("${script}" script_hash)

foreach(name language direction title script_needed)
    if(NOT texts MATCHES "\"${name}\": *\"([^\"\\<&]*)\"")
        message(FATAL_ERROR "${TEXTS}: ${name} is missing, or holds what HTML would take for its own")
    endif()
    string(REPLACE "@${name}@" "${CMAKE_MATCH_1}" page "${page}")
endforeach()
string(REPLACE "<" "\\u003c" texts "${texts}") # no text ends the element that it stands in
foreach(part texts style script)
    string(REPLACE "@${part}@" "${${part}}" page "${page}")
endforeach()

file(WRITE ${OUTPUT}.html "${page}")
file(READ ${OUTPUT}.html octets HEX)
string(REGEX REPLACE "(..)" "'\\\\x\\1'," octets "${octets}")
file(WRITE ${OUTPUT} "// Made by embed.cmake.
#include \"page.h\"

const char page_text[] = {${octets}};
const std::size_t page_size = sizeof page_text;
const char page_policy[] =
    \"default-src 'none'; script-src ${script_hash}; style-src ${style_hash}; connect-src 'self'; \"
    \"img-src data:; form-action 'none'; base-uri 'none'; frame-ancestors 'none'\";
")
