# SPDX-License-Identifier: Apache-2.0
# The router: 64-bit Arm with musl, built by Clang and lld against the folder that scripts/sysroot makes.

set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
get_filename_component(CMAKE_SYSROOT ${CMAKE_CURRENT_LIST_DIR}/../.sysroot ABSOLUTE)
if(NOT EXISTS ${CMAKE_SYSROOT}/complete)
    message(FATAL_ERROR "The router's C library is missing: run scripts/sysroot")
endif()

set(CMAKE_C_COMPILER clang)
set(CMAKE_CXX_COMPILER clang++)
set(CMAKE_C_COMPILER_TARGET aarch64-linux-musl)
set(CMAKE_CXX_COMPILER_TARGET aarch64-linux-musl)
foreach(tool IN ITEMS ar nm objcopy ranlib readelf strip)
    string(TOUPPER ${tool} variable)
    set(CMAKE_${variable} llvm-${tool})
endforeach()

# Standard headers only: nothing of the C++ library is linked. libgcc's few helpers become part of the result.
find_path(FRRUCI_LIBCXX __config PATHS /usr/lib/llvm-14/include/c++/v1 /usr/include/c++/v1
    NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH REQUIRED)
string(JOIN " " CMAKE_CXX_FLAGS_INIT -nostdinc++ -isystem ${FRRUCI_LIBCXX} -D_LIBCPP_HAS_MUSL_LIBC
    -nostdlib++ -Wno-unused-command-line-argument)
foreach(kind IN ITEMS EXE SHARED MODULE)
    set(CMAKE_${kind}_LINKER_FLAGS_INIT "-fuse-ld=lld -static-libgcc")
endforeach()

# Optimised as a whole, and with relocations of two thirds of the usual size, which musl reads as well.
set(FRRUCI_ROUTER ON)

set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

set(CMAKE_CROSSCOMPILING_EMULATOR qemu-aarch64 -L ${CMAKE_SYSROOT})
