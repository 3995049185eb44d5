# What makes the effect a library for the artist's host: its name, its description among the resources, nothing to
# install beside it.

enable_language(RC)
add_executable(pipl_writer host/pipl_writer.cpp)
target_link_libraries(pipl_writer PRIVATE quentara_host)
set(QUENTARA_PIPL ${CMAKE_CURRENT_BINARY_DIR}/pipl.bin)
configure_file(host/pipl.rc.in pipl.rc @ONLY)
add_custom_command(OUTPUT ${QUENTARA_PIPL} COMMAND pipl_writer ${QUENTARA_PIPL} DEPENDS pipl_writer)
set_source_files_properties(${CMAKE_CURRENT_BINARY_DIR}/pipl.rc PROPERTIES OBJECT_DEPENDS ${QUENTARA_PIPL})

target_sources(quentara_effect PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/pipl.rc host/exports.def)
set_target_properties(quentara_effect PROPERTIES SUFFIX .aex)
