# zelvo-desk: everything but its main in one library, over the core.
find_package(CLI11 REQUIRED)
find_package(nlohmann_json REQUIRED)
zelvo_find(zelvo_xlsxwriter libxlsxwriter-dev xlsxwriter.h xlsxwriter)
find_file(ZELVO_THREE_JS three.min.js PATHS /usr/share/javascript/three NO_DEFAULT_PATH)
if(NOT ZELVO_THREE_JS)
  message(FATAL_ERROR "three.min.js not found: install the Debian package libjs-three")
endif()

add_library(zelvo_desk_rooms STATIC ${desk_sources})
target_link_libraries(zelvo_desk_rooms PUBLIC zelvo_core nlohmann_json::nlohmann_json
                                       PRIVATE zelvo_xlsxwriter)
target_compile_definitions(zelvo_desk_rooms PRIVATE ZELVO_VERSION="${PROJECT_VERSION}")

add_executable(zelvo-desk ${CMAKE_SOURCE_DIR}/src/zelvo_desk.cpp)
target_compile_definitions(zelvo-desk PRIVATE ZELVO_VERSION="${PROJECT_VERSION}")
target_link_libraries(zelvo-desk PRIVATE zelvo_desk_rooms CLI11::CLI11)
install(TARGETS zelvo-desk RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
