# What every target of the project shares: warnings, sanitizers and the include root.

set(FVQA_SANITIZE "" CACHE STRING "Sanitizers to build with, as -fsanitize= takes them")

add_library(fvqa_options INTERFACE)
target_include_directories(fvqa_options INTERFACE "${PROJECT_SOURCE_DIR}/src")
target_compile_definitions(fvqa_options INTERFACE FVQA_VERSION="${PROJECT_VERSION}" QT_NO_KEYWORDS)
# Sums are compensated and checked to the last digit: the compiler must not contract or reorder them.
target_compile_options(fvqa_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast
  -Wnon-virtual-dtor -Woverloaded-virtual -ffp-contract=off)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # GCC 12 reports string operations of its own library when it inlines them.
  target_compile_options(fvqa_options INTERFACE -Wduplicated-cond -Wlogical-op -Wno-restrict)
endif()
if(FVQA_SANITIZE)
  target_compile_options(fvqa_options INTERFACE
    -fsanitize=${FVQA_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(fvqa_options INTERFACE -fsanitize=${FVQA_SANITIZE})
endif()

# A record passes through a dozen small functions of four libraries: optimised across them, a load takes a
# twentieth less. The libraries hold ordinary code too, which the hundreds of other programs link: that is quick.
set(optimise_programs OFF)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_BUILD_TYPE STREQUAL "Release")
  set(optimise_programs ON)
  target_link_options(fvqa_options INTERFACE
    $<IF:$<BOOL:$<TARGET_PROPERTY:FVQA_OPTIMISE_WITH_LIBRARIES>>,-flto=auto,-fno-lto>)
endif()

# fvqa_library(NAME [MOC] SOURCES a.cpp ... LINKS targets ...): the library fvqa_NAME of one folder.
function(fvqa_library name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "MOC" "" "SOURCES;LINKS")
  add_library(fvqa_${name} STATIC ${arg_SOURCES})
  set_target_properties(fvqa_${name} PROPERTIES AUTOMOC ${arg_MOC})
  target_link_libraries(fvqa_${name} PUBLIC fvqa_options ${arg_LINKS})
  if(optimise_programs)
    target_compile_options(fvqa_${name} PRIVATE -flto -ffat-lto-objects)
  endif()
endfunction()

# fvqa_program(NAME SOURCES a.cpp ... LINKS targets ...): a program that finds the zone folder beside it.
function(fvqa_program name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LINKS")
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE fvqa_options ${arg_LINKS})
  add_dependencies(${name} zoneinfo)
endfunction()
