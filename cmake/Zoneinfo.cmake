# Makes the folder of compiled zone files that the programs read.
#
# Distributions may ship "slim" zone files, whose version-1 block is empty; only version-1 data is read here,
# so the files are compiled anew from the system's zone source with "-b fat".

find_program(ZIC_EXECUTABLE zic PATHS /usr/sbin /sbin)
if(NOT ZIC_EXECUTABLE)
  message(FATAL_ERROR "zic, the compiler of time-zone files, was not found: install the package libc-bin")
endif()
find_file(TZDATA_ZI tzdata.zi PATHS /usr/share/zoneinfo NO_DEFAULT_PATH)
if(NOT TZDATA_ZI)
  message(FATAL_ERROR "tzdata.zi, the source of the time zones, was not found: install the package tzdata")
endif()

set(FVQA_ZONEINFO_DIR "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/zoneinfo")
set(zoneinfo_stamp "${CMAKE_BINARY_DIR}/zoneinfo.stamp")
add_custom_command(OUTPUT "${zoneinfo_stamp}"
  COMMAND ${CMAKE_COMMAND} -E rm -rf "${FVQA_ZONEINFO_DIR}"
  COMMAND ${CMAKE_COMMAND} -E make_directory "${FVQA_ZONEINFO_DIR}"
  COMMAND "${ZIC_EXECUTABLE}" -b fat -d "${FVQA_ZONEINFO_DIR}" "${TZDATA_ZI}"
  COMMAND ${CMAKE_COMMAND} -E touch "${zoneinfo_stamp}"
  DEPENDS "${TZDATA_ZI}"
  COMMENT "Compiling the time zones"
  VERBATIM)
add_custom_target(zoneinfo ALL DEPENDS "${zoneinfo_stamp}")
