# trelundo_embed(TARGET SYMBOL FOLDER): compiles every file below FOLDER into TARGET as
# `std::span<trelundo::EmbeddedFile const> trelundo::SYMBOL()`, with paths relative to FOLDER.
function(trelundo_embed target symbol folder)
    file(GLOB_RECURSE files CONFIGURE_DEPENDS ${folder}/*)
    set(output ${CMAKE_CURRENT_BINARY_DIR}/${symbol}.cpp)
    add_custom_command(
        OUTPUT ${output}
        COMMAND ${CMAKE_COMMAND} -DFOLDER=${folder} -DSYMBOL=${symbol} -DOUTPUT=${output}
                -P ${PROJECT_SOURCE_DIR}/cmake/EmbedFiles.cmake
        DEPENDS ${files} ${PROJECT_SOURCE_DIR}/cmake/EmbedFiles.cmake
        COMMENT "Embedding ${symbol}"
        VERBATIM)
    target_sources(${target} PRIVATE ${output})
endfunction()
