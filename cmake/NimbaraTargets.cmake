# One library per folder of src/, one test program per folder of tests/, all sharing one precompiled header.

# A library that `tools/install-deps.sh GROUP` installs, in the words of find_package; says so where it is missing.
macro(nimbara_need group package)
  find_package(${package} ${ARGN} QUIET)
  if(NOT ${package}_FOUND)
    nimbara_lacks(${group} ${package})
  endif()
endmacro()

# The like for a library that only pkg-config knows.
macro(nimbara_need_module group prefix module)
  pkg_check_modules(${prefix} QUIET IMPORTED_TARGET ${module})
  if(NOT ${prefix}_FOUND)
    nimbara_lacks(${group} ${module})
  endif()
endmacro()

function(nimbara_lacks group what)
  set(hint "tools/install-deps.sh ${group} installs what is missing")
  set(option_desktop NIMBARA_DESKTOP)
  set(option_test NIMBARA_TESTS)
  set(option_bench NIMBARA_BENCH)
  if(option_${group})
    string(APPEND hint "; -D${option_${group}}=OFF builds without it")
  endif()
  message(FATAL_ERROR "${what} was not found: ${hint}.")
endfunction()

# The library takes every source of its folder and of the rooms in it (folders without a library of their own), but
# no program's main.cpp. PRECOMPILED names a header of its own in place of the shared one, for code that is compiled
# with other definitions. Precompiled headers are named without the checkout's folder, so that the compiler's cache
# serves one checkout with what another compiled.
function(nimbara_library name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "PRECOMPILED" "USES;PRIVATE_USES")
  file(GLOB sources CONFIGURE_DEPENDS *.cpp)
  list(FILTER sources EXCLUDE REGEX "/main\\.cpp$")
  file(GLOB rooms CONFIGURE_DEPENDS LIST_DIRECTORIES true *)
  foreach(room IN LISTS rooms)
    if(IS_DIRECTORY ${room} AND NOT EXISTS ${room}/CMakeLists.txt)
      file(GLOB_RECURSE in_room CONFIGURE_DEPENDS ${room}/*.cpp)
      list(APPEND sources ${in_room})
    endif()
  endforeach()
  add_library(${name} STATIC ${sources})
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(${name} PUBLIC ${arg_USES} PRIVATE ${arg_PRIVATE_USES})
  if(arg_PRECOMPILED)
    target_precompile_headers(${name} PRIVATE ${arg_PRECOMPILED})
  elseif(name STREQUAL "nimbara_base")
    target_precompile_headers(${name} PRIVATE <precompiled.h>)
  else()
    target_precompile_headers(${name} REUSE_FROM nimbara_base)
  endif()
  nimbara_batches(${name} ${sources})
endfunction()

# With NIMBARA_BATCHES the target's sources are compiled in groups of up to twelve whose declarations do not collide.
# That halves a build from nothing, and makes the next one after a change longer.
function(nimbara_batches name)
  if(NOT NIMBARA_BATCHES)
    return()
  endif()
  find_package(Python3 REQUIRED COMPONENTS Interpreter)
  execute_process(COMMAND ${Python3_EXECUTABLE} ${PROJECT_SOURCE_DIR}/tools/batches.py 12 ${ARGN}
                  WORKING_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR} OUTPUT_VARIABLE groups OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  string(REPLACE ";" "," groups "${groups}")
  string(REPLACE "\n" ";" groups "${groups}")
  set(number 0)
  foreach(group IN LISTS groups)
    string(REPLACE "," ";" sources "${group}")
    list(LENGTH sources count)
    if(count GREATER 1)
      set_source_files_properties(${sources} PROPERTIES UNITY_GROUP batch_${number})
      math(EXPR number "${number} + 1")
    endif()
  endforeach()
  set_target_properties(${name} PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE GROUP)
endfunction()

# A part of the program that is loaded on demand, and lies beside it as it does when installed.
function(nimbara_module name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;USES")
  add_library(${name} MODULE ${arg_SOURCES})
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(${name} PRIVATE ${arg_USES})
  target_link_options(${name} PRIVATE -Wl,-z,defs)
  set_target_properties(${name} PROPERTIES
    PREFIX "" CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON
    LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
  install(TARGETS ${name} LIBRARY DESTINATION lib/nimbara)
endfunction()

# The programs lie side by side in bin/, as they do when installed: one finds the other there.
function(nimbara_program name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;USES")
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE ${arg_USES})
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
  install(TARGETS ${name})
endfunction()

function(nimbara_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;USES")
  add_executable(${name} ${arg_SOURCES})
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/tests)
  target_link_libraries(${name} PRIVATE ${arg_USES} GTest::gmock GTest::gtest_main)
  # Tests are compiled far more often than they run: their own code is not optimised, what they test is.
  target_compile_options(${name} PRIVATE -O0)
  if(Qt6::Test IN_LIST arg_USES)
    # The toolkit wants position-independent code, which no header compiled without it serves.
    target_precompile_headers(${name} PRIVATE <tests/desktop/precompiled.h>)
  else()
    target_precompile_headers(${name} REUSE_FROM nimbara_test_support)
  endif()
  nimbara_batches(${name} ${arg_SOURCES})
  gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 120)
endfunction()

# Embeds FILES as byte arrays: `extern std::string_view const <symbol>` for each, in namespace nimbara::resources.
# The symbol is the file's name with every other character than letters and digits turned into "_". LIST names a
# `std::span<std::pair<std::string_view, std::string_view const*> const>` of the files: name without ending, bytes.
function(nimbara_embed target)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "LIST" "FILES")
  foreach(file IN LISTS arg_FILES)
    get_filename_component(name ${file} NAME)
    string(REGEX REPLACE "[^A-Za-z0-9]" "_" symbol ${name})
    set(source ${CMAKE_CURRENT_BINARY_DIR}/resource_${symbol}.cpp)
    add_custom_command(
      OUTPUT ${source}
      COMMAND ${CMAKE_COMMAND} -DINPUT=${file} -DOUTPUT=${source} -DSYMBOL=${symbol}
              -P ${PROJECT_SOURCE_DIR}/cmake/Embed.cmake
      DEPENDS ${file} ${PROJECT_SOURCE_DIR}/cmake/Embed.cmake VERBATIM)
    target_sources(${target} PRIVATE ${source})
    set_source_files_properties(${source} PROPERTIES SKIP_PRECOMPILE_HEADERS ON)
    get_filename_component(stem ${file} NAME_WE)
    string(APPEND declarations "extern std::string_view const ${symbol};\n")
    string(APPEND rows "    {\"${stem}\", &${symbol}},\n")
  endforeach()
  if(arg_LIST)
    set(source ${CMAKE_CURRENT_BINARY_DIR}/resource_list_${arg_LIST}.cpp)
    file(CONFIGURE OUTPUT ${source} @ONLY CONTENT [[
#include <span>
#include <string_view>
#include <utility>
namespace nimbara::resources {
@declarations@
using Row = std::pair<std::string_view, std::string_view const*>;
static Row const rows[] = {
@rows@};
extern std::span<Row const> const @arg_LIST@;
std::span<Row const> const @arg_LIST@(rows);
}  // namespace nimbara::resources
]])
    target_sources(${target} PRIVATE ${source})
    set_source_files_properties(${source} PROPERTIES SKIP_PRECOMPILE_HEADERS ON)
  endif()
endfunction()

# Embeds the bytes of FILE, which is made while building, as they are: <symbol>_begin and <symbol>_end are its bounds.
function(nimbara_embed_bytes target symbol file)
  set(source ${CMAKE_CURRENT_BINARY_DIR}/embedded_${symbol}.cpp)
  set(script ${PROJECT_SOURCE_DIR}/cmake/EmbedBytes.cmake)
  add_custom_command(
    OUTPUT ${source}
    COMMAND ${CMAKE_COMMAND} -DINPUT=${file} -DOUTPUT=${source} -DSYMBOL=${symbol} -P ${script}
    DEPENDS ${file} ${script} VERBATIM)
  target_sources(${target} PRIVATE ${source})
  set_source_files_properties(${source} PROPERTIES SKIP_PRECOMPILE_HEADERS ON OBJECT_DEPENDS ${file})
endfunction()
