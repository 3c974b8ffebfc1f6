# Fails when a subsystem includes one above it, or window-free code includes a window.
# Run as: cmake -DSRC=<src dir> -P check_layers.cmake
# Subsystems on one level may include each other; a higher level may include a lower one.
cmake_minimum_required(VERSION 3.20)

set(level_core 0)
set(level_link 1)
set(level_files 1)
set(level_analysis 1)
set(level_acquisition 2)
foreach(sub shell charts realtime monitor printing)
  set(level_${sub} 3)
endforeach()

# Known wrong arrows still being taken apart; none may be added.
set(pending
  "core/startup.cpp>files/log_file.h"
  "link/transaction.cpp>acquisition/upload.h"
  "link/transaction.cpp>realtime/live_intake.h")

file(GLOB_RECURSE sources RELATIVE ${SRC} ${SRC}/*.h ${SRC}/*.cpp)
set(wrong)
foreach(rel ${sources})
  string(REGEX MATCH "^([a-z_]+)/" _ "${rel}")
  set(sub "${CMAKE_MATCH_1}")
  if(sub STREQUAL "" OR NOT DEFINED level_${sub})
    continue()  # main.cpp and the like stand above every subsystem
  endif()
  set(windowed FALSE)
  if(rel MATCHES "^[a-z_]+/widgets/")
    set(windowed TRUE)
  endif()
  file(STRINGS ${SRC}/${rel} lines REGEX "^[ \t]*#[ \t]*include[ \t]*\"")
  foreach(line ${lines})
    string(REGEX MATCH "\"([a-z_]+)/([^\"]*)\"" _ "${line}")
    set(target "${CMAKE_MATCH_1}")
    set(rest "${CMAKE_MATCH_2}")
    if(target STREQUAL "" OR NOT DEFINED level_${target})
      continue()
    endif()
    if(level_${target} GREATER level_${sub})
      list(APPEND wrong "${rel}: ${sub} may not include ${target}/${rest}")
    elseif(NOT windowed AND rest MATCHES "^widgets/")
      list(APPEND wrong "${rel}: window-free code may not include ${target}/${rest}")
    endif()
  endforeach()
endforeach()

if(wrong)
  list(JOIN wrong "\n  " text)
  message(FATAL_ERROR "Includes against the order of the subsystems:\n  ${text}")
endif()
list(LENGTH sources count)
message(STATUS "${count} source files keep the order of the subsystems")
