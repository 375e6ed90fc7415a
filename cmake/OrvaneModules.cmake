# Each source folder is a static library of its own ("module"), so that the layering is checked
# by the linker and a folder builds and tests without the folders above it. orvane_core gathers
# the headless modules, orvane_gui the widget ones. The configure step fails when a headless
# module reaches QtWidgets (OrvaneHeadlessCheck.cmake).

include(${CMAKE_CURRENT_LIST_DIR}/OrvaneHeadlessCheck.cmake)

set_property(GLOBAL PROPERTY ORVANE_CORE_MODULES "")
set_property(GLOBAL PROPERTY ORVANE_GUI_MODULES "")

# orvane_module(NAME [GUI] SOURCES ... [LIBS ...])
function(orvane_module name)
  cmake_parse_arguments(ARG "GUI" "" "SOURCES;LIBS" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/src ${CMAKE_BINARY_DIR}/generated)
  target_link_libraries(${name} PUBLIC Qt6::Core ${ARG_LIBS})
  if(ARG_GUI)
    target_link_libraries(${name} PUBLIC Qt6::Widgets)
    set_property(GLOBAL APPEND PROPERTY ORVANE_GUI_MODULES ${name})
  else()
    # A headless module must never reach QtWidgets, not even through a dependency.
    set_property(GLOBAL APPEND PROPERTY ORVANE_CORE_MODULES ${name})
    orvane_headless_target(${name})
  endif()
endfunction()

# Every web service at a closed port on 127.0.0.1, so that no test reaches beyond loopback; a
# test that needs a service starts a local server and sets that service's variable itself.
# Scripts run by add_test get it as their ENVIRONMENT; the GoogleTest executables set the same
# in their TestEnvironment.
set(ORVANE_TEST_OFFLINE_ENVIRONMENT "")
foreach(variable SERVER_BASE_URL STORE_BASE_URL LASTFM_BASE_URL LASTFM_AUTH_URL LEO_LYRICS_BASE_URL
                 LYRIC_WIKI_BASE_URL CHART_LYRICS_BASE_URL COVER_PARADIES_BASE_URL RADIO_PLAYLIST_URL)
  list(APPEND ORVANE_TEST_OFFLINE_ENVIRONMENT "ORVANE_${variable}=http://127.0.0.1:1")
endforeach()

# orvane_test(NAME [GUI] SOURCES ... LIBS ... [LABELS ...] [RESOURCE_LOCK ...])
# One executable per test folder; each case runs as its own process with a fresh HOME.
function(orvane_test name)
  cmake_parse_arguments(ARG "GUI" "" "SOURCES;LIBS;LABELS;RESOURCE_LOCK" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  if(ARG_GUI)
    target_link_libraries(${name} PRIVATE orvane_testmain_gui)
  else()
    target_link_libraries(${name} PRIVATE orvane_testmain)
  endif()
  target_link_libraries(${name} PRIVATE ${ARG_LIBS} GTest::gtest GTest::gmock)
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60 TEST_LIST ${name}_TESTS)

  # The cases' properties are set by a file CTest reads after the discovered list, since lists
  # passed through gtest_discover_tests(PROPERTIES) lose their grouping (an ENVIRONMENT of two
  # variables would set one). The executable's name is a label, for ctest -L.
  set(environment QT_QPA_PLATFORM=offscreen ORVANE_SOURCE_DIR=${PROJECT_SOURCE_DIR}
    ${ORVANE_SANITIZER_TEST_ENVIRONMENT} ${ORVANE_TEST_OFFLINE_ENVIRONMENT})
  set(labels ${name} ${ARG_LABELS})
  set(properties "ENVIRONMENT [==[${environment}]==] LABELS [==[${labels}]==]")
  if(ARG_RESOURCE_LOCK)
    string(APPEND properties " RESOURCE_LOCK [==[${ARG_RESOURCE_LOCK}]==]")
  endif()
  set(properties_file ${CMAKE_CURRENT_BINARY_DIR}/${name}_properties.cmake)
  file(WRITE ${properties_file}
    "if(${name}_TESTS)\n  set_tests_properties(\${${name}_TESTS} PROPERTIES ${properties})\nendif()\n")
  set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES ${properties_file})
endfunction()
