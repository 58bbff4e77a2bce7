# Compiler settings as one interface target, and the vector kernels' own flags.

add_library(zelvo_options INTERFACE)
target_compile_features(zelvo_options INTERFACE cxx_std_20)
if(MSVC)
  target_compile_options(zelvo_options INTERFACE /W4)
else()
  # One written order of sums and no contraction: reruns agree to the last bit.
  target_compile_options(zelvo_options INTERFACE -ffp-contract=off -Wall -Wextra -Wpedantic
                                                 -Wconversion -Wshadow)
  # GCC 12 sees overlaps in std::string that are none (GCC bug 105651).
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    target_compile_options(zelvo_options INTERFACE -Wno-restrict)
  endif()
  if(ZELVO_WERROR)
    target_compile_options(zelvo_options INTERFACE -Werror)
  endif()
  if(ZELVO_SANITIZE)
    target_compile_options(zelvo_options INTERFACE -fsanitize=address,undefined
                                                   -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(zelvo_options INTERFACE -fsanitize=address,undefined)
  endif()
endif()

# What a release is hardened with: a damaged stack, a buffer of the C library that is written beyond its
# end, a stack that grows past its guard, and a table of calls that is written over end the process.
function(zelvo_harden target)
  if(MSVC OR ZELVO_SANITIZE)
    return()
  endif()
  target_compile_options(${target} PRIVATE $<$<CONFIG:Release>:-fstack-protector-strong
                         -fstack-clash-protection -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3>)
  if(CMAKE_SYSTEM_PROCESSOR MATCHES "x86_64|AMD64|amd64")
    target_compile_options(${target} PRIVATE $<$<CONFIG:Release>:-fcf-protection=full>)
  endif()
  target_link_options(${target} INTERFACE $<$<CONFIG:Release>:LINKER:-z,relro,-z,now>)
endfunction()

# Files named *_avx2.cpp hold the same kernels as their *_plain.cpp twins (both include one
# *kernels-inl.h), compiled for AVX2 and FMA; the program chooses between the two when it starts.
# On other processors the twins are compiled alike and the plain one is chosen.
function(zelvo_vector_kernels target)
  if(NOT CMAKE_SYSTEM_PROCESSOR MATCHES "x86_64|AMD64|amd64" OR MSVC)
    return()
  endif()
  get_target_property(sources ${target} SOURCES)
  foreach(source IN LISTS sources)
    if(source MATCHES "_avx2\\.cpp$")
      set_source_files_properties(${source} PROPERTIES COMPILE_OPTIONS
                                  "-mavx2;-mfma;-ffp-contract=fast")
    endif()
  endforeach()
endfunction()

# Where CMAKE_UNITY_BUILD is on, each folder of src/ is compiled as one source: headers and their
# templates, which cost the sanitizers most, are then compiled once a room.
function(zelvo_rooms target)
  get_target_property(sources ${target} SOURCES)
  foreach(source IN LISTS sources)
    get_filename_component(folder ${source} DIRECTORY)
    get_filename_component(room ${folder} NAME)
    set_source_files_properties(${source} PROPERTIES UNITY_GROUP ${room})
  endforeach()
  set_target_properties(${target} PROPERTIES UNITY_BUILD_MODE GROUP)
endfunction()
