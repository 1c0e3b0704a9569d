# The camera's own architecture, with Debian's cross compiler.

set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR mipsel)
set(CMAKE_C_COMPILER mipsel-linux-gnu-gcc)
set(CMAKE_CXX_COMPILER mipsel-linux-gnu-g++)
set(CMAKE_LIBRARY_ARCHITECTURE mipsel-linux-gnu)
# Finds the C library that Debian's packages of this architecture install.
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-mipsel -L /)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
