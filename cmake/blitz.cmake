# Blitz++: headers alone, of which every compiler finds the configuration that its package made for GCC.
#
# A cross compiler must not search the whole of /usr/include, so the headers are linked into a folder of their own.

find_path(BLITZ_INCLUDE_DIR blitz/array.h REQUIRED NO_CMAKE_FIND_ROOT_PATH)
set(QUENTARA_BLITZ_LINK ${CMAKE_BINARY_DIR}/blitz)
file(MAKE_DIRECTORY ${QUENTARA_BLITZ_LINK})
file(CREATE_LINK ${BLITZ_INCLUDE_DIR}/blitz ${QUENTARA_BLITZ_LINK}/blitz SYMBOLIC)
add_library(quentara_blitz INTERFACE)
target_include_directories(quentara_blitz SYSTEM INTERFACE ${CMAKE_SOURCE_DIR}/cmake/blitz ${QUENTARA_BLITZ_LINK}
                                                            $<$<PLATFORM_ID:Windows>:${CMAKE_SOURCE_DIR}/cmake/mingw>)
