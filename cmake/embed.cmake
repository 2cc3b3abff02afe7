# Compiles a text file, of the sources or with its whole path, into a target: as the array `<name>` of its
# lines, without their ends, in the header "embedded/<name>.h", namespace `embedded`. The file stays the
# readable source.
function(tavrix_embed_lines target file name)
  cmake_path(ABSOLUTE_PATH file BASE_DIRECTORY ${CMAKE_SOURCE_DIR})
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${file})
  file(READ ${file} content)
  string(REPLACE "\\" "\\\\" content "${content}")
  string(REPLACE "\"" "\\\"" content "${content}")
  string(REGEX REPLACE "([^\n]*)\n" "    \"\\1\",\n" content "${content}")
  file(CONFIGURE OUTPUT ${CMAKE_BINARY_DIR}/embedded/embedded/${name}.h @ONLY CONTENT
    "#pragma once\n\n#include <string_view>\n\nnamespace embedded {\ninline constexpr std::string_view @name@[] = {\n@content@};\n}\n")
  target_include_directories(${target} PRIVATE ${CMAKE_BINARY_DIR}/embedded)
endfunction()
