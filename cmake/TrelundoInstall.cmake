# What `cmake --install` brings. Two installation parts: `runtime` (shared libraries, the tool) and `development` (headers,
# static libraries, what CMake and pkg-config read). Resources are compiled in; none is installed.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(TRELUNDO_CONFIG_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/TrelundoKit)
set(TRELUNDO_ZSH_DIR ${CMAKE_INSTALL_DATADIR}/zsh/site-functions CACHE STRING "Where zsh finds completions")
# Until 1.0 each minor version may break binaries.
set(TRELUNDO_SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})

# trelundo_install_layer(TARGET COMPONENT sources...): the library of a layer, as part of a component of the package, and
# those of its headers that are public: what lies in a folder named internal is not.
function(trelundo_install_layer target component)
    set_target_properties(${target} PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${TRELUNDO_SOVERSION}
                                               INSTALL_RPATH $ORIGIN)
    target_include_directories(${target} INTERFACE $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
    install(TARGETS ${target} EXPORT TrelundoKit${component}
            LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development
            ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
    list(FILTER ARGN INCLUDE REGEX "\\.h$")
    foreach(header IN LISTS ARGN)
        cmake_path(ABSOLUTE_PATH header NORMALIZE)
        cmake_path(RELATIVE_PATH header BASE_DIRECTORY ${PROJECT_SOURCE_DIR} OUTPUT_VARIABLE path)
        cmake_path(GET path PARENT_PATH folder)
        if(path MATCHES "/internal/")
            continue()
        endif()
        install(FILES ${header} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/${folder} COMPONENT development)
    endforeach()
endfunction()

# trelundo_install_component(NAME DESCRIPTION [REQUIRES modules...] [LIBRARIES names...] [STATIC_MODULES modules...]
# [STATIC_LIBRARIES names...]): what CMake and pkg-config read of one component. Those who link it statically need the
# STATIC_ ones as well.
function(trelundo_install_component name description)
    cmake_parse_arguments(MODULE "" "" "REQUIRES;LIBRARIES;STATIC_MODULES;STATIC_LIBRARIES" ${ARGN})
    install(EXPORT TrelundoKit${name} NAMESPACE TrelundoKit:: FILE TrelundoKit${name}.cmake
            DESTINATION ${TRELUNDO_CONFIG_DIR} COMPONENT development)

    if(BUILD_SHARED_LIBS)
        unset(MODULE_STATIC_MODULES)
        unset(MODULE_STATIC_LIBRARIES)
    endif()
    list(TRANSFORM MODULE_LIBRARIES PREPEND -ltrelundokit-)
    list(TRANSFORM MODULE_STATIC_LIBRARIES PREPEND -l)
    foreach(list IN ITEMS REQUIRES LIBRARIES STATIC_MODULES STATIC_LIBRARIES)
        list(JOIN MODULE_${list} " " MODULE_${list})
    endforeach()
    set(MODULE_NAME ${name})
    set(MODULE_DESCRIPTION ${description})
    cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX BASE_DIRECTORY ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig
               OUTPUT_VARIABLE MODULE_PREFIX)
    string(TOLOWER trelundokit-${name}.pc file)
    configure_file(${PROJECT_SOURCE_DIR}/cmake/TrelundoKit.pc.in ${PROJECT_BINARY_DIR}/pkgconfig/${file} @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/pkgconfig/${file} DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
            COMPONENT development)
endfunction()

# trelundo_install_package(): the package configuration, which finds the components, and who may use all this.
function(trelundo_install_package)
    set(TRELUNDO_IS_STATIC ON)
    if(BUILD_SHARED_LIBS)
        set(TRELUNDO_IS_STATIC OFF)
    endif()
    configure_package_config_file(
        ${PROJECT_SOURCE_DIR}/cmake/TrelundoKitConfig.cmake.in ${PROJECT_BINARY_DIR}/TrelundoKitConfig.cmake
        INSTALL_DESTINATION ${TRELUNDO_CONFIG_DIR})
    write_basic_package_version_file(${PROJECT_BINARY_DIR}/TrelundoKitConfigVersion.cmake
                                     COMPATIBILITY SameMinorVersion)
    install(FILES ${PROJECT_BINARY_DIR}/TrelundoKitConfig.cmake ${PROJECT_BINARY_DIR}/TrelundoKitConfigVersion.cmake
            DESTINATION ${TRELUNDO_CONFIG_DIR} COMPONENT development)
    install(FILES ${PROJECT_SOURCE_DIR}/LICENSE ${PROJECT_SOURCE_DIR}/README.md ${PROJECT_SOURCE_DIR}/CHANGELOG.md
            DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/trelundokit COMPONENT runtime)
endfunction()

# trelundo_install_tool(): the `paywall` tool with its manual and its completions.
function(trelundo_install_tool)
    if(BUILD_SHARED_LIBS)
        cmake_path(RELATIVE_PATH CMAKE_INSTALL_FULL_LIBDIR BASE_DIRECTORY ${CMAKE_INSTALL_FULL_BINDIR}
                   OUTPUT_VARIABLE libraries)
        set_target_properties(paywall PROPERTIES INSTALL_RPATH $ORIGIN/${libraries})
    endif()
    install(TARGETS paywall DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime)
    install(FILES paywall.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT runtime)
    install(FILES completions/paywall.bash RENAME paywall
            DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT runtime)
    install(FILES completions/_paywall DESTINATION ${TRELUNDO_ZSH_DIR} COMPONENT runtime)
    install(FILES completions/paywall.fish DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d
            COMPONENT runtime)
endfunction()
