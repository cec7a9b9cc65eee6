# Every layer is a library with an include path of its own. Headers are named from the source
# root ("store/RunStore.h", "windows/standstock/frmParameters.h"), but a library sees only its
# own folder and the folders of the libraries it links: the build gives each library a root that
# holds a link to its folder alone. So a header of a higher layer is simply not found, and an
# include upward fails to compile.
set(SENDREL_INCLUDE_ROOTS ${CMAKE_BINARY_DIR}/include-roots)

# sendrel_library(<target> <folder under src> [DEPENDS <libraries>...] [EXCLUDE <file name>])
function(sendrel_library target folder)
  cmake_parse_arguments(L "" "EXCLUDE" "DEPENDS" ${ARGN})
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS
       ${CMAKE_SOURCE_DIR}/src/${folder}/*.cpp ${CMAKE_SOURCE_DIR}/src/${folder}/*.h)
  if(L_EXCLUDE)
    list(FILTER sources EXCLUDE REGEX "/${L_EXCLUDE}$")
  endif()
  # Relative includes bypass the root; the check stamp is a source, so the library waits for it.
  set(stamp ${CMAKE_CURRENT_BINARY_DIR}/${target}.includes-checked)
  add_custom_command(OUTPUT ${stamp}
    COMMAND ${CMAKE_COMMAND} -DFOLDER=${CMAKE_SOURCE_DIR}/src/${folder} -DSTAMP=${stamp}
            -P ${CMAKE_SOURCE_DIR}/cmake/CheckIncludes.cmake
    DEPENDS ${sources} ${CMAKE_SOURCE_DIR}/cmake/CheckIncludes.cmake
    COMMENT "Checking the includes of ${folder}" VERBATIM)
  add_library(${target} STATIC ${sources} ${stamp})
  set(root ${SENDREL_INCLUDE_ROOTS}/${target})
  get_filename_component(parent ${root}/${folder} DIRECTORY)
  file(MAKE_DIRECTORY ${parent})
  file(CREATE_LINK ${CMAKE_SOURCE_DIR}/src/${folder} ${root}/${folder} SYMBOLIC)
  target_include_directories(${target} PUBLIC ${root})
  target_link_libraries(${target} PUBLIC ${L_DEPENDS})
endfunction()

# One QtTest executable per test file; every test gets its own settings and home folder,
# the offscreen platform and a fixed locale. The test programs set the same for themselves
# (tests/support/TestMain.h), so that each also passes when run directly.
function(sendrel_add_test name)
  cmake_parse_arguments(T "" "" "SOURCES;LIBS" ${ARGN})
  add_executable(${name} ${T_SOURCES})
  target_link_libraries(${name} PRIVATE ${T_LIBS} Qt6::Test)
  target_compile_definitions(${name} PRIVATE
    SENDREL_TEST_DATA="${CMAKE_SOURCE_DIR}/tests/data"
    SENDREL_SOURCE_DIR="${CMAKE_SOURCE_DIR}"
    SENDREL_BIN_DIR="${CMAKE_BINARY_DIR}/bin")
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
  add_test(NAME ${name} COMMAND ${name})
  set_tests_properties(${name} PROPERTIES TIMEOUT 120)
endfunction()
