# GoogleTest, built from source with each configuration's own compiler.
include(CTest)
if(NOT BUILD_TESTING)
  return()
endif()
set(TAVRIX_GOOGLETEST /usr/src/googletest CACHE PATH "GoogleTest's source; Debian's is the default")
set(INSTALL_GTEST OFF)
set(gtest_force_shared_crt ON CACHE BOOL "Use the compiler's usual runtime" FORCE)
add_subdirectory(${TAVRIX_GOOGLETEST} ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)

# Where each suite leaves its results, one file a suite: scripts/test counts from them.
set(TAVRIX_RESULTS ${CMAKE_BINARY_DIR}/results)
file(MAKE_DIRECTORY ${TAVRIX_RESULTS})

# Makes the program `target`, linked with GoogleTest, a suite of that name. A suite is one test of
# CTest and one process: starting a process costs more than most cases.
function(tavrix_suite target)
  set(results ${TAVRIX_RESULTS}/${target}.xml)
  if(CMAKE_CROSSCOMPILING)
    set(results Z:${results})
  endif()
  add_test(NAME ${target} COMMAND ${target} --gtest_output=xml:${results})
  set_tests_properties(${target} PROPERTIES
    TIMEOUT 300
    ENVIRONMENT "ASAN_OPTIONS=detect_stack_use_after_return=1;UBSAN_OPTIONS=print_stacktrace=1")
  set_property(GLOBAL APPEND PROPERTY TAVRIX_SUITES ${target})
endfunction()

# One suite from all sources of a folder of tests/; the other arguments are what it is linked with.
function(tavrix_tests target folder)
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/tests/${folder}/*.cpp)
  if(NOT sources)
    return()
  endif()
  add_executable(${target} ${sources})
  target_include_directories(${target} PRIVATE ${CMAKE_SOURCE_DIR}/tests)
  target_link_libraries(${target} PRIVATE ${ARGN} GTest::gmock GTest::gtest_main tavrix_warnings)
  # Nobody waits for a suite's own code, but for its being compiled.
  target_compile_options(${target} PRIVATE $<$<CXX_COMPILER_ID:GNU,Clang>:-O0>)
  tavrix_suite(${target})
endfunction()

# The suite `target` once more on another engine (tests/support/test_book.h), but for the cases
# `without`, a filter of GoogleTest. For a server the environment's TAVRIX_ODBC names it.
function(tavrix_suite_on target engine without)
  if(NOT TARGET ${target})
    return()
  endif()
  set(name ${target}_${engine})
  set(results ${TAVRIX_RESULTS}/${name}.xml)
  if(CMAKE_CROSSCOMPILING)
    set(results Z:${results})
  endif()
  add_test(NAME ${name} COMMAND ${target} --gtest_output=xml:${results} --gtest_filter=-${without})
  get_test_property(${target} ENVIRONMENT environment)
  set_tests_properties(${name} PROPERTIES
    TIMEOUT 300 ENVIRONMENT "${environment};TAVRIX_ENGINE=${engine}")
  set_property(GLOBAL APPEND PROPERTY TAVRIX_SUITES ${name})
endfunction()

# Writes down which suites there are, so that one whose results are missing is noticed.
function(tavrix_list_suites)
  get_property(suites GLOBAL PROPERTY TAVRIX_SUITES)
  list(JOIN suites "\n" lines)
  file(WRITE ${CMAKE_BINARY_DIR}/suites.txt "${lines}\n")
endfunction()
