# trelundo_layer(NAME ALIAS COMPONENT component [FOLDERS folders...] [SOURCES files...] [DEPENDS layers...]
# [PRIVATE targets...]): the library trelundo_NAME, called TrelundoKit::ALIAS, from the sources below FOLDERS (the current
# folder when neither is named) and from SOURCES. It is found with a COMPONENT of the package. DEPENDS are the layers that
# its headers show, PRIVATE what only its sources use.
function(trelundo_layer name alias)
    cmake_parse_arguments(LAYER "" "COMPONENT" "DEPENDS;PRIVATE;FOLDERS;SOURCES" ${ARGN})
    if(NOT LAYER_FOLDERS AND NOT LAYER_SOURCES)
        set(LAYER_FOLDERS .)
    endif()
    set(sources ${LAYER_SOURCES})
    foreach(folder IN LISTS LAYER_FOLDERS)
        file(GLOB_RECURSE found CONFIGURE_DEPENDS ${folder}/*.cpp ${folder}/*.h)
        list(APPEND sources ${found})
    endforeach()

    set(target trelundo_${name})
    add_library(${target} ${sources})
    add_library(TrelundoKit::${alias} ALIAS ${target})
    trelundo_own(${target})
    # No macro of the export kind: a shared build compiles the very objects of a static one.
    set_target_properties(${target} PROPERTIES OUTPUT_NAME trelundokit-${name} EXPORT_NAME ${alias}
                                               LINKER_LANGUAGE CXX POSITION_INDEPENDENT_CODE ON DEFINE_SYMBOL "")
    target_compile_features(${target} PUBLIC cxx_std_20)
    target_include_directories(
        ${target} SYSTEM
        INTERFACE $<BUILD_INTERFACE:$<$<NOT:$<BOOL:$<TARGET_PROPERTY:TRELUNDO_OWN>>>:${TRELUNDO_INCLUDE_DIR}>>)
    target_link_libraries(${target} PUBLIC ${LAYER_DEPENDS} PRIVATE ${LAYER_PRIVATE})
    if(TRELUNDO_INSTALL)
        trelundo_install_layer(${target} ${LAYER_COMPONENT} ${sources})
    endif()
endfunction()
