# cmake -DWORK_DIR=<scratch folder> -P headlesscheck_test.cmake
# Configures tests/cmake/headlesscheck twice: the honest layout must configure, the broken one
# must fail naming each headless module that reaches QtWidgets and the way it does, and no other.
set(project ${CMAKE_CURRENT_LIST_DIR}/headlesscheck)
get_filename_component(cmake_dir ${CMAKE_CURRENT_LIST_DIR}/../../cmake ABSOLUTE)

function(configure layout result_var output_var)
  file(REMOVE_RECURSE ${WORK_DIR}/${layout})
  execute_process(
    COMMAND ${CMAKE_COMMAND} -S ${project} -B ${WORK_DIR}/${layout} -DLAYOUT=${layout}
            -DORVANE_CMAKE_DIR=${cmake_dir}
    RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
  set(${result_var} ${result} PARENT_SCOPE)
  set(${output_var} "${output}" PARENT_SCOPE)
endfunction()

configure(honest result output)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "The honest layout failed to configure:\n${output}")
endif()

configure(broken result output)
if(result EQUAL 0)
  message(FATAL_ERROR "The broken layout configured although headless modules link QtWidgets")
endif()
string(REGEX REPLACE "[ \t\r\n]+" " " flat "${output}")
foreach(expected
    "flash -> Qt6::Widgets"
    "reports -> window -> Qt6::Widgets"
    "plugins -> helpers -> Qt6::Widgets")
  string(FIND "${flat}" "${expected}" at)
  if(at EQUAL -1)
    message(FATAL_ERROR "The failure does not name '${expected}':\n${output}")
  endif()
endforeach()
foreach(clean "  base" "  engine" "  window")
  string(FIND "${output}" "${clean} ->" at)
  if(NOT at EQUAL -1)
    message(FATAL_ERROR "The failure names '${clean}', which links no QtWidgets:\n${output}")
  endif()
endforeach()
