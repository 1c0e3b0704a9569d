// SPDX-License-Identifier: MIT
// Programs that a program on the camera starts.

#include "tests/vcamera/launched_test.h"

namespace {

constexpr char interfaces[] = "apclii0\nra0\nwlan0\n";

class children_test : public launched_test {};

constexpr const char* calls[] = {
    "execve",  "execve/null", "execveat", "execveat/empty", "fexecve",     "execv",        "execvp",
    "execvpe", "execl",       "execlp",   "execle",         "posix_spawn", "posix_spawnp",
};

TEST_F(children_test, every_call_keeps_them_on_the_camera) {
    for (const std::string call : calls)
        EXPECT_EQ(told("'" PROBE "' " + call + " /bin/ls /sys/class/net").substr(0, 18), interfaces) << call;
}

TEST_F(children_test, no_call_starts_a_static_program) {
    for (const std::string call : calls) {
        EXPECT_EQ(told("'" PROBE "' " + call + " '" STATIC_PROGRAM "' ran"), "EPERM\n") << call;
        EXPECT_TRUE(has(err, "statically linked")) << call;
        EXPECT_FALSE(exists("/ran")) << call;
    }
}

TEST_F(children_test, a_shell_starts_no_set_id_program) {
    fs::copy(PROBE, "set_id");
    fs::permissions("set_id", fs::perms::set_uid, fs::perm_options::add);
    EXPECT_EQ(run("sh -c './set_id open || exit 3'"), 3);
    EXPECT_EQ(out, "");
    EXPECT_TRUE(has(err, "vcamera: cannot run ./set_id: it is set-user-id"));
}

TEST_F(children_test, scripts_stay_on_the_camera) {
    write("/script", "#!/usr/bin/env sh\nexec ls /sys/class/net\n");
    write("/no_interpreter", "unset LD_PRELOAD VCAMERA_SCRATCH\nexec env -i ./script\n");
    shell("chmod +x script no_interpreter");
    EXPECT_EQ(told("./no_interpreter"), interfaces);
    EXPECT_EQ(told("'" PROBE "' execvp ./no_interpreter"), interfaces);
    EXPECT_EQ(told("'" PROBE "' execv ./no_interpreter"), "ENOEXEC\n");
}

TEST_F(children_test, a_preload_of_their_own_comes_second) {
    EXPECT_EQ(run("sh -c 'LD_PRELOAD=/nowhere/other.so env'"), 0);
    EXPECT_TRUE(has(out, "libvcamera.so.1:/nowhere/other.so\n"));
}

TEST_F(children_test, a_launcher_among_them_works) {
    EXPECT_EQ(told("sh -c \"" + vcamera + " -- ls /sys/class/net\""), interfaces);
}

} // namespace
