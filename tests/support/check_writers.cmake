# Fails when code writes a file other than through the safe writer (core/safe_file.cpp),
# which keeps the old file whole on any failure. The real-time log appends a line per
# sample and stays a plain file, and the mending of such a log left open by a crash writes
# its count in place as the close does; the serial port is a device opened for both ways.
# Run as: cmake -DROOTS="<dir>|<dir>" -DBASE=<source dir> -P check_writers.cmake
cmake_minimum_required(VERSION 3.20)

set(allowed_everything "src/core/safe_file.cpp" "src/realtime/realtime_log.cpp"
  "src/files/log_recovery.cpp")
set(allowed_device "src/link/serial_port.cpp")
# The printer is told the PDF file's name to offer it in the print dialog; the file itself
# is written by the safe writer.
set(allowed_name_only "src/printing/widgets/print_job.cpp")

# Each a way to open, create or replace a file by its name.
set(writers
  "QIODevice::(WriteOnly|ReadWrite|Append|Truncate|NewOnly)"
  "QFile(Device)?::(WriteOnly|ReadWrite|Append|Truncate|NewOnly)"
  "QSaveFile"
  "QTemporaryFile"
  "(\\.|->)save\\([^&)]"
  "(\\.|->)save(Png|Jpg|Bmp|Pdf|Rastered)\\("
  "QPdfWriter[ \t]+[A-Za-z_]+\\([^&)]"
  "QPdfWriter\\([^&)]"
  "(\\.|->)set(Output)?FileName\\("
  "fopen\\([^,]*,[ \t]*\"[wa+]"
  "ofstream"
  "[^a-z_]creat\\("
  "O_(WRONLY|RDWR|CREAT|TRUNC|APPEND)")

# The roots come separated by "|": a ";" reaches the script escaped, as one path.
string(REPLACE "|" ";" ROOTS "${ROOTS}")
set(wrong)
set(read 0)
foreach(root ${ROOTS})
  file(GLOB_RECURSE sources ${root}/*.h ${root}/*.cpp)
  foreach(path ${sources})
    file(RELATIVE_PATH rel ${BASE} ${path})
    if(rel IN_LIST allowed_everything)
      continue()
    endif()
    # One list item a line: the list's own separators and brackets are taken out first.
    file(READ ${path} content)
    math(EXPR read "${read} + 1")
    string(REGEX REPLACE "[][;]" " " content "${content}")
    string(REPLACE "\n" ";" lines "${content}")
    set(number 0)
    foreach(line IN LISTS lines)
      math(EXPR number "${number} + 1")
      if(line MATCHES "^[ \t]*//")
        continue()
      endif()
      foreach(pattern ${writers})
        if(line MATCHES "${pattern}")
          # Kept aside: each MATCHES below sets CMAKE_MATCH_0 anew.
          set(hit "${CMAKE_MATCH_0}")
          if(rel IN_LIST allowed_device AND hit MATCHES "ReadWrite")
            continue()
          endif()
          if(rel IN_LIST allowed_name_only AND hit MATCHES "setOutputFileName")
            continue()
          endif()
          string(STRIP "${line}" text)
          list(APPEND wrong "${rel}:${number}: ${text}")
        endif()
      endforeach()
    endforeach()
  endforeach()
endforeach()

if(read EQUAL 0)
  message(FATAL_ERROR "no sources under ${ROOTS}")
endif()
if(wrong)
  list(JOIN wrong "\n  " text)
  message(FATAL_ERROR "Files written other than through SafeFile (core/safe_file.h):\n  ${text}")
endif()
message(STATUS "every file is written through SafeFile")
