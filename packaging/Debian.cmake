# The Debian packages: `trelundokit` with the shared libraries and the tool, `trelundokit-dev` for who builds hosts.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME trelundokit)
set(CPACK_PACKAGE_CONTACT "The TrelundoKit_Premium authors <trelundokit@localhost>")
set(CPACK_COMPONENTS_ALL runtime development)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME trelundokit)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION "Paywall screens, a store framework and the paywall tool
Shared libraries with screens that sell plans and offers, the store framework
that they stand on with an embedded sandbox store, and `paywall`, which shows,
draws and drives the screens without a device, an account or a network.")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
# Where the libraries find each other before they are installed.
foreach(layer IN ITEMS foundation storekit graphics coreanimation uikit window store premium)
    get_target_property(folder trelundo_${layer} BINARY_DIR)
    list(APPEND CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${folder})
endforeach()
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
# Fonts and the off-screen platform are loaded by name at run time.
set(CPACK_DEBIAN_RUNTIME_PACKAGE_DEPENDS "fonts-inter, fonts-noto-core, qt6-qpa-plugins")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_RECOMMENDS "fonts-noto-cjk, fonts-noto-color-emoji")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME trelundokit-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "Paywall screens and store framework (development files)
Headers, and what CMake and pkg-config read to link the libraries.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
    "trelundokit (= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SUGGESTS "cmake, pkgconf")

install(FILES ${PROJECT_SOURCE_DIR}/LICENSE RENAME copyright
        DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/trelundokit COMPONENT runtime)
install(FILES ${PROJECT_SOURCE_DIR}/LICENSE RENAME copyright
        DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/trelundokit-dev COMPONENT development)
include(CPack)
