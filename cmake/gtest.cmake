# SPDX-License-Identifier: Apache-2.0
# GoogleTest: the system's, or for another machine one built along from Debian's sources.

if(CMAKE_CROSSCOMPILING)
    set(gtest_sources /usr/src/googletest)
    if(NOT EXISTS ${gtest_sources}/CMakeLists.txt)
        message(FATAL_ERROR "GoogleTest's sources are missing: install Debian's package googletest")
    endif()
    set(INSTALL_GTEST OFF)
    set(BUILD_GMOCK OFF)
    get_directory_property(options COMPILE_OPTIONS)
    set_directory_properties(PROPERTIES COMPILE_OPTIONS "") # our warnings are for our code
    add_subdirectory(${gtest_sources} ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
    set_directory_properties(PROPERTIES COMPILE_OPTIONS "${options}")
else()
    find_package(GTest REQUIRED)
endif()
