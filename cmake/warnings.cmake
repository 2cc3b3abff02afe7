# Warnings are errors in our own code; linked privately, so that headers of others are not judged.
add_library(tavrix_warnings INTERFACE)
target_compile_options(tavrix_warnings INTERFACE
  $<$<CXX_COMPILER_ID:GNU,Clang>:-Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor
    -Wold-style-cast -Woverloaded-virtual -Werror>
  # GCC 12 sees an overlap in "literal" + std::string, and an unset std::optional read, that are
  # not there.
  $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict -Wno-maybe-uninitialized>
  $<$<CXX_COMPILER_ID:MSVC>:/W4 /WX /utf-8 /permissive->)
