# Compiles the release of `target` for size: most code runs once a command. The other arguments are
# patterns of its sources that run once a row or a cell, and are compiled for speed.
function(tavrix_small target)
  get_target_property(type ${target} TYPE)
  if(type STREQUAL "INTERFACE_LIBRARY")
    return()
  endif()
  target_compile_options(${target} PRIVATE
    $<$<AND:$<CONFIG:Release>,$<COMPILE_LANG_AND_ID:CXX,GNU,Clang>>:-Os>)
  if(ARGN)
    file(GLOB fast CONFIGURE_DEPENDS ${ARGN})
    set_property(SOURCE ${fast} APPEND PROPERTY COMPILE_OPTIONS
      $<$<AND:$<CONFIG:Release>,$<CXX_COMPILER_ID:GNU,Clang>>:-O2>)
  endif()
endfunction()
