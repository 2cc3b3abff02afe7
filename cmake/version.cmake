# The one version: the project's, in CMakeLists.txt. Sources and resources see it in the header
# tavrix_version.h, manifests through tavrix_versioned.
file(CONFIGURE OUTPUT ${CMAKE_BINARY_DIR}/version/tavrix_version.h @ONLY CONTENT
"#pragma once

#define TAVRIX_VERSION \"@PROJECT_VERSION@\"
#define TAVRIX_FILE_VERSION \"@PROJECT_VERSION@.0\"
#define TAVRIX_FILE_VERSION_NUMBERS @PROJECT_VERSION_MAJOR@, @PROJECT_VERSION_MINOR@, @PROJECT_VERSION_PATCH@, 0
")
add_library(tavrix_version INTERFACE)
target_include_directories(tavrix_version INTERFACE ${CMAKE_BINARY_DIR}/version)

# Writes `name` from the file `name`.in of the current folder, with the version in it.
function(tavrix_versioned name)
  configure_file(${CMAKE_CURRENT_SOURCE_DIR}/${name}.in ${CMAKE_BINARY_DIR}/version/${name} @ONLY)
endfunction()

# A type library's version is a part of the names that callers keep: it stands in the definition, for
# all who compile that, and must be major and minor of the product's.
function(tavrix_check_type_library idl)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${idl})
  file(STRINGS ${idl} found REGEX "^ *version\\(")
  if(NOT found MATCHES "version\\(${PROJECT_VERSION_MAJOR}\\.${PROJECT_VERSION_MINOR}\\)")
    message(FATAL_ERROR "${idl}:${found} is not of version ${PROJECT_VERSION}")
  endif()
endfunction()
