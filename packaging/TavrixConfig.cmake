# The Tavrix controls for hosts in C++: find_package(Tavrix) gives
#   Tavrix::headers      interfaces and classes, as in #include <tavrix.h>, and the system's libraries
#   Tavrix::identifiers  CLSID_Kjkm, IID_IFormUI and the others as symbols, compiled as C by the one
#                        target that it is linked to
#   Tavrix_LIBRARY       the DLL of the target's size
#   tavrix_registration_free(target)  lets a program create the classes without registration

get_filename_component(Tavrix_ROOT "${CMAKE_CURRENT_LIST_DIR}/../../.." ABSOLUTE)
if(CMAKE_SIZEOF_VOID_P EQUAL 8)
  set(Tavrix_FOLDER "${Tavrix_ROOT}/x64")
else()
  set(Tavrix_FOLDER "${Tavrix_ROOT}/x86")
endif()
set(Tavrix_LIBRARY "${Tavrix_FOLDER}/tavrix.dll")

if(NOT TARGET Tavrix::headers)
  add_library(Tavrix::headers INTERFACE IMPORTED)
  set_target_properties(Tavrix::headers PROPERTIES
    INTERFACE_INCLUDE_DIRECTORIES "${Tavrix_ROOT}/include"
    INTERFACE_LINK_LIBRARIES "ole32;oleaut32;uuid")

  file(GLOB _tavrix_identifiers "${Tavrix_ROOT}/include/*_i.c")
  add_library(Tavrix::identifiers INTERFACE IMPORTED)
  set_target_properties(Tavrix::identifiers PROPERTIES
    INTERFACE_SOURCES "${_tavrix_identifiers}"
    INTERFACE_LINK_LIBRARIES Tavrix::headers)
endif()

# Puts the DLL beside the program and the manifest into it.
function(tavrix_registration_free target)
  if(MSVC)
    target_sources(${target} PRIVATE "${Tavrix_FOLDER}/host.manifest")
  else()
    set(resource "${CMAKE_CURRENT_BINARY_DIR}/${target}_tavrix.rc")
    file(WRITE "${resource}" "1 24 \"${Tavrix_FOLDER}/host.manifest\"\n")
    target_sources(${target} PRIVATE "${resource}")
  endif()
  add_custom_command(TARGET ${target} POST_BUILD
    COMMAND ${CMAKE_COMMAND} -E copy_if_different "${Tavrix_LIBRARY}" "$<TARGET_FILE_DIR:${target}>")
endfunction()
