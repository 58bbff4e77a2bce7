# zelvo-desk: everything but its main in one library, over the core.
find_package(CLI11 REQUIRED)
find_package(nlohmann_json REQUIRED)
zelvo_find(zelvo_xlsxwriter libxlsxwriter-dev xlsxwriter.h xlsxwriter)
find_file(ZELVO_THREE_JS three.min.js PATHS /usr/share/javascript/three NO_DEFAULT_PATH)
if(NOT ZELVO_THREE_JS)
  message(FATAL_ERROR "three.min.js not found: install the Debian package libjs-three")
endif()

# Files that the report brings with it, as C++ (src/report/assets.h).
function(zelvo_embed name file)
  get_filename_component(base ${file} NAME)
  set(out ${CMAKE_BINARY_DIR}/embedded/${base}.cpp)
  add_custom_command(
    OUTPUT ${out}
    COMMAND ${CMAKE_COMMAND} -DNAME=${name} -DFILE=${file} -DOUT=${out}
            -P ${CMAKE_SOURCE_DIR}/cmake/Embed.cmake
    DEPENDS ${file} ${CMAKE_SOURCE_DIR}/cmake/Embed.cmake)
  set(desk_sources ${desk_sources} ${out} PARENT_SCOPE)
endfunction()
zelvo_embed(REPORT_CSS ${CMAKE_SOURCE_DIR}/src/report/report.css)
zelvo_embed(BUCKLED_CSS ${CMAKE_SOURCE_DIR}/src/report/buckled.css)
zelvo_embed(REPORT_JS ${CMAKE_SOURCE_DIR}/src/report/report.js)
zelvo_embed(VIEWER_JS ${CMAKE_SOURCE_DIR}/src/report/viewer.js)
zelvo_embed(THREE_JS ${ZELVO_THREE_JS})

add_library(zelvo_desk_rooms STATIC ${desk_sources})
target_link_libraries(zelvo_desk_rooms PUBLIC zelvo_core nlohmann_json::nlohmann_json
                                       PRIVATE zelvo_xlsxwriter)
zelvo_rooms(zelvo_desk_rooms)
zelvo_harden(zelvo_desk_rooms)
# Text is put together here; numbers are crunched in the core. Full optimisation of the JSON and
# command line headers takes a compiler minutes and gains nothing.
if(NOT MSVC)
  target_compile_options(zelvo_desk_rooms PRIVATE -O1)
endif()
target_compile_definitions(zelvo_desk_rooms PRIVATE ZELVO_VERSION="${PROJECT_VERSION}")

add_executable(zelvo-desk ${CMAKE_SOURCE_DIR}/src/zelvo_desk.cpp)
target_compile_definitions(zelvo-desk PRIVATE ZELVO_VERSION="${PROJECT_VERSION}")
target_link_libraries(zelvo-desk PRIVATE zelvo_desk_rooms CLI11::CLI11)
zelvo_harden(zelvo-desk)
if(NOT MSVC)
  target_compile_options(zelvo-desk PRIVATE -O1)
endif()
install(TARGETS zelvo-desk RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES ${CMAKE_SOURCE_DIR}/docs/zelvo-desk.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
