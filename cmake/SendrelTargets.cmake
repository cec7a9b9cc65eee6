# Sources of a subsystem folder are split by place:
#   src/<subsystem>/*.cpp       -> sendrel_core (QtCore + QtSql only)
#   src/<subsystem>/gui/*.cpp   -> sendrel_gui
# so a widget include in a core file fails to compile: the core has no Widgets include path.
function(sendrel_collect_sources out_core out_gui)
  set(core)
  set(gui)
  foreach(sub app store import browser standstock composition output)
    file(GLOB c CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/src/${sub}/*.cpp ${CMAKE_SOURCE_DIR}/src/${sub}/*.h)
    file(GLOB g CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/src/${sub}/gui/*.cpp ${CMAKE_SOURCE_DIR}/src/${sub}/gui/*.h)
    list(APPEND core ${c})
    list(APPEND gui ${g})
  endforeach()
  list(FILTER core EXCLUDE REGEX "/main\\.cpp$")
  set(${out_core} ${core} PARENT_SCOPE)
  set(${out_gui} ${gui} PARENT_SCOPE)
endfunction()

# One QtTest executable per test file; every test gets its own settings and home folder,
# the offscreen platform and a fixed locale.
function(sendrel_add_test name)
  cmake_parse_arguments(T "" "" "SOURCES;LIBS" ${ARGN})
  add_executable(${name} ${T_SOURCES})
  target_link_libraries(${name} PRIVATE ${T_LIBS} Qt6::Test)
  target_compile_definitions(${name} PRIVATE
    SENDREL_TEST_DATA="${CMAKE_SOURCE_DIR}/tests/data"
    SENDREL_BIN_DIR="${CMAKE_BINARY_DIR}/bin")
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
  set(home ${CMAKE_BINARY_DIR}/testhome/${name})
  add_test(NAME ${name} COMMAND ${name})
  set_tests_properties(${name} PROPERTIES
    ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LANG=C.UTF-8;LC_ALL=C.UTF-8;HOME=${home};XDG_CONFIG_HOME=${home}/config;XDG_DOCUMENTS_DIR=${home}/Documents;SOURCE_DATE_EPOCH=1700000000"
    FIXTURES_REQUIRED sendrel_testhome)
endfunction()
