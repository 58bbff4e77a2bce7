# OpenBLAS (serial), METIS and ARPACK of the system, each as an imported target. A missing one is
# reported with the Debian package that provides it.

function(zelvo_find target package header)
  find_library(${target}_LIBRARY NAMES ${ARGN} PATH_SUFFIXES openblas-serial)
  if(NOT ${target}_LIBRARY)
    message(FATAL_ERROR "${ARGN} not found: install the Debian package ${package}")
  endif()
  add_library(${target} UNKNOWN IMPORTED)
  set_target_properties(${target} PROPERTIES IMPORTED_LOCATION ${${target}_LIBRARY})
  if(header)
    find_path(${target}_INCLUDE ${header})
    if(NOT ${target}_INCLUDE)
      message(FATAL_ERROR "${header} not found: install the Debian package ${package}")
    endif()
    target_include_directories(${target} INTERFACE ${${target}_INCLUDE})
  endif()
endfunction()

# The serial OpenBLAS is looked for first: the program has one thread.
find_library(zelvo_blas_LIBRARY NAMES openblas
             PATHS /usr/lib/${CMAKE_LIBRARY_ARCHITECTURE}/openblas-serial NO_DEFAULT_PATH)
zelvo_find(zelvo_blas libopenblas-serial-dev "" openblas)
zelvo_find(zelvo_metis libmetis-dev metis.h metis)
zelvo_find(zelvo_arpack libarpack2-dev "" arpack)
