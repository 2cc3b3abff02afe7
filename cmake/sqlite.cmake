# The pinned SQLite source that scripts/setup has fetched and checked.
set(TAVRIX_CACHE ${CMAKE_SOURCE_DIR}/.cache CACHE PATH "Where scripts/setup keeps what it fetched")
set(sqlite_folder ${TAVRIX_CACHE}/sqlite)
if(NOT EXISTS ${sqlite_folder}/sqlite3.c)
  message(FATAL_ERROR "SQLite's source is missing: run scripts/setup")
endif()
add_library(sqlite3 STATIC ${sqlite_folder}/sqlite3.c)
target_include_directories(sqlite3 SYSTEM PUBLIC ${sqlite_folder})
target_compile_definitions(sqlite3 PRIVATE
  SQLITE_THREADSAFE=1 SQLITE_DQS=0 SQLITE_DEFAULT_MEMSTATUS=0 SQLITE_LIKE_DOESNT_MATCH_BLOBS
  SQLITE_OMIT_LOAD_EXTENSION SQLITE_OMIT_DEPRECATED SQLITE_OMIT_SHARED_CACHE SQLITE_USE_ALLOCA
  SQLITE_TRUSTED_SCHEMA=0 SQLITE_TEMP_STORE=2 SQLITE_DEFAULT_CACHE_SIZE=-32000)
target_compile_options(sqlite3 PRIVATE $<$<CONFIG:Debug>:-O1>)
find_package(Threads REQUIRED)
target_link_libraries(sqlite3 PUBLIC Threads::Threads)
