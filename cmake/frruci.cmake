# SPDX-License-Identifier: Apache-2.0
# Compiler settings shared by every target, and the rules of the library's own code.

add_compile_options(-Wall -Wextra -Wconversion -Wshadow)
add_compile_options($<$<COMPILE_LANG_AND_ID:CXX,Clang>:-Wglobal-constructors>)
if(FRRUCI_WERROR)
    add_compile_options(-Werror)
endif()
if(FRRUCI_SANITIZE)
    add_compile_options(-fsanitize=${FRRUCI_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    # Function types are checked through the C++ runtime, which the library does without.
    add_compile_options($<$<COMPILE_LANG_AND_ID:CXX,Clang>:-fno-sanitize=function>)
    add_link_options(-fsanitize=${FRRUCI_SANITIZE})
endif()
if(FRRUCI_FUZZ)
    add_compile_options(-fsanitize=fuzzer-no-link)
endif()
if(FRRUCI_EDGES)
    add_compile_options(-fsanitize-coverage=inline-8bit-counters,pc-table)
endif()

# Code that runs on the router: no exceptions, no RTTI, no C++ runtime in the result.
function(frruci_library_language target)
    set_target_properties(${target} PROPERTIES
        CXX_VISIBILITY_PRESET hidden C_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON
        LINKER_LANGUAGE C)
    target_compile_options(${target} PRIVATE
        $<$<COMPILE_LANGUAGE:CXX>:-fno-exceptions -fno-rtti -fno-threadsafe-statics>
        -ffunction-sections -fdata-sections)
    target_link_options(${target} PRIVATE -Wl,--gc-sections -Wl,--as-needed)
    if(NOT FRRUCI_SANITIZE AND NOT FRRUCI_FUZZ AND NOT FRRUCI_EDGES)
        # Flash is scarce, and nothing is ever thrown through this code.
        target_compile_options(${target} PRIVATE
            -fno-asynchronous-unwind-tables -fno-unwind-tables -fomit-frame-pointer)
        target_link_options(${target} PRIVATE -Wl,--no-undefined -Wl,--hash-style=gnu)
    endif()
    if(NOT (FRRUCI_TESTS AND FRRUCI_UNIT_TESTS))
        # Its own functions are called directly. Unit tests put functions of theirs in their place.
        target_link_options(${target} PRIVATE -Wl,-Bsymbolic-functions)
    endif()
    if(FRRUCI_ROUTER)
        target_compile_options(${target} PRIVATE -Oz -flto)
        target_link_options(${target} PRIVATE -Oz -flto -Wl,-O2 -Wl,--icf=safe -Wl,-z,rel)
    endif()
endfunction()

# The exported set is the list of names in list_file, one a line; everything else stays inside.
function(frruci_exports target list_file)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${list_file})
    file(STRINGS ${list_file} names REGEX "^[A-Za-z_]")
    string(JOIN "[[SEMICOLON]]\n        " exported ${names})
    set(map ${CMAKE_CURRENT_BINARY_DIR}/${target}.map)
    string(REPLACE "[[SEMICOLON]]" ";" content
        "{\n    global:\n        ${exported}[[SEMICOLON]]\n    local:\n        *[[SEMICOLON]]\n}[[SEMICOLON]]\n")
    file(CONFIGURE OUTPUT ${map} @ONLY CONTENT "${content}")
    target_link_options(${target} PRIVATE -Wl,--version-script=${map})
    set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${map})
endfunction()

# A room's sources, and its public headers by name of the room.
function(frruci_room)
    cmake_parse_arguments(room "" "" "SOURCES;HEADERS" ${ARGN})
    target_sources(frruci PRIVATE ${room_SOURCES})
    get_filename_component(name ${CMAKE_CURRENT_SOURCE_DIR} NAME)
    install(FILES ${room_HEADERS} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/frruci/${name})
endfunction()
