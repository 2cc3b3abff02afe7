# The libraries that read and write workbooks: zlib as the system's packages have it, and the pinned
# sources of minizip and Expat that scripts/setup has fetched and checked.
set(libraries_folder ${TAVRIX_CACHE}/libraries)
if(NOT EXISTS ${libraries_folder}/stamp OR NOT EXISTS ${TAVRIX_CACHE}/tables/stamp)
  message(FATAL_ERROR "Sources of libraries are missing: run scripts/setup")
endif()

# On Windows the static one: the program is to need nothing but the system's own libraries.
if(MINGW)
  find_library(TAVRIX_ZLIB libz.a REQUIRED)
else()
  find_library(TAVRIX_ZLIB z REQUIRED)
endif()

set(minizip_folder ${libraries_folder}/minizip)
add_library(minizip STATIC ${minizip_folder}/ioapi.c ${minizip_folder}/unzip.c ${minizip_folder}/zip.c)
target_include_directories(minizip SYSTEM PUBLIC ${libraries_folder})
target_compile_definitions(minizip PRIVATE NOCRYPT NOUNCRYPT $<$<NOT:$<BOOL:${WIN32}>>:USE_FILE32API>)
target_compile_options(minizip PRIVATE -w)
target_link_libraries(minizip PUBLIC ${TAVRIX_ZLIB})

# Without entities from elsewhere; who reads with it refuses declarations of entities altogether.
set(expat_folder ${libraries_folder}/expat)
add_library(expat STATIC ${expat_folder}/xmlparse.c ${expat_folder}/xmlrole.c ${expat_folder}/xmltok.c)
file(CONFIGURE OUTPUT ${CMAKE_BINARY_DIR}/expat/expat_config.h CONTENT
  "#define BYTEORDER 1234\n#define XML_CONTEXT_BYTES 1024\n")
target_include_directories(expat SYSTEM PUBLIC ${expat_folder} PRIVATE ${CMAKE_BINARY_DIR}/expat)
target_compile_definitions(expat PUBLIC XML_STATIC PRIVATE $<$<NOT:$<BOOL:${WIN32}>>:HAVE_GETRANDOM>)
target_compile_options(expat PRIVATE -w)
