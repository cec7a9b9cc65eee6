# Run at build time for one library: an include that climbs out of the file's folder ("../app/X.h")
# or names an absolute path would reach a header the library's include root hides, since the
# compiler looks beside the including file first. Such an include fails the build here, as a
# root-named include of a higher layer fails to compile.
# Arguments: -DFOLDER=<source folder> -DSTAMP=<file written on success>
file(GLOB_RECURSE files "${FOLDER}/*.cpp" "${FOLDER}/*.h")
set(faults "")
foreach(f IN LISTS files)
  file(STRINGS "${f}" lines REGEX "^[ \t]*#[ \t]*include[ \t]*[\"<](\\.\\.|/)")
  foreach(line IN LISTS lines)
    string(STRIP "${line}" line)
    list(APPEND faults "${f}: ${line}")
  endforeach()
endforeach()
if(faults)
  list(JOIN faults "\n  " text)
  message(FATAL_ERROR "Include by a path out of the folder; name the header from the source root:\n  ${text}")
endif()
file(TOUCH "${STAMP}")
