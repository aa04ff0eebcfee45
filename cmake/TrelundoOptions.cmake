# What a host includes in the build tree: a folder that holds the library and nothing else of this repository.
set(TRELUNDO_INCLUDE_DIR ${PROJECT_BINARY_DIR}/include)
file(MAKE_DIRECTORY ${TRELUNDO_INCLUDE_DIR})
file(CREATE_LINK ${PROJECT_SOURCE_DIR}/trelundo ${TRELUNDO_INCLUDE_DIR}/trelundo SYMBOLIC)

# trelundo_own(TARGET): compiles TARGET as every target of this repository is. Nothing of it reaches a host's targets.
# Own sources include from the root alone: with no word of the build folder in their command lines, the compiler cache
# knows them in every build folder.
function(trelundo_own target)
    set_target_properties(${target} PROPERTIES CXX_STANDARD 20 CXX_STANDARD_REQUIRED ON CXX_EXTENSIONS OFF
                                               TRELUNDO_OWN ON)
    target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR})
    if(NOT TRELUNDO_SHOW_WARNINGS)
        target_compile_options(${target} PRIVATE -w)
    elseif(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
        # When it optimises, GCC 12 warns of overlaps in sums of strings that cannot be (its bug 105651).
        target_compile_options(${target} PRIVATE -Wno-restrict)
    endif()
endfunction()

# These change the whole build below this folder: a program and all of its libraries have to agree on them.
if(TRELUNDO_SANITIZE)
    add_compile_options(-fsanitize=${TRELUNDO_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${TRELUNDO_SANITIZE})
endif()
if(TRELUNDO_COVERAGE)
    add_compile_options(--coverage)
    add_link_options(--coverage)
endif()

if(PROJECT_IS_TOP_LEVEL AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    find_program(TRELUNDO_CCACHE ccache)
    if(TRELUNDO_CCACHE)
        set(CMAKE_CXX_COMPILER_LAUNCHER ${TRELUNDO_CCACHE})
    endif()
endif()
