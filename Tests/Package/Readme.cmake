# Runs the commands of the README that compile against a prefix, on the consumer as game.cpp.
include("${CMAKE_CURRENT_LIST_DIR}/Common.cmake")

file(READ "${REPOSITORY}/README.md" readme)
if(NOT readme MATCHES "```sh\n(export PKG_CONFIG_PATH[^`]*)```")
    message(FATAL_ERROR "the README has no commands for a prefix")
endif()
make_outside_dir(outside)
file(WRITE "${outside}/commands" "cd '${outside}'\n${CMAKE_MATCH_1}echo commands done\n")
configure_file("${CMAKE_CURRENT_LIST_DIR}/Consumer/Consumer.cpp" "${outside}/game.cpp" COPYONLY)
file(CREATE_LINK "${PREFIX}" "${outside}/prefix" SYMBOLIC) # has no space in its name
set(ENV{PREFIX} "${outside}/prefix")
run(sh -eux "${outside}/commands")
file(REMOVE_RECURSE "${outside}")
