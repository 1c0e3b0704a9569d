// SPDX-License-Identifier: MIT
// The launcher runs a program with libvcamera.so between it and libc, or not at all.

#include <cstddef>
#include <sstream>

#include <elf.h>
#include <linux/capability.h>
#include <sys/xattr.h>

#include "include/libwlan/version.h"
#include "tests/vcamera/launched_test.h"

namespace {

std::string bytes_of(const std::string& file) {
    std::ostringstream bytes;
    bytes << std::ifstream(file, std::ios::binary).rdbuf();
    return bytes.str();
}

/// The bytes with the first occurrence of a text changed to another of its length.
std::string changed(std::string bytes, const std::string& text, const std::string& other) {
    return bytes.replace(bytes.find(text), text.size(), other);
}

std::string changed(std::string bytes, std::size_t place) {
    ++bytes[place];
    return bytes;
}

const std::string library_name = fs::path(LIBRARY).filename();

class launcher_test : public launched_test {
protected:
    void write_program(const std::string& path, const std::string& bytes, fs::perms more = fs::perms::none) const {
        write("/" + path, bytes);
        fs::permissions(path, fs::perms::owner_all | fs::perms::group_exec | more);
    }

    /// Expects a program to be refused in one line, and nothing of it to have run.
    void expect_refusal(const std::string& program, const std::string& why) {
        SCOPED_TRACE(program);
        EXPECT_EQ(run(program), 127);
        EXPECT_EQ(out, "");
        EXPECT_TRUE(has(err, "vcamera: cannot "));
        EXPECT_TRUE(has(err, why));
        EXPECT_EQ(err.find('\n'), err.size() - 1);
        EXPECT_FALSE(exists("/ran"));
    }

    const std::string probe = bytes_of(PROBE);
};

TEST_F(launcher_test, refuses_what_it_cannot_preload_into) {
    write_program("static", bytes_of(STATIC_PROGRAM));
    write_program("script", "#! " + folder + "/static ran\n");
    write_program("outer_script", "#!" + folder + "/script\n");
    write_program("set_user", probe, fs::perms::set_uid);
    write_program("set_group", probe, fs::perms::set_gid);
    write_program("other_loader", changed(probe, "/lib", "/bil"));
    write_program("other_class", changed(probe, EI_CLASS));
    write_program("other_machine", changed(probe, offsetof(Elf32_Ehdr, e_machine)));
    write_program("damaged", probe.substr(0, 100));
    expect_refusal("./static", "./static: it is statically linked");
    expect_refusal("./script", "./script: its interpreter " + folder + "/static is statically linked");
    expect_refusal("./outer_script", "its interpreter " + folder + "/static is statically linked");
    expect_refusal("./set_user", "set-user-id");
    expect_refusal("./set_group", "set-group-id");
    expect_refusal("./other_loader", "another loader");
    expect_refusal("./other_class", "another kind of machine");
    expect_refusal("./other_machine", "another kind of machine");
    expect_refusal("./damaged", "damaged");
}

TEST_F(launcher_test, refuses_a_program_with_file_capabilities) {
    write_program("capable", probe);
    const vfs_cap_data none = {VFS_CAP_REVISION_2, {}};
    if (setxattr("capable", "security.capability", &none, sizeof none, 0) != 0)
        GTEST_SKIP() << "only root gives files capabilities, where the file system has them";
    expect_refusal("./capable", "file capabilities");
}

TEST_F(launcher_test, says_what_it_cannot_find_or_run) {
    write_program("lost_interpreter", "#!/nowhere/sh\n");
    write("/no_program", "echo ran >ran\n");
    expect_refusal("./nothing", "./nothing: No such file or directory");
    expect_refusal("nothing_in_path", "nothing_in_path: No such file or directory");
    expect_refusal("./lost_interpreter", "its interpreter /nowhere/sh: No such file or directory");
    expect_refusal("./no_program", "./no_program: Permission denied");
    expect_refusal("/tmp", "/tmp: Permission denied");
}

TEST_F(launcher_test, refuses_a_library_that_is_not_its_own) {
    const std::string library = bytes_of(LIBRARY);
    std::string other_version = LIBWLAN_VERSION;
    ++other_version[0];
    const struct {
        const char* name;
        std::string bytes;
        const char* why;
    } rows[] = {
        {"none", "", "file too short"},
        {"no ELF file", "nothing of a library", "file too short"},
        {"only its beginning", library.substr(0, 4096), ""},
        {"another library", bytes_of(OTHER_LIBRARY), "not the library of vcamera"},
        {"another version", changed(library, LIBWLAN_VERSION, other_version), "not the library of vcamera"},
        {"another machine", changed(library, offsetof(Elf32_Ehdr, e_machine)), "cannot open shared object file"},
    };
    write_program("vcamera", bytes_of(VCAMERA));
    vcamera = "./vcamera";
    expect_refusal("touch ran", "No such file or directory");
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        write("/" + library_name, row.bytes);
        expect_refusal("touch ran", row.why);
    }
    write("/" + library_name, library);
    EXPECT_EQ(told("echo ran"), "ran\n");
}

constexpr char print_library[] = "sh -c 'ls /sys/class/net; echo $LD_PRELOAD'";

TEST_F(launcher_test, runs_from_folders_of_any_name) {
    for (const std::string name : {"a b", "a:b", "a$LIB"}) {
        write_program(name + "/vcamera", bytes_of(VCAMERA));
        write("/" + name + "/" + library_name, bytes_of(LIBRARY));
        vcamera = "'" + name + "/vcamera'";
        EXPECT_EQ(told(print_library), "apclii0\nra0\nwlan0\n" + folder + "/camera/" + library_name + "\n");
    }
}

TEST_F(launcher_test, takes_scenes_and_scratch_of_any_name) {
    for (const std::string name : {"a b", "a:b", "a$LIB"}) {
        write_program(name + "/vcamera", bytes_of(VCAMERA));
        write("/" + name + "/" + library_name, bytes_of(LIBRARY));
        fs::copy("scene.json", name);
        setenv("NAME", name.c_str(), 1);
        EXPECT_EQ(shell("\"$NAME/vcamera\" --scene \"$NAME/scene.json\" --scratch \"$NAME/camera\" -- " +
                        std::string(print_library)),
                  0);
        const std::string interfaces = "apclii0\nra0\nwlan0\n";
        EXPECT_EQ(out.substr(0, interfaces.size()), interfaces);
        const fs::path link = out.substr(interfaces.size(), out.size() - interfaces.size() - 1);
        EXPECT_EQ(fs::read_symlink(link), fs::path(folder) / name / library_name);
        EXPECT_EQ(fs::status(link.parent_path()).permissions(), fs::perms::owner_all);
        fs::remove(link);
    }
}

} // namespace
