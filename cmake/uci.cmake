# SPDX-License-Identifier: Apache-2.0
# Finds libuci: under UCI_ROOT when given, else the system's, else the stand-in of compat/uci.

add_library(frruci_uci INTERFACE)
if(UCI_ROOT)
    find_path(UCI_INCLUDE_DIR uci.h PATHS ${UCI_ROOT}/include NO_DEFAULT_PATH REQUIRED)
    find_library(UCI_LIBRARY uci PATHS ${UCI_ROOT}/lib NO_DEFAULT_PATH REQUIRED)
else()
    find_path(UCI_INCLUDE_DIR uci.h)
    find_library(UCI_LIBRARY uci)
endif()
if(UCI_INCLUDE_DIR AND UCI_LIBRARY)
    message(STATUS "libuci: ${UCI_LIBRARY}")
    target_include_directories(frruci_uci SYSTEM INTERFACE ${UCI_INCLUDE_DIR})
    target_link_libraries(frruci_uci INTERFACE ${UCI_LIBRARY})
    if(UCI_ROOT)
        # What that libuci needs itself lies beside it.
        target_link_options(frruci_uci INTERFACE -Wl,-rpath-link,${UCI_ROOT}/lib)
    endif()
    if(UCI_ROOT AND FRRUCI_TESTS)
        # A test compares the two.
        add_subdirectory(${PROJECT_SOURCE_DIR}/compat/uci ${PROJECT_BINARY_DIR}/stand_in
            EXCLUDE_FROM_ALL)
    endif()
else()
    message(STATUS "libuci: the stand-in of compat/uci")
    set(FRRUCI_STAND_IN ON)
    add_subdirectory(${PROJECT_SOURCE_DIR}/compat/uci ${PROJECT_BINARY_DIR}/uci)
    target_link_libraries(frruci_uci INTERFACE uci)
endif()
